#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// A program as the desktop knows it: what its desktop entry says about starting it. A value.
struct DesktopEntry {
    std::string id;                 ///< "org.kde.konsole.desktop"
    std::string name;               ///< In the user's language.
    std::string icon;               ///< Of the icon theme, or a path; may be empty.
    std::vector<std::string> exec;  ///< The words of Exec, with its field codes; the first is it.
                                    ///< None where it is only started through the session bus.
    std::optional<URL> source;      ///< The entry itself.
    std::optional<URL> folder;      ///< Where it is to be started.
    std::string windowClass;        ///< Of its windows under X11, for docks; may be empty.
    bool tellsWhenStarted = false;  ///< StartupNotify
    bool isActivatable = false;     ///< Answers org.freedesktop.Application, under its id.
    bool needsTerminal = false;
    bool isTerminal = false;  ///< Of the category TerminalEmulator.
    bool isEditor = false;    ///< Of the category TextEditor or IDE.
    bool isShown = true;      ///< Among the programs that a person chooses from.

    /// Absent when the text is no entry of an application, or hides it, or its program is missing.
    static std::optional<DesktopEntry> parse(std::string_view text, std::string id,
                                             std::optional<URL> file = std::nullopt);

    /// The words to start it with, by the desktop entry specification: the field codes replaced by
    /// what they stand for. `files` are left out where the program takes none.
    std::vector<std::string> command(const std::vector<URL>& files) const;
    /// The same for a program that takes one file at a time: a command for each.
    std::vector<std::vector<std::string>> commands(const std::vector<URL>& files) const;
};

/// The desktop entries that are installed. Reads the disk; any thread.
namespace DesktopEntries {

/// By its id, with or without ".desktop"; the user's own entries go before those for everyone.
std::optional<DesktopEntry> find(std::string_view id);
/// The first terminal by id; absent when none is installed.
std::optional<DesktopEntry> anyTerminal();
/// All that are shown, by name.
std::vector<DesktopEntry> all();
/// What opens this type: the user's choice in mimeapps.list, the desktop's, or any that says so.
std::optional<DesktopEntry> defaultFor(std::string_view mimeType);
/// What opens files of the first of these types, or of those that it is derived from: what the
/// person or the desktop prefers first, each once.
std::vector<DesktopEntry> openers(const std::vector<std::string>& mimeTypes);

/// The program of that name in $PATH, or itself when it is an absolute path to one.
std::optional<std::string> executable(std::string_view name);

}  // namespace DesktopEntries

}  // namespace tarn
