#include "TarnCore/platform/linux/modules/FileCursor.h"

#include <algorithm>

namespace tarn {
namespace {

/// Bytes; one page costs as much to read as four do.
constexpr std::size_t pieceSize = 16 * 1024;

}  // namespace

bool FileCursor::moveTo(std::int64_t place) {
    if (place < 0) return false;
    place_ = place;
    return true;
}

std::size_t FileCursor::read(std::span<char> into) {
    std::size_t done = 0;
    while (done < into.size()) {
        const std::span<char> rest = into.subspan(done);
        const std::int64_t inside = place_ - pieceStart_;
        std::size_t got = 0;
        if (inside >= 0 && inside < std::ssize(piece_)) {
            const auto known = std::span(piece_).subspan(static_cast<std::size_t>(inside));
            got = std::min(known.size(), rest.size());
            std::copy_n(known.begin(), got, rest.begin());
        } else if (rest.size() >= pieceSize) {
            got = file_.read(place_, rest);
            if (got == 0) break;
        } else {
            piece_.resize(pieceSize);
            piece_.resize(file_.read(place_, piece_));
            pieceStart_ = place_;
            if (piece_.empty()) break;
        }
        place_ += static_cast<std::int64_t>(got);
        done += got;
    }
    return done;
}

}  // namespace tarn
