#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// Reading and writing open files to the end, whatever interrupts it. Callable from any thread.
namespace FileIO {

/// From where the file stands. Returns 0 or the errno; what was written before a failure stays.
int writeAll(int fd, std::string_view bytes);
/// The same from a place of its own, which leaves where the file stands.
int writeAllAt(int fd, std::string_view bytes, std::int64_t at);

/// From where the file stands to its end; absent with errno set when it cannot be read.
std::optional<std::string> readAll(int fd);

}  // namespace FileIO

}  // namespace tarn
