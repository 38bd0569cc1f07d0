#include "TarnCore/index/readers/OpenFile.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/mman.h>
#include <sys/stat.h>

#include <unistd.h>

namespace tarn {
namespace {

/// Bytes; below, copying is quicker than mapping and its page faults.
constexpr std::int64_t smallestMapped = 256 * 1024;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::optional<OpenFile> OpenFile::of(int descriptor, std::int64_t limit) {
    struct stat facts;
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    if (facts.st_size > limit) return std::nullopt;
    return OpenFile(descriptor, facts.st_size);
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : descriptor_(other.descriptor_),
      size_(other.size_),
      copy_(std::move(other.copy_)),
      mapped_(std::exchange(other.mapped_, nullptr)) {}

OpenFile::~OpenFile() {
    if (mapped_) munmap(mapped_, static_cast<std::size_t>(size_));
}

std::size_t OpenFile::read(std::int64_t offset, std::span<char> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t got = pread(descriptor_, into.data() + done, into.size() - done,
                                  offset + static_cast<std::int64_t>(done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail("read");
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::string_view OpenFile::bytes() {
    if (size_ < smallestMapped) {
        if (copy_.empty()) copy_ = copy();
        return copy_;
    }
    if (!mapped_) {
        void* const address =
            mmap(nullptr, static_cast<std::size_t>(size_), PROT_READ, MAP_PRIVATE, descriptor_, 0);
        if (address == MAP_FAILED) fail("mmap");
        mapped_ = address;
    }
    return {static_cast<const char*>(mapped_), static_cast<std::size_t>(size_)};
}

void OpenFile::letGo() {
    if (mapped_) madvise(mapped_, static_cast<std::size_t>(size_), MADV_DONTNEED);
}

std::string OpenFile::copy() const {
    std::string all(static_cast<std::size_t>(size_), '\0');
    all.resize(read(0, all));
    return all;
}

}  // namespace tarn
