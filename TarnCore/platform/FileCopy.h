#pragma once

#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// Copying items with everything that is kept about them: data (shared with the original where the
/// disk can), holes, times to the nanosecond, mode, owner where allowed, access lists, extended
/// attributes. Links are copied as links; two names of one file stay two names of one file. Pipes
/// are made anew; sockets and devices are not copied. Callable from any thread.
class FileCopy {
public:
    virtual ~FileCopy() = default;

    // What is given as the errno of an item for failures that the kernel has no number for.
    static constexpr int changedMeanwhile = ESTALE;  ///< Written to while it was being copied.
    static constexpr int notCopyable = EOPNOTSUPP;   ///< A socket or a device.

    /// What begins the name under which a copy is made, beside its final place, when the caller
    /// gives none; an identifier follows. Only a crash leaves such an item behind, and it holds
    /// nothing but a copy.
    static constexpr std::string_view temporaryPrefix = ".tarn-copy-";

    /// What the copies of one job remember of each other: files with several names, what a pair of
    /// disks cannot do, and for a move what was copied.
    class Record {
    public:
        virtual ~Record() = default;
    };
    enum class Purpose { copy, move };
    virtual std::shared_ptr<Record> makeRecord(Purpose purpose) const = 0;

    /// What a copy tells while it runs, on the thread or threads that do the work.
    struct Watch {
        /// Bytes and finished files since the last call; at most one call for a chunk or for a run
        /// of small files. May block (a pause). False stops the copy.
        std::function<bool(std::int64_t bytes, std::int64_t items)> progress{};
        /// An item that could not be copied, and its errno. The rest goes on. One call at a time.
        std::function<void(const URL& source, int errnum)> failed{};
        /// The item was copied, but the other disk does not take its attributes or access list.
        /// One call at a time.
        std::function<void(const URL& source)> attributesLost{};
        /// Asked for another name in the same folder when somebody else has taken the name while
        /// the copy was being made; without it the copy then fails with EEXIST.
        std::function<URL(const URL& taken)> nextName{};
        /// Null for a copy that stands alone.
        std::shared_ptr<Record> record{};
        /// The name under which the copy is made, which must be new; empty for one of its own.
        std::string temporaryName{};
        /// One call of `progress` for every file, all on the calling thread.
        bool reportsEachItem = false;
        /// The first failure ends everything and is thrown: all or nothing.
        bool stopsAtFailure = false;
        /// Big files are written out while they are copied, so that a slow disk shows its speed.
        bool writesSteadily = false;
    };
    enum class Outcome { complete, partial, stopped };

    /// Copies a file, link or whole folder to a name that must be free (EEXIST otherwise). What was
    /// made is complete when it appears under that name, and is gone again after `stopped`.
    /// Throws std::system_error when the item itself could not be copied at all, or the other disk
    /// is full or cannot be written to; nothing is left then.
    virtual Outcome copy(const URL& from, const URL& to, const Watch& watch) = 0;

    /// One of many small files on their way into the same folder.
    struct FileOrder {
        URL from;
        std::string name;  ///< In the folder; no other of the batch has it.
        /// Set by copyFiles(): 0 when the file is complete under its name, EEXIST when that was
        /// taken, ECANCELED when it was not its turn any more, else the failure of this file.
        int errnum = ECANCELED;
    };
    /// Copies files that have one name each, cheaper than one by one. Each is complete when it
    /// appears; after `stopped` those that had appeared stay. Of `watch`, `failed`, `nextName` and
    /// `stopsAtFailure` have no part in it, and `attributesLost` and `temporaryName` mean what they
    /// mean for a single copy: what a crash leaves has a name that begins with the latter.
    /// Throws std::system_error when the folder cannot be opened.
    virtual Outcome copyFiles(std::span<FileOrder> files, const URL& folder, const Watch& watch);

    /// Writes out all that was copied to the disk of `folder`; true when it is on the disk. May
    /// take as long as the disk is slow.
    virtual bool flush(const URL& folder) = 0;

    /// Deletes an original that was copied with this record (made for a move). Only what was copied
    /// and has not changed since goes; what appeared or changed stays, with the folders it is in,
    /// and the first of these is thrown as std::system_error (changedMeanwhile, ENOTEMPTY).
    virtual void removeCopied(const URL& from, const Record& record) = 0;

    /// Deletes an item with everything below it, by descriptors and without following a link.
    /// Throws the first failure as std::system_error; goes on as far as it can.
    virtual void remove(const URL& url) = 0;

    /// Copies to another disk, all or nothing, writes the copy out and deletes the original. Throws
    /// std::system_error; unless the copy is complete by then, nothing has changed. The progress of
    /// `watch` may stop it.
    Outcome moveAcross(const URL& from, const URL& to, Watch watch);
};

}  // namespace tarn
