#include "Tarn/commands/PaletteEntries.h"

#include <algorithm>
#include <tuple>

#include <QtCore/QCoreApplication>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Favorites.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

struct Found {
    const PaletteEntry* entry;
    TitleMatch match;
    std::size_t order;

    auto key() const {
        const bool isScattered = match.rank == TitleMatch::Rank::subsequence;
        return std::tuple(match.rank, isScattered ? match.runs : 0, !entry->isEnabled, -entry->uses,
                          order);
    }
};

/// Letters that lie apart say little in the name of a folder, of which there are many.
bool isGoodForPlaces(const TitleMatch& match) {
    return match.rank != TitleMatch::Rank::subsequence || match.runs == 1;
}

PaletteRow heading(const QString& title) { return {nullptr, title, {}}; }

PaletteRow row(const PaletteEntry& entry, const TitleMatch& match) {
    PaletteRow made{&entry, {}, {}};
    const std::string title = entry.title.toStdString();
    const auto units = [&title](std::size_t bytes) {
        return static_cast<int>(
            QString::fromUtf8(title.data(), static_cast<qsizetype>(bytes)).size());
    };
    for (const auto& [begin, end] : match.ranges)
        made.ranges.emplace_back(units(begin), units(end));
    return made;
}

template <class Offers>
std::vector<Found> fitting(const Offers& offers, std::string_view typed) {
    std::vector<Found> found;
    for (std::size_t i = 0; i < offers.size(); ++i)
        if (auto match = offers[i].title.match(typed))
            found.push_back({&offers[i].entry, std::move(*match), i});
    std::ranges::sort(found, {}, &Found::key);
    return found;
}

template <class Offers>
void appendPlaces(std::vector<PaletteRow>& rows, const Offers& offers, std::string_view typed,
                  const char* title) {
    std::vector<Found> found = fitting(offers, typed);
    std::erase_if(found, [](const Found& one) { return !isGoodForPlaces(one.match); });
    if (found.empty()) return;
    if (found.size() > PaletteEntries::mostPlaces)
        found.erase(found.begin() + PaletteEntries::mostPlaces, found.end());
    rows.push_back(heading(QCoreApplication::translate("tarn::PaletteEntries", title)));
    for (const Found& one : found) rows.push_back(row(*one.entry, one.match));
}

}  // namespace

PaletteEntries::PaletteEntries(WindowModel& window, std::vector<PaletteEntry> actions) {
    addCommands(window);
    addActions(window, std::move(actions));
    addPlaces(window);
    addFolders(window);
    addWorkspaces(window);
}

void PaletteEntries::addCommands(WindowModel& window) {
    const auto keys = CommandRegistry::keys(window.app().settings());
    for (const TarnCommand& command : CommandRegistry::all()) {
        PaletteEntry entry;
        entry.command = &command;
        entry.title = CommandRegistry::title(command);
        entry.symbol = command.symbol;
        entry.detail = CommandRegistry::obstacle(command, &window);
        entry.isEnabled = entry.detail.isEmpty();
        entry.uses = window.app().usageCount(command.id);
        if (const auto found = keys.find(command.id); found != keys.end())
            entry.keys = found->second.front();
        const std::string title = entry.title.toStdString();
        commands_.push_back({std::move(entry), MatchedTitle(title)});
    }
}

void PaletteEntries::addActions(WindowModel& window, std::vector<PaletteEntry> actions) {
    for (PaletteEntry& entry : actions) {
        entry.kind = PaletteEntry::Kind::action;
        entry.uses = window.app().usageCount(entry.action);
        const std::string title = entry.title.toStdString();
        commands_.push_back({std::move(entry), MatchedTitle(title)});
    }
}

void PaletteEntries::addPlaces(WindowModel& window) {
    const auto add = [&](const Location& location, const QString& title, std::string_view symbol) {
        if (location == window.active().location()) return;
        PaletteEntry entry;
        entry.kind = PaletteEntry::Kind::place;
        entry.location = location;
        entry.title = title;
        entry.symbol = symbol;
        const std::string text = title.toStdString();
        places_.push_back({std::move(entry), MatchedTitle(text)});
    };
    const UserLists& lists = window.app().lists();
    for (const Favorite& favorite : lists.favorites()) {
        const Location location = Location::folder(Favorites::folder(favorite));
        add(location, displayText(Favorites::title(favorite)), location.symbol());
    }
    for (const LibraryItem item : allLibraryItems)
        add(Location::library(item), coreText(LibraryItems::title(item)),
            LibraryItems::symbol(item));
    for (const SmartFolder& folder : lists.smartFolders()) {
        const Location location = Location::smartFolder(folder.id);
        add(location, placeText(location, folder.name), folder.symbol);
    }
    for (const FinderTag& tag : window.app().tagColors().known())
        add(Location::tag(tag.name), tagText(tag.name), "tag");
}

void PaletteEntries::addFolders(WindowModel& window) {
    const Location& shown = window.active().location();
    for (const URL& folder : window.app().recentFolders()) {
        if (shown.isFolder() && shown.url == folder) continue;
        PaletteEntry entry;
        entry.kind = PaletteEntry::Kind::place;
        entry.location = Location::folder(folder);
        entry.title = folderText(folder);
        entry.symbol = entry.location.symbol();
        entry.detail = displayText(Paths::abbreviate(folder.parent()));
        const std::string title = entry.title.toStdString();
        folders_.push_back({std::move(entry), MatchedTitle(title)});
    }
}

void PaletteEntries::addWorkspaces(WindowModel& window) {
    for (const Workspace& workspace : window.app().lists().workspaces()) {
        PaletteEntry entry;
        entry.kind = PaletteEntry::Kind::workspace;
        entry.workspace = workspace.id;
        entry.title = displayText(workspace.name);
        entry.symbol = "rectangle.on.rectangle";
        entry.detail = Counts::tabs(static_cast<std::int64_t>(workspace.tabs.size()));
        const std::string title = entry.title.toStdString();
        workspaces_.push_back({std::move(entry), MatchedTitle(title)});
    }
}

std::vector<PaletteRow> PaletteEntries::matching(std::string_view typed) const {
    std::vector<PaletteRow> rows;
    if (Text::trimmed(typed).empty()) {
        std::string_view group;
        for (const Offer& offer : commands_) {
            const TarnCommand* command = offer.entry.command;
            const std::string_view wanted = command ? std::string_view(command->group) : "";
            if (rows.empty() || wanted != group) {
                group = wanted;
                rows.push_back(
                    heading(command ? CommandRegistry::groupTitle(group)
                                    : QCoreApplication::translate("tarn::PaletteEntries", "More")));
            }
            rows.push_back({&offer.entry, {}, {}});
        }
        return rows;
    }
    for (const Found& one : fitting(commands_, typed)) rows.push_back(row(*one.entry, one.match));
    appendPlaces(rows, places_, typed, QT_TRANSLATE_NOOP("tarn::PaletteEntries", "Places"));
    appendPlaces(rows, folders_, typed,
                 QT_TRANSLATE_NOOP("tarn::PaletteEntries", "Recent Folders"));
    appendPlaces(rows, workspaces_, typed, QT_TRANSLATE_NOOP("tarn::PaletteEntries", "Workspaces"));
    return rows;
}

bool PaletteEntries::run(const PaletteEntry& entry, WindowModel& window) {
    switch (entry.kind) {
        case PaletteEntry::Kind::command:
            if (!CommandRegistry::isEnabled(*entry.command, &window)) return false;
            window.app().noteUsed(entry.command->id);
            return CommandRegistry::run(*entry.command, window);
        case PaletteEntry::Kind::action:
            if (!entry.isEnabled) return false;
            window.app().noteUsed(entry.action);
            entry.perform();
            return true;
        case PaletteEntry::Kind::place:
            window.active().navigate(entry.location);
            return true;
        case PaletteEntry::Kind::workspace:
            return window.group() && window.group()->openWorkspace(entry.workspace);
    }
    return false;
}

}  // namespace tarn
