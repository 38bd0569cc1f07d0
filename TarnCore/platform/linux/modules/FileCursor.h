#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// A file as libraries like to read it: from where they stand, in pieces that may be tiny. For one
/// thread at a time; the file must outlive it.
class FileCursor {
public:
    explicit FileCursor(const FileBytes& file) : file_(file) {}
    FileCursor(const FileCursor&) = delete;
    FileCursor& operator=(const FileCursor&) = delete;

    std::int64_t size() const { return file_.size(); }
    std::int64_t place() const { return place_; }
    /// Behind the end there is nothing to read. False, and it stays, before the beginning.
    bool moveTo(std::int64_t place);
    /// Moves on by what it returns: fewer only at the end of the file. Throws std::system_error.
    std::size_t read(std::span<char> into);

private:
    const FileBytes& file_;
    std::int64_t place_ = 0;
    std::vector<char> piece_;  ///< What was read last, and where it begins.
    std::int64_t pieceStart_ = 0;
};

}  // namespace tarn
