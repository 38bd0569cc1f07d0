#include "Tarn/commands/Programs.h"

#include <cerrno>
#include <system_error>

#include <sys/wait.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include "Tarn/commands/DesktopEntry.h"
#include "TarnCore/platform/ProcessStart.h"

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

/// The command as one that a terminal runs; absent without a terminal.
std::optional<Words> insideTerminal(const std::string& setting, const Words& words) {
    auto inside = terminalWords(setting);
    if (!inside) return std::nullopt;
    if (!takesCommandAsItIs(inside->front())) inside->push_back("-e");
    inside->insert(inside->end(), words.begin(), words.end());
    return inside;
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
    if (needsTerminal) words = insideTerminal(terminalSetting, *words);
    if (!words) return std::nullopt;
    return Call{std::move(*words), folder};
}

std::vector<Call> calls(const DesktopEntry& program, const std::string& terminalSetting,
                        const std::vector<URL>& files) {
    std::vector<Call> all;
    for (Words& words : program.commands(files)) {
        auto complete = program.needsTerminal ? insideTerminal(terminalSetting, words)
                                              : std::optional(std::move(words));
        if (!complete) return {};
        all.push_back({*std::move(complete), std::nullopt});
    }
    return all;
}

bool start(const Call& call) {
    // `setsid --fork` lets go of the program at once, so that it outlives us and leaves no zombie.
    const auto setsid = DesktopEntries::executable("setsid");
    if (!setsid) return false;
    Words words = {"setsid", "--fork"};
    words.insert(words.end(), call.words.begin(), call.words.end());
    ProcessStart process;
    process.giveNull(STDIN_FILENO, O_RDONLY);
    process.giveNull(STDOUT_FILENO, O_WRONLY);
    process.giveNull(STDERR_FILENO, O_WRONLY);
    if (call.folder) process.setFolder(*call.folder);
    try {
        const pid_t child = process.start(URL::fromPath(*setsid), words);
        int status = 0;
        while (waitpid(child, &status, 0) < 0)
            if (errno != EINTR) return false;
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace tarn::Programs
