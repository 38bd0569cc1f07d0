#include "cli/Session.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>

#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::cli {

const Terminal& Session::terminal() {
    if (!terminal_) terminal_ = Terminal::at(STDOUT_FILENO);
    return *terminal_;
}

void Session::say(std::string_view sentence) {
    Output messages(STDERR_FILENO);
    messages << Terminal::escaped(sentence) << '\n';
    try {
        messages.flush();
    } catch (const Error&) {
        // Nobody is left to be told; the exit status still tells.
    }
}

const URL& Session::currentFolder() {
    if (!currentFolder_) {
        const std::unique_ptr<char, decltype(&std::free)> path(::getcwd(nullptr, 0), &std::free);
        if (!path) {
            throw Error("The current folder can’t be used. " + systemErrorSentence(errno));
        }
        currentFolder_ = URL::fromPath(path.get());
    }
    return *currentFolder_;
}

URL Session::url(std::string_view argument) {
    if (argument.starts_with('/')) return URL::fromPath(argument);
    return URL::fromPath(argument, currentFolder());
}

URL Session::requireFolder(std::string_view argument) {
    const URL folder = url(argument);
    const auto facts = Platform::current().files->attributes(folder, Links::follow);
    if (!facts) throw ListingError::notFound(std::string(folder.name()));
    if (facts->type != FileType::directory)
        throw ListingError::notAFolder(std::string(folder.name()));
    return folder;
}

Date Session::now() const { return Platform::current().clock->now(); }

const Locale& Session::locale() {
    if (!locale_) locale_ = Locale::current();
    return *locale_;
}

const Calendar& Session::calendar() {
    if (!calendar_) calendar_ = Calendar::current(locale());
    return *calendar_;
}

void Session::useLocaleForFormats() { Format::use(locale(), calendar()); }

}  // namespace tarn::cli
