#include "TarnCore/platform/linux/LinuxArchives.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/linux/LinuxFileBytes.h"
#include "TarnCore/platform/linux/LinuxTreeWriter.h"
#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

}  // namespace

std::shared_ptr<const FileBytes> LinuxArchives::open(const URL& file, Links links) const {
    return std::make_shared<LinuxFileBytes>(file.c_str(), links);
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
