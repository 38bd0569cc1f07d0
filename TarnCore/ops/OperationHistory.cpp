#include "TarnCore/ops/OperationHistory.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/files/StoreFile.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/HistoryLine.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

struct Kind {
    std::string_view name;
    std::string_view symbol;
};

/// In the order of the enumeration.
constexpr std::array kinds = {
    Kind{"rename", "pencil"},
    Kind{"move", "arrow.right.doc.on.clipboard"},
    Kind{"copy", "doc.on.doc"},
    Kind{"trash", "trash"},
    Kind{"create", "plus.square.on.square"},
    Kind{"tag", "tag"},
    Kind{"duplicate", "doc.on.doc"},
    Kind{"compress", "archivebox"},
    Kind{"extract", "shippingbox.and.arrow.backward"},
    Kind{"batchRename", "pencil"},
    Kind{"rule", "wand.and.stars"},
    Kind{"convert", "photo.on.rectangle.angled"},
    Kind{"permissions", "lock"},
};
static_assert(kinds.size() == static_cast<std::size_t>(OperationKind::permissions) + 1);

OperationKind kindNamed(std::string_view name) {
    const auto found = std::ranges::find(kinds, name, &Kind::name);
    if (found == kinds.end()) throw Error("“" + std::string(name) + "” is no kind of change.");
    return static_cast<OperationKind>(found - kinds.begin());
}

using Entries = std::vector<HistoryEntry>;

using Lines = std::vector<HistoryLine>;

auto withID(Lines& lines, const UUID& id) { return std::ranges::find(lines, id, &HistoryLine::id); }

}  // namespace

std::string_view name(OperationKind kind) { return kinds[static_cast<std::size_t>(kind)].name; }
std::string_view symbol(OperationKind kind) { return kinds[static_cast<std::size_t>(kind)].symbol; }

void to_json(JSON& json, const HistoryEntry& entry) {
    json = {{"id", entry.id},       {"date", entry.date},   {"kind", name(entry.kind)},
            {"title", entry.title}, {"steps", entry.steps}, {"fileCount", entry.fileCount}};
}

void from_json(const JSON& json, HistoryEntry& entry) {
    // Without these an entry could be neither found nor taken back.
    json.at("id").get_to(entry.id);
    json.at("date").get_to(entry.date);
    entry.kind = kindNamed(json.at("kind").get_ref<const std::string&>());
    json.at("steps").get_to(entry.steps);
    JSONFields::read(json, "title", entry.title);
    JSONFields::read(json, "fileCount", entry.fileCount);
}

struct OperationHistory::State {
    struct Stacks {
        /// Older than the stored ones: beyond what the file holds, or from before it was cleared
        /// of old entries. In this process only.
        Lines older;
        Lines undo;  ///< As in the file, and what the disk has refused so far.
        Entries redo;
        /// What could not be written yet.
        std::vector<UUID> unsaved;
        std::vector<UUID> unsavedRemovals;
        bool unsavedClear = false;
        /// The file holds something else than a history, which must not be lost.
        bool isBroken = false;

        /// Takes lines away that turn out to be no entries.
        void drop(Lines& lines, const std::function<bool(const HistoryLine&)>& asksAbout) {
            const auto isNone = [&](const HistoryLine& line) {
                return asksAbout(line) && !line.entry();
            };
            if (std::erase_if(lines, isNone) > 0) isBroken = true;
        }
        /// The entry that was recorded last; null when there is none.
        std::shared_ptr<const HistoryEntry> newest() {
            for (Lines* lines : {&undo, &older}) {
                while (!lines->empty()) {
                    if (auto entry = lines->back().entry()) return entry;
                    lines->pop_back();
                    isBroken = true;
                }
            }
            return nullptr;
        }
    };

    Guarded<Stacks> stacks;
    /// Held while the file is read or written, and never while files are moved. Taken before
    /// `stacks`.
    std::unique_ptr<Guarded<StoreFile>> file;

    /// Takes over what the file holds now, with what could not be written put on top.
    static void takeOver(Stacks& stacks, const StoreFile::Content& content) {
        Lines fresh;
        stacks.isBroken = content.state == StoreFile::State::unreadable;
        if (content.state == StoreFile::State::present) {
            auto found = HistoryLine::linesOf(content.text);
            stacks.isBroken = !found;
            if (found) fresh = *std::move(found);
        }
        const Date oldest = Platform::current().clock->now() - retention;
        std::erase_if(fresh, [&](const HistoryLine& line) {
            return line.date() <= oldest || stacks.unsavedClear ||
                   std::ranges::count(stacks.unsavedRemovals, line.id()) > 0;
        });
        for (HistoryLine& line : stacks.undo) {
            const auto same = withID(fresh, line.id());
            if (same == fresh.end()) {
                if (std::ranges::count(stacks.unsaved, line.id()) > 0)
                    fresh.push_back(std::move(line));
            } else if (same->text() == line.text()) {
                *same = std::move(line);  // Which may have been taken apart already.
            }
        }
        stacks.undo = std::move(fresh);
    }

    bool refresh() {
        if (!file) return false;
        const auto held = file->lock();
        if (!held->hasChangedOnDisk()) return false;
        const StoreFile::Content content = held->read();
        takeOver(*stacks.lock(), content);
        return true;
    }

    /// Changes the undo list, here and in the file, as one.
    void change(const std::function<void(Stacks&)>& edit) {
        if (!file) {
            edit(*stacks.lock());
            return;
        }
        const auto held = file->lock();
        bool isEdited = false;
        const bool isWritten = held->update([&](const StoreFile::Content& content) {
            const auto access = stacks.lock();
            if (content.hasChanged) takeOver(*access, content);
            edit(*access);
            isEdited = true;
            keepWithinLimit(*access);
            return StoreFile::Replacement{HistoryLine::file(access->undo), access->isBroken};
        });
        const auto access = stacks.lock();
        if (!isEdited) edit(*access);  // Not even the lock could be had.
        if (!isWritten) return;
        access->unsaved.clear();
        access->unsavedRemovals.clear();
        access->unsavedClear = false;
        access->isBroken = false;
    }

    /// The newest entries are stored.
    static void keepWithinLimit(Stacks& stacks) {
        Lines all = std::move(stacks.older);
        std::ranges::move(stacks.undo, std::back_inserter(all));
        const std::size_t stored = std::min(all.size(), mostStored);
        const auto first = all.end() - static_cast<std::ptrdiff_t>(stored);
        stacks.undo.assign(std::make_move_iterator(first), std::make_move_iterator(all.end()));
        all.erase(first, all.end());
        stacks.older = std::move(all);
    }
};

OperationHistory::OperationHistory(std::optional<URL> fileURL) : state_(std::make_unique<State>()) {
    if (!fileURL) return;
    state_->file = std::make_unique<Guarded<StoreFile>>(StoreFile(*std::move(fileURL)));
    refresh();
}

OperationHistory::~OperationHistory() = default;

URL OperationHistory::defaultFile() { return SupportDirectory::file("undo-history.json"); }

void OperationHistory::append(URL fileURL, HistoryEntry entry) {
    OperationHistory history(std::nullopt);
    history.state_->file = std::make_unique<Guarded<StoreFile>>(StoreFile(std::move(fileURL)));
    history.record(std::move(entry));
}

std::vector<HistoryEntry> OperationHistory::undoStack() const {
    const auto stacks = state_->stacks.lock();
    Entries all;
    for (Lines* lines : {&stacks->older, &stacks->undo}) {
        stacks->drop(*lines, [](const HistoryLine&) { return true; });
        for (const HistoryLine& line : *lines) all.push_back(*line.entry());
    }
    return all;
}

std::vector<HistoryEntry> OperationHistory::redoStack() const {
    return state_->stacks.lock()->redo;
}

bool OperationHistory::canUndo() const {
    const auto stacks = state_->stacks.lock();
    return !stacks->undo.empty() || !stacks->older.empty();
}

bool OperationHistory::canRedo() const { return !state_->stacks.lock()->redo.empty(); }

std::optional<std::string> OperationHistory::nextUndoTitle() const {
    const auto newest = state_->stacks.lock()->newest();
    if (!newest) return std::nullopt;
    return newest->title;
}

std::optional<std::string> OperationHistory::nextRedoTitle() const {
    const auto stacks = state_->stacks.lock();
    if (stacks->redo.empty()) return std::nullopt;
    return stacks->redo.back().title;
}

void OperationHistory::record(HistoryEntry entry) {
    if (entry.steps.empty()) return;
    if (entry.date == Date{}) entry.date = Platform::current().clock->now();
    const HistoryLine line(std::move(entry));
    state_->change([&](State::Stacks& stacks) {
        stacks.redo.clear();
        stacks.unsaved.push_back(line.id());
        stacks.undo.push_back(line);
    });
    if (onChange) onChange();
}

std::optional<HistoryEntry> OperationHistory::undo() {
    state_->refresh();
    const auto newest = state_->stacks.lock()->newest();
    return newest ? undo(newest->id) : std::nullopt;
}

std::optional<HistoryEntry> OperationHistory::undo(const UUID& id) {
    state_->refresh();
    std::optional<HistoryEntry> entry = find(id);
    if (!entry) return std::nullopt;
    entry->steps = FileOps::revert(entry->steps);
    state_->change([&](State::Stacks& stacks) {
        const auto hasID = [&](const HistoryLine& line) { return line.id() == id; };
        std::erase_if(stacks.undo, hasID);
        std::erase_if(stacks.older, hasID);
        std::erase(stacks.unsaved, id);
        stacks.unsavedRemovals.push_back(id);
        stacks.redo.push_back(*entry);
    });
    if (onChange) onChange();
    return entry;
}

bool OperationHistory::canUndo(const UUID& id) const {
    const auto entry = find(id);
    return entry && FileOps::canRevert(entry->steps);
}

std::optional<HistoryEntry> OperationHistory::redo() {
    std::optional<HistoryEntry> entry;
    {
        const auto stacks = state_->stacks.lock();
        if (!stacks->redo.empty()) entry = stacks->redo.back();
    }
    if (!entry) return std::nullopt;
    entry->steps = FileOps::reapply(entry->steps);
    state_->change([&](State::Stacks& stacks) {
        std::erase_if(stacks.redo,
                      [&](const HistoryEntry& other) { return other.id == entry->id; });
        std::erase(stacks.unsavedRemovals, entry->id);
        stacks.unsaved.push_back(entry->id);
        stacks.undo.emplace_back(*entry);
    });
    if (onChange) onChange();
    return entry;
}

void OperationHistory::clear() {
    state_->change([](State::Stacks& stacks) {
        stacks.undo.clear();
        stacks.older.clear();
        stacks.redo.clear();
        stacks.unsaved.clear();
        stacks.unsavedClear = true;
    });
    if (onChange) onChange();
}

bool OperationHistory::refresh() { return state_->refresh(); }

std::optional<HistoryEntry> OperationHistory::find(const UUID& id) const {
    const auto stacks = state_->stacks.lock();
    for (Lines* lines : {&stacks->undo, &stacks->older}) {
        stacks->drop(*lines, [&](const HistoryLine& line) { return line.id() == id; });
        if (const auto found = withID(*lines, id); found != lines->end()) return *found->entry();
    }
    return std::nullopt;
}

}  // namespace tarn
