#include "Tarn/ui/desktop/LoginEntry.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "Tarn/ui/desktop/AppID.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::LoginEntry {
namespace {

/// By which an entry is known for ours.
constexpr std::string_view mark = "X-Tarn-Login=true";
constexpr std::size_t longestEntry = 1 << 16;

/// As the Desktop Entry Specification quotes the words of "Exec".
std::string quotedWord(std::string_view word) {
    std::string quoted = "\"";
    for (const char c : word) {
        if (c == '%') quoted += '%';
        // Once for the word, and the backslash once more for the text that holds it.
        if (c == '"' || c == '`' || c == '$') quoted += "\\\\";
        if (c == '\\') quoted += "\\\\\\";
        quoted += c;
    }
    return quoted + '"';
}

}  // namespace

URL file() {
    return Paths::configHome()
        .appending("autostart")
        .appending(AppID::name().toStdString() + ".desktop");
}

std::string content(const std::string& program) {
    return "[Desktop Entry]\nType=Application\nName=Tarn\nIcon=" + AppID::name().toStdString() +
           "\nExec=" + quotedWord(program) + "\n" + std::string(mark) + "\n";
}

void set(bool opensAtLogin, const std::string& program) {
    FileSystem& files = *Platform::current().files;
    const URL entry = file();
    try {
        if (opensAtLogin) {
            files.createFolders(entry.parent());
            files.createFile(entry, content(program));
        } else if (files.attributes(entry, Links::keep) &&
                   files.readFile(entry, longestEntry).find(mark) != std::string::npos) {
            files.removeFile(entry);
        }
    } catch (const std::system_error& error) {
        if (opensAtLogin && error.code().value() == EEXIST) return;
        throw Error("Couldn’t change whether Tarn opens at login. " +
                    systemErrorSentence(error.code().value()));
    }
}

}  // namespace tarn::LoginEntry
