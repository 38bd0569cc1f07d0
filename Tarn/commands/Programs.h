#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {
struct DesktopEntry;
}

/// The person's terminal and text editor: which programs these are, and how to start them.
///
/// The setting names a desktop entry ("org.kde.konsole", with or without ".desktop") or a program
/// ("kitty", "/opt/bin/kitty"). Where it is empty, or names nothing that is installed, the
/// desktop's own choice stands in. Reads the disk; any thread.
namespace tarn::Programs {

struct Call {
    std::vector<std::string> words;  ///< The first is an absolute path, or is found in $PATH.
    std::optional<URL> folder;       ///< Where it starts; where we are when absent.
    std::map<std::string, std::string> variables = {};  ///< Beside those of our environment.
    bool operator==(const Call&) const = default;
};

/// Absent when no terminal is installed. The chosen one, else `xdg-terminal-exec`,
/// `x-terminal-emulator`, or any desktop entry of a terminal.
std::optional<Call> terminal(const std::string& setting, const URL& folder);
/// Absent when there is no editor, or it needs a terminal and there is none. The chosen one, else
/// the default of the type text/plain.
std::optional<Call> editor(const std::string& setting, const std::string& terminalSetting,
                           const std::vector<URL>& files, const URL& folder);

/// What opens these files: one command for all of them, or one for each where the program takes no
/// more. None when it needs a terminal and there is none.
std::vector<Call> calls(const DesktopEntry& program, const std::string& terminalSetting,
                        const std::vector<URL>& files);

/// Starts it on its own: it outlives this program. False when it could not be started.
/// `failedSoon` is called on the main thread when it ends without success as good as at once.
bool start(const Call& call, std::function<void()> failedSoon = {});

}  // namespace tarn::Programs
