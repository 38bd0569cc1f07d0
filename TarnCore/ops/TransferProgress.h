#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/ops/Step.h"

namespace tarn {

enum class TransferKind : std::uint8_t { copy, move, trash };

enum class TransferState : std::uint8_t {
    queued,
    scanning,
    running,
    paused,
    waiting,  ///< For the answer to a conflict.
    finished,
    cancelled
};

/// As they are stored and shown to programs: "copy", "keepBoth", …
std::string_view name(TransferKind kind);
std::string_view name(TransferState state);

/// How far a transfer has come; a copy handed to observers.
struct TransferProgress {
    TransferState state = TransferState::queued;
    std::int64_t totalBytes = 0;
    std::int64_t doneBytes = 0;
    std::int64_t totalItems = 0;
    std::int64_t doneItems = 0;
    std::string currentName{};
    double bytesPerSecond = 0;
    /// Everything is copied and now being written out to a disk that may be unplugged.
    bool isFinishingWriting = false;

    double fraction() const;  ///< 0 to 1.
    std::optional<double> secondsRemaining() const;
    bool operator==(const TransferProgress&) const = default;
};

enum class ConflictAction : std::uint8_t { replace, skip, keepBoth, merge, stop };
std::string_view name(ConflictAction action);

struct ConflictDecision {
    ConflictAction action = ConflictAction::keepBoth;
    bool applyToAll = false;
    bool operator==(const ConflictDecision&) const = default;
};

/// Two items that want one name, as the question shows them.
struct TransferConflict {
    URL source;
    URL existing;
    bool bothFolders = false;
    std::optional<Date> sourceModified;
    std::optional<Date> existingModified;
    std::optional<std::int64_t> sourceSize;
    std::optional<std::int64_t> existingSize;
};

struct TransferFailure {
    UUID id = UUID::random();
    URL source;
    std::optional<URL> destinationFolder;  ///< Absent for the Trash.
    std::string message;                   ///< A finished sentence.
};

struct TransferResult {
    std::vector<Step> steps;
    std::vector<TransferFailure> failures;
    std::vector<URL> resultURLs;  ///< Where each handled item ended up.
    bool cancelled = false;
    /// What a cancelled transfer had replaced or moved already, or what one that finished could not
    /// keep of its items (their tags on a disk that takes none), in words; empty when nothing.
    std::string notice;
};

}  // namespace tarn
