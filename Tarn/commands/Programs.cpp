#include "Tarn/commands/Programs.h"

#include <cerrno>

#include <sys/wait.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include "Tarn/commands/DesktopEntry.h"

namespace tarn::Programs {
namespace {

using Words = std::vector<std::string>;

/// How the chosen program is started; absent when it is not installed.
std::optional<Words> chosen(const std::string& setting, const std::vector<URL>& files,
                            bool* needsTerminal = nullptr) {
    if (setting.empty()) return std::nullopt;
    if (const auto entry = DesktopEntries::find(setting)) {
        if (needsTerminal) *needsTerminal = entry->needsTerminal;
        Words words = entry->command(files);
        // An entry that says nothing of files still opens those that it is given.
        if (!files.empty() && words == entry->command({}))
            for (const URL& file : files) words.push_back(file.path());
        return words;
    }
    if (const auto program = DesktopEntries::executable(setting)) {
        Words words = {*program};
        for (const URL& file : files) words.push_back(file.path());
        return words;
    }
    return std::nullopt;
}

std::optional<Words> terminalWords(const std::string& setting) {
    if (auto words = chosen(setting, {})) return words;
    for (const char* standard : {"xdg-terminal-exec", "x-terminal-emulator"})
        if (const auto program = DesktopEntries::executable(standard)) return Words{*program};
    if (const auto entry = DesktopEntries::anyTerminal()) return entry->command({});
    return std::nullopt;
}

/// Terminals take the command behind "-e", but for the one that takes nothing else.
bool takesCommandAsItIs(const std::string& program) {
    return program.ends_with("/xdg-terminal-exec");
}

}  // namespace

std::optional<Call> terminal(const std::string& setting, const URL& folder) {
    auto words = terminalWords(setting);
    if (!words) return std::nullopt;
    return Call{std::move(*words), folder};
}

std::optional<Call> editor(const std::string& setting, const std::string& terminalSetting,
                           const std::vector<URL>& files, const URL& folder) {
    bool needsTerminal = false;
    auto words = chosen(setting, files, &needsTerminal);
    if (!words) {
        const auto standard = DesktopEntries::defaultFor("text/plain");
        if (!standard) return std::nullopt;
        words = standard->command(files);
        needsTerminal = standard->needsTerminal;
    }
    if (!needsTerminal) return Call{std::move(*words), folder};
    auto inside = terminalWords(terminalSetting);
    if (!inside) return std::nullopt;
    if (!takesCommandAsItIs(inside->front())) inside->push_back("-e");
    inside->insert(inside->end(), words->begin(), words->end());
    return Call{std::move(*inside), folder};
}

bool start(const Call& call) {
    // `setsid --fork` lets go of the program at once, so that it outlives us and leaves no zombie.
    // Names are bytes, which QProcess would not pass on.
    Words words = {"setsid", "--fork"};
    words.insert(words.end(), call.words.begin(), call.words.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const std::string folder = call.folder ? call.folder->path() : std::string();
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&files, folder.c_str());
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, "setsid", &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0) return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace tarn::Programs
