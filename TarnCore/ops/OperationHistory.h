#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/ops/Step.h"

namespace tarn {

enum class OperationKind : std::uint8_t {
    rename,
    move,
    copy,
    trash,
    create,
    tag,
    duplicate,
    compress,
    extract,
    batchRename,
    rule,
    convert,
    permissions
};

std::string_view name(OperationKind kind);  ///< As it is stored: "batchRename".
/// Name of the icon that lists show for it.
std::string_view symbol(OperationKind kind);

/// One change as the user sees it in menus and in the list of changes. Stored as an object with
/// the field names as keys.
struct HistoryEntry {
    UUID id = UUID::random();
    Date date;  ///< Set by OperationHistory::record when it is the epoch.
    OperationKind kind = OperationKind::move;
    std::string title;
    std::vector<Step> steps;
    std::int64_t fileCount = 0;  ///< How many files it concerns.
    bool operator==(const HistoryEntry&) const = default;
};

void to_json(JSON& json, const HistoryEntry& entry);
void from_json(const JSON& json, HistoryEntry& entry);

/// What was changed, and taking it back: an undo list that survives restarts for seven days, and a
/// redo list in memory.
///
/// Callable from any thread. Several processes may have the same history: every change of the list
/// happens under a lock of the file and re-reads it first. File work is done outside the lock.
/// undo() and redo() throw FileOpError and leave both lists as they were.
class OperationHistory {
public:
    static constexpr double retention = 604800;     ///< Seconds.
    static constexpr std::size_t mostStored = 500;  ///< Entries; older ones stay in memory.

    /// In memory only without a file.
    explicit OperationHistory(std::optional<URL> fileURL);
    /// "undo-history.json" in the support folder.
    static URL defaultFile();
    /// record() for a program that asks nothing of the history before: one that holds the names of
    /// many files has megabytes, which are then read once instead of twice.
    static void append(URL fileURL, HistoryEntry entry);
    ~OperationHistory();
    OperationHistory(const OperationHistory&) = delete;
    OperationHistory& operator=(const OperationHistory&) = delete;

    /// Newest last.
    std::vector<HistoryEntry> undoStack() const;
    std::vector<HistoryEntry> redoStack() const;
    bool canUndo() const;
    bool canRedo() const;
    std::optional<std::string> nextUndoTitle() const;
    std::optional<std::string> nextRedoTitle() const;

    /// Ignored without steps; else empties the redo list.
    void record(HistoryEntry entry);
    std::optional<HistoryEntry> undo();
    std::optional<HistoryEntry> undo(const UUID& id);
    bool canUndo(const UUID& id) const;
    std::optional<HistoryEntry> redo();
    void clear();
    /// Takes over what other processes have recorded or undone; true when there was something.
    bool refresh();

    /// Called after every change of the lists, on the thread that made it. Set before use.
    std::function<void()> onChange;

private:
    struct State;
    std::optional<HistoryEntry> find(const UUID& id) const;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
