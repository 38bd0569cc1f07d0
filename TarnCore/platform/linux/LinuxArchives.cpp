#include "TarnCore/platform/linux/LinuxArchives.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/platform/linux/LinuxTreeWriter.h"
#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

class LinuxFileBytes final : public FileBytes {
public:
    LinuxFileBytes(FileDescriptor fd, std::int64_t size) : fd_(std::move(fd)), size_(size) {}

    std::int64_t size() const override { return size_; }

    std::size_t read(std::int64_t offset, std::span<char> into) const override {
        std::size_t done = 0;
        while (done < into.size()) {
            const ssize_t got = pread(fd_.get(), into.data() + done, into.size() - done,
                                      offset + static_cast<std::int64_t>(done));
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) fail(errno, "read");
            if (got == 0) break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

private:
    FileDescriptor fd_;
    std::int64_t size_;
};

}  // namespace

std::shared_ptr<const FileBytes> LinuxArchives::open(const URL& file, Links links) const {
    // Without O_NONBLOCK, a pipe that nobody writes to would hold us here for ever.
    FileDescriptor fd(openQuietly(
        AT_FDCWD, file.c_str(),
        O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (links == Links::keep ? O_NOFOLLOW : 0)));
    if (!fd) fail(errno, "open");
    struct stat facts;
    if (fstat(fd.get(), &facts) != 0) fail(errno, "stat");
    if (S_ISDIR(facts.st_mode)) fail(EISDIR, "open");
    if (!S_ISREG(facts.st_mode)) fail(EINVAL, "open");
    return std::make_shared<LinuxFileBytes>(std::move(fd), facts.st_size);
}

std::unique_ptr<ArchiveStream> LinuxArchives::stream(std::shared_ptr<const FileBytes> bytes,
                                                     ArchiveStream::Form form) const {
    static ArchiveOpening* const opening = [] {
        auto* entry = reinterpret_cast<ArchiveOpeningEntry*>(
            loadModuleSymbol("tarn-archives", archiveOpeningSymbol));
        return entry ? entry(archiveOpeningVersion) : nullptr;
    }();
    return opening ? opening(std::move(bytes), form) : nullptr;
}

std::unique_ptr<TreeWriter> LinuxArchives::writer(const URL& folder) const {
    FileDescriptor fd(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd) fail(errno, "open");
    return std::make_unique<LinuxTreeWriter>(std::move(fd));
}

}  // namespace tarn
