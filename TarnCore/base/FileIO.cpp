#include "TarnCore/base/FileIO.h"

#include <array>
#include <cerrno>

#include <unistd.h>

namespace tarn::FileIO {
namespace {

/// `put` writes what it can of the rest and returns how much that was.
template <class Put>
int writeInPieces(std::string_view bytes, const Put& put) {
    while (!bytes.empty()) {
        const ssize_t written = put(bytes);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        if (written == 0) return ENOSPC;  // Some devices say so when they are full.
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

}  // namespace

int writeAll(int fd, std::string_view bytes) {
    return writeInPieces(
        bytes, [fd](std::string_view rest) { return write(fd, rest.data(), rest.size()); });
}

int writeAllAt(int fd, std::string_view bytes, std::int64_t at) {
    const char* const begin = bytes.data();
    return writeInPieces(bytes, [=](std::string_view rest) {
        return pwrite(fd, rest.data(), rest.size(), at + (rest.data() - begin));
    });
}

std::optional<std::string> readAll(int fd) {
    std::string text;
    std::array<char, 16384> buffer;
    for (;;) {
        const ssize_t got = read(fd, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

}  // namespace tarn::FileIO
