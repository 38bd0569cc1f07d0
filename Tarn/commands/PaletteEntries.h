#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QtCore/QString>

#include "Tarn/commands/TitleMatch.h"
#include "Tarn/model/records/Location.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

struct TarnCommand;
class WindowModel;

/// One thing that the palette offers.
struct PaletteEntry {
    enum class Kind {
        command,
        action,  ///< What the window itself can do besides the commands.
        place,
        workspace
    };
    Kind kind = Kind::command;
    const TarnCommand* command = nullptr;  ///< Of a command.
    std::string action;                    ///< Id of an action; its uses are counted by it.
    std::function<void()> perform;         ///< Does an action.
    Location location;                     ///< Of a place.
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
    /// `actions` are those of the window, in their order.
    explicit PaletteEntries(WindowModel& window, std::vector<PaletteEntry> actions = {});

    /// Without a text, every command in the order of the menus, and the actions. Else those of both
    /// that fit, best first: the whole title, its start, starts of its words, its letters in their
    /// order. Among equals those come first that can be run, then those used more from here, then
    /// the order of the menus decides. Below them are the places of the sidebar, the recent folders
    /// and the workspaces that fit.
    std::vector<PaletteRow> matching(std::string_view typed) const;

    /// Does what an entry says, and counts it. False when it is not enabled.
    static bool run(const PaletteEntry& entry, WindowModel& window);

    /// How many places, recent folders and workspaces, each, are offered at most.
    static constexpr std::size_t mostPlaces = 5;

private:
    struct Offer {
        PaletteEntry entry;
        MatchedTitle title;
    };

    void addCommands(WindowModel& window);
    void addActions(WindowModel& window, std::vector<PaletteEntry> actions);
    void addPlaces(WindowModel& window);
    void addFolders(WindowModel& window);
    void addWorkspaces(WindowModel& window);

    std::vector<Offer> commands_;  ///< And the actions behind them.
    std::vector<Offer> places_;
    std::vector<Offer> folders_;
    std::vector<Offer> workspaces_;
};

}  // namespace tarn
