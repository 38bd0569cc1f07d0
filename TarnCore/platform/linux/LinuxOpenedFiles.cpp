#include "TarnCore/platform/linux/LinuxOpenedFiles.h"

#include <optional>
#include <string>
#include <system_error>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/ForeignFile.h"
#include "TarnCore/platform/linux/BookmarkList.h"
#include "TarnCore/platform/linux/DesktopServices.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/XDGFolders.h"

namespace tarn {
namespace {

constexpr std::size_t largestFile = 64'000'000;

/// The value of a key in a group of a settings file; empty when it is not there.
std::string setting(const URL& file, std::string_view group, std::string_view key) {
    std::string text;
    try {
        text = LinuxFileSystem().readFile(file, largestFile);
    } catch (const std::system_error&) {
        return {};
    }
    bool isInside = false;
    for (const std::string_view piece : Text::split(text, '\n')) {
        const std::string_view line = Text::trimmed(piece);
        if (line.starts_with('[')) {
            isInside = line.size() > 2 && line.substr(1, line.size() - 2) == group;
        } else if (const std::size_t equals = line.find('=');
                   isInside && equals != line.npos &&
                   Text::trimmed(line.substr(0, equals)) == key) {
            return Text::lowercased(Text::trimmed(line.substr(equals + 1)));
        }
    }
    return {};
}

}  // namespace

LinuxOpenedFiles::LinuxOpenedFiles()
    : LinuxOpenedFiles(XDGFolders::dataHome().appending("recently-used.xbel"),
                       XDGFolders::configHome()) {}

bool LinuxOpenedFiles::isWanted() const {
    for (const char* toolkit : {"gtk-3.0", "gtk-4.0"}) {
        const URL file = settings_.appending(toolkit).appending("settings.ini");
        const std::string enabled = setting(file, "Settings", "gtk-recent-files-enabled");
        if (enabled == "false" || enabled == "0") return false;
        if (setting(file, "Settings", "gtk-recent-files-max-age") == "0") return false;
    }
    if (setting(settings_.appending("kdeglobals"), "RecentDocuments", "UseRecent") == "false")
        return false;
    const DesktopServices* desktop = loadDesktopServices();
    return !desktop || desktop->remembersRecentFiles();
}

void LinuxOpenedFiles::note(const std::vector<OpenedFile>& files, Date when) {
    if (files.empty() || !isWanted()) return;
    ForeignFile::edit(
        file_, 0600, largestFile, [&](const std::string& list) -> std::optional<std::string> {
            std::string text = list;
            for (const OpenedFile& file : files) {
                auto noted =
                    noteInBookmarkList(text, {file.url, file.mimeType, "Tarn", "tarn %u", when});
                if (!noted) return std::nullopt;
                text = *std::move(noted);
            }
            return text;
        });
}

}  // namespace tarn
