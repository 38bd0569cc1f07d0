#include "extract/FileView.h"

#include <cerrno>
#include <system_error>

#include <sys/mman.h>
#include <sys/stat.h>

#include <unistd.h>

namespace tarn::extract {
namespace {

/// Below it, copying is quicker than mapping and its page faults.
constexpr std::size_t smallestMapped = 256 * 1024;

std::system_error failure(const char* call) {
    return std::system_error(errno, std::generic_category(), call);
}

std::string contents(int file, std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t got = pread(file, &bytes[filled], size - filled, static_cast<off_t>(filled));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw failure("pread");
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

}  // namespace

FileView::FileView(const FileDescriptor& file) {
    struct stat facts {};
    if (fstat(file.get(), &facts) != 0) throw failure("fstat");
    const auto size = static_cast<std::size_t>(facts.st_size);
    if (size >= smallestMapped) {
        void* mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
        if (mapped != MAP_FAILED) {
            mapped_ = mapped;
            bytes_ = {static_cast<const char*>(mapped), size};
            return;
        }
    }
    read_ = contents(file.get(), size);
    bytes_ = read_;
}

FileView::~FileView() {
    if (mapped_) munmap(mapped_, bytes_.size());
}

}  // namespace tarn::extract
