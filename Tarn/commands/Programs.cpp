#include "Tarn/commands/Programs.h"

#include <string_view>
#include <system_error>
#include <utility>

#include <sys/syscall.h>

#include <fcntl.h>
#include <unistd.h>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/commands/ProgramWatch.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/platform/ProcessStart.h"

namespace tarn::Programs {
namespace {

using Words = std::vector<std::string>;

/// How the chosen program is started; absent when it is not installed.
std::optional<Words> chosen(const std::string& setting, const std::vector<URL>& files,
                            bool* needsTerminal = nullptr) {
    if (setting.empty()) return std::nullopt;
    if (const auto entry = DesktopEntries::find(setting); entry && !entry->exec.empty()) {
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

/// Our own, with these instead. What this program was started with to come to the front is not
/// for others.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& variables) {
    std::vector<std::string> all;
    for (char** one = environ; *one; ++one) {
        const std::string_view variable = *one;
        const std::string name(variable.substr(0, variable.find('=')));
        if (name != "XDG_ACTIVATION_TOKEN" && name != "DESKTOP_STARTUP_ID" &&
            !variables.contains(name))
            all.emplace_back(variable);
    }
    for (const auto& [name, value] : variables) all.push_back(name + "=" + value);
    return all;
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
        if (!standard || standard->exec.empty()) return std::nullopt;
        words = standard->command(files);
        needsTerminal = standard->needsTerminal;
    }
    if (needsTerminal) words = insideTerminal(terminalSetting, *words);
    if (!words) return std::nullopt;
    return Call{std::move(*words), folder};
}

std::vector<Call> calls(const DesktopEntry& program, const std::string& terminalSetting,
                        const std::vector<URL>& files) {
    if (program.exec.empty()) return {};
    std::vector<Call> all;
    for (Words& words : program.commands(files)) {
        auto complete = program.needsTerminal ? insideTerminal(terminalSetting, words)
                                              : std::optional(std::move(words));
        if (!complete) return {};
        all.push_back({*std::move(complete), program.folder});
    }
    return all;
}

bool start(const Call& call, std::function<void()> failedSoon) {
    const auto program = DesktopEntries::executable(call.words.front());
    if (!program) return false;
    ProcessStart process;
    process.giveNull(STDIN_FILENO, O_RDONLY);
    process.giveNull(STDOUT_FILENO, O_WRONLY);
    process.giveNull(STDERR_FILENO, O_WRONLY);
    if (call.folder) process.setFolder(*call.folder);
    process.setSession();
    process.setEnvironment(environmentWith(call.variables));
    try {
        const pid_t child = process.start(URL::fromPath(*program), call.words);
        const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
        MainThread::post([descriptor, failedSoon = std::move(failedSoon)] {
            new ProgramWatch(FileDescriptor(descriptor), failedSoon, qApp);
        });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace tarn::Programs
