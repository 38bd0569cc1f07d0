#include "cli/WindowLauncher.h"

#include <array>
#include <cerrno>
#include <climits>
#include <string>

#include <unistd.h>

#include "TarnCore/base/Error.h"

namespace tarn::cli::WindowLauncher {
namespace {

constexpr const char* program = "tarn-window";

std::vector<URL> candidates() {
    std::array<char, PATH_MAX> self;
    const ssize_t length = ::readlink("/proc/self/exe", self.data(), self.size());
    if (length <= 0) return {};
    const URL folder = URL::fromPath({self.data(), static_cast<std::size_t>(length)}).parent();
    return {folder.appending(program),
            folder.parent().appending(TARN_LIBDIR "/tarn").appending(program)};
}

}  // namespace

void start(const std::vector<std::string>& options, const std::vector<URL>& paths) {
    std::vector<std::string> words = {program};
    words.insert(words.end(), options.begin(), options.end());
    for (const URL& path : paths) words.push_back(path.path());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    for (const URL& candidate : candidates()) {
        ::execv(candidate.c_str(), argv.data());
        if (errno != ENOENT) {
            throw Error("Couldn’t start the window. " + systemErrorSentence(errno));
        }
    }
    ::execvp(program, argv.data());
    if (errno != ENOENT) throw Error("Couldn’t start the window. " + systemErrorSentence(errno));
    throw Error(
        "The window is not installed here; “tarn --help” lists what works in the terminal.");
}

}  // namespace tarn::cli::WindowLauncher
