#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QtCore/QString>

#include "Tarn/commands/TitleMatch.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

struct TarnCommand;
class WindowModel;

/// One thing that the palette offers.
struct PaletteEntry {
    enum class Kind { command, folder, workspace };
    Kind kind = Kind::command;
    const TarnCommand* command = nullptr;  ///< Of a command.
    URL folder;
    UUID workspace;
    QString title;
    std::string symbol;  ///< Name of its icon.
    QString detail;      ///< Where a folder is; why a command is not enabled.
    std::string keys;    ///< As Qt writes them; empty for none.
    std::int64_t uses = 0;
    bool isEnabled = true;
};

/// A line of the palette: an entry, or the heading above some.
struct PaletteRow {
    const PaletteEntry* entry = nullptr;  ///< Null for a heading.
    QString heading;
    /// What of the title was typed: half-open ranges of its UTF-16 units.
    std::vector<std::pair<int, int>> ranges;
};

/// What the palette offers for what is typed. A copy of what there was when it was made; main
/// thread only.
class PaletteEntries {
public:
    explicit PaletteEntries(WindowModel& window);

    /// Without a text, every command in the order of the menus. Else the commands that fit, best
    /// first: the whole title, its start, starts of its words, its letters in their order. Among
    /// equals those come first that can be run, then those used more from here, then the order of
    /// the menus decides. Below them are the recent folders and workspaces that fit.
    std::vector<PaletteRow> matching(std::string_view typed) const;

    /// Does what an entry says, and counts it. False when it is not enabled.
    static bool run(const PaletteEntry& entry, WindowModel& window);

    /// How many folders, and how many workspaces, are offered at most.
    static constexpr std::size_t mostPlaces = 5;

private:
    struct Offer {
        PaletteEntry entry;
        MatchedTitle title;
    };

    void addCommands(WindowModel& window);
    void addFolders(WindowModel& window);
    void addWorkspaces(WindowModel& window);

    std::vector<Offer> commands_;
    std::vector<Offer> folders_;
    std::vector<Offer> workspaces_;
};

}  // namespace tarn
