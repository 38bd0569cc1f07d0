#include "TarnCore/ops/TransferProgress.h"

#include <algorithm>

namespace tarn {

std::string_view name(TransferKind kind) {
    switch (kind) {
        case TransferKind::copy:
            return "copy";
        case TransferKind::move:
            return "move";
        case TransferKind::trash:
            return "trash";
    }
    return {};
}

std::string_view name(TransferState state) {
    switch (state) {
        case TransferState::queued:
            return "queued";
        case TransferState::scanning:
            return "scanning";
        case TransferState::running:
            return "running";
        case TransferState::paused:
            return "paused";
        case TransferState::waiting:
            return "waiting";
        case TransferState::finished:
            return "finished";
        case TransferState::cancelled:
            return "cancelled";
    }
    return {};
}

std::string_view name(ConflictAction action) {
    switch (action) {
        case ConflictAction::replace:
            return "replace";
        case ConflictAction::skip:
            return "skip";
        case ConflictAction::keepBoth:
            return "keepBoth";
        case ConflictAction::merge:
            return "merge";
        case ConflictAction::stop:
            return "stop";
    }
    return {};
}

double TransferProgress::fraction() const {
    const auto part = [](std::int64_t done, std::int64_t total) {
        return std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    };
    if (totalBytes >= 1) return part(doneBytes, totalBytes);
    if (totalItems >= 1) return part(doneItems, totalItems);
    return state == TransferState::finished ? 1.0 : 0.0;
}

std::optional<double> TransferProgress::secondsRemaining() const {
    if (bytesPerSecond <= 1.0 || doneBytes >= totalBytes) return std::nullopt;
    return static_cast<double>(totalBytes - doneBytes) / bytesPerSecond;
}

}  // namespace tarn
