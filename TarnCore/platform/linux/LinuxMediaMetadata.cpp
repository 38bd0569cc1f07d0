#include "TarnCore/platform/linux/LinuxMediaMetadata.h"

#include <ctime>
#include <string>
#include <system_error>
#include <utility>

#include "TarnCore/platform/linux/LinuxFileBytes.h"
#include "TarnCore/platform/linux/MediaReader.h"
#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

/// Seconds for which the mount table is believed; reading it for each of many files would cost
/// more than all else.
constexpr double mountsStayFor = 2;

const MediaReader* load(const char* module) {
    void* symbol = loadModuleSymbol(module, mediaReaderSymbol);
    return symbol ? reinterpret_cast<MediaReaderEntry*>(symbol)(mediaReaderVersion) : nullptr;
}

const MediaReader* pictures() {
    static const MediaReader* const reader = load("tarn-pictures");
    return reader;
}
const MediaReader* films() {
    static const MediaReader* const reader = load("tarn-films");
    return reader;
}
const MediaReader* documents() {
    static const MediaReader* const reader = load("tarn-documents");
    return reader;
}

double monotonic() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

LinuxMediaMetadata::LinuxMediaMetadata(std::shared_ptr<FileSystem> files,
                                       std::shared_ptr<ContentTypes> types,
                                       std::shared_ptr<RecentFiles> recentFiles,
                                       std::shared_ptr<Volumes> volumes)
    : files_(std::move(files)),
      types_(std::move(types)),
      recentFiles_(std::move(recentFiles)),
      volumes_(std::move(volumes)) {}

ItemMetadata LinuxMediaMetadata::read(const URL& url) const {
    ItemMetadata metadata;
    const auto attributes = files_->attributes(url, Links::follow);
    if (!attributes) return metadata;
    metadata.lastOpened = lastOpened(url, *attributes);
    if (attributes->type != FileType::file || attributes->size == 0) return metadata;
    const auto type = types_->typeForName(url.name());
    if (!type) return metadata;
    const auto is = [&](std::string_view ancestor) { return types_->conforms(*type, ancestor); };
    const MediaReader* reader = nullptr;
    if (is(ContentType::image))
        reader = pictures();
    else if (is(ContentType::audio) || is(ContentType::movie))
        reader = films();
    else if (is(ContentType::pdf))
        reader = documents();
    if (!reader) return metadata;
    try {
        reader->read(LinuxFileBytes(url.c_str()), std::string(url.name()), metadata);
    } catch (const std::system_error&) {
        // Gone, or not ours to read.
    }
    return metadata;
}

std::optional<Date> LinuxMediaMetadata::lastOpened(const URL& url) const {
    const auto attributes = files_->attributes(url, Links::follow);
    return attributes ? lastOpened(url, *attributes) : std::nullopt;
}

std::optional<Date> LinuxMediaMetadata::lastOpened(const URL& url,
                                                   const FileAttributes& attributes) const {
    if (const auto visited = recentFiles_->lastVisited(url)) return visited;
    if (attributes.accessed > attributes.modified && recordsAccessTimes(url))
        return attributes.accessed;
    return std::nullopt;
}

bool LinuxMediaMetadata::recordsAccessTimes(const URL& url) const {
    const double now = monotonic();
    const auto mounts = mounts_.lock();
    if (mounts->readAt < 0 || now - mounts->readAt > mountsStayFor) {
        mounts->all = volumes_->mounts();
        mounts->readAt = now;
    }
    const Mount* mount = mountHolding(mounts->all, url);
    return mount && mount->recordsAccessTimes;
}

}  // namespace tarn
