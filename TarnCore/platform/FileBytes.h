#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tarn {

/// The bytes of an open file, at any place in it. Callable from any thread.
class FileBytes {
public:
    virtual ~FileBytes() = default;

    /// Bytes, as of when it was opened.
    virtual std::int64_t size() const = 0;

    /// Fills `into` with the bytes from `offset` on and returns how many there were: fewer only at
    /// the end of the file. Throws std::system_error.
    virtual std::size_t read(std::int64_t offset, std::span<char> into) const = 0;
};

}  // namespace tarn
