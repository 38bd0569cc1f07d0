#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// A note on the disk about a change that takes several steps, so that a crash in between leaves
/// nothing half-done: the next program that starts reads it and puts back what it names.
///
/// Make one before the first step and let it go after the last; the notes of programs that run are
/// left alone. Each is a file "UUID.journal" in the folder "Unfinished" of the support folder,
/// locked with flock by the program that works: a JSON object a line, of which a last one that was
/// cut off does not count.
///
///     {"move": {"from": …, "to": …, "temporary": …, "inode": …}}
///     {"leftovers": {"folder": …, "prefix": …}}
///
/// Callable from any thread, one object by one thread at a time.
class ChangeJournal {
public:
    /// Items on their way. All of them, or after a crash none, get their new names.
    struct Move {
        URL from;
        URL to;
        URL temporary;  ///< Where it is in between; `from` for one that moves in one step.
    };
    /// Returns when the note is on the disk. Throws std::system_error when it cannot be written;
    /// then nothing may be moved.
    static ChangeJournal ofMoves(std::span<const Move> moves);

    /// For unfinished items whose names begin with `prefix`, which must be new for this change
    /// (temporaryName). After a crash they are deleted in every folder that was named by
    /// addFolder. Writes nothing yet.
    static ChangeJournal ofLeftovers(std::string prefix);
    /// Before the first such item is made in this folder; a folder named before costs nothing.
    /// Throws std::system_error when it cannot be written.
    void addFolder(const URL& folder);

    ChangeJournal(ChangeJournal&&) noexcept;
    ChangeJournal& operator=(ChangeJournal&&) noexcept;
    /// Removes the note.
    ~ChangeJournal();
    /// Leaves the note to the next start, when putting things back has failed.
    void leaveToRepair();

    /// Takes care of what programs that crashed have left. Called when a program starts, before it
    /// changes files; a single look at a folder that is mostly missing. Returns how many items
    /// were put back or deleted. Never throws; what cannot be put back now is tried again at the
    /// next start.
    static std::size_t repair();

    /// What temporary names begin with.
    static constexpr std::string_view renaming = ".tarn-rename-";
    static constexpr std::string_view moving = ".tarn-move-";
    static constexpr std::string_view copying = ".tarn-copy-";
    /// One of these and a new UUID.
    static std::string temporaryName(std::string_view prefix);

private:
    struct State;
    explicit ChangeJournal(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace tarn
