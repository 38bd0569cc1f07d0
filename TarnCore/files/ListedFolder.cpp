#include "TarnCore/files/ListedFolder.h"

#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ItemGathering.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// File times come from a clock that ticks up to 10 ms late.
constexpr double clockTick = 0.05;

/// What the times of files are taken from, whatever the program takes for now.
Date systemTime() {
    const std::chrono::nanoseconds since = std::chrono::system_clock::now().time_since_epoch();
    return Date::fromUnix(0, since.count());
}

ListingError listingError(const URL& folder, int errnum) {
    const std::string name = DirectoryLister::displayName(folder);
    switch (errnum) {
        case EPERM:
        case EACCES:
            return ListingError::permissionDenied(name);
        case ENOENT:
        case ELOOP:
            return ListingError::notFound(name);
        case ENOTDIR:
            return ListingError::notAFolder(name);
        default:
            return ListingError::other(systemErrorSentence(errnum));
    }
}

std::unique_ptr<FolderReader> open(const URL& folder) {
    const FileSystem& files = *Platform::current().files;
    FileAttributes attributes;
    try {
        attributes = files.requireAttributes(folder, Links::follow);
    } catch (const std::system_error& error) {
        // A file where a folder should be on the way means that nothing is there.
        const int errnum = error.code().value();
        throw listingError(folder, errnum == ENOTDIR ? ENOENT : errnum);
    }
    if (attributes.type != FileType::directory) throw listingError(folder, ENOTDIR);
    try {
        return files.openFolder(folder);
    } catch (const std::system_error& error) {
        throw listingError(folder, error.code().value());
    }
}

std::optional<bool> targetIsDirectory(const FolderReader& reader, const char* name) {
    const auto target = reader.attributes(name, Links::follow);
    if (!target) return std::nullopt;
    return target->type == FileType::directory;
}

}  // namespace

/// Builds items through a descriptor of its own.
class ListedFolder::Builder {
public:
    Builder(const ListedFolder& folder, std::span<const std::uint32_t> positions, ResourceKeys keys)
        : folder_(folder), positions_(positions), keys_(keys) {
        try {
            reader_ = Platform::current().files->openFolder(folder.folder_);
        } catch (const std::system_error&) {
            // Gone or closed since its names were read: then so are its children.
        }
    }

    std::optional<FileItem> operator()(std::size_t i) const {
        if (!reader_) return std::nullopt;
        const std::size_t position = positions_[i];
        const char* name = folder_.c_str(position);
        const auto attributes = reader_->attributes(name, Links::keep);
        if (!attributes) return std::nullopt;
        std::optional<bool> target;
        if (attributes->type == FileType::symlink) target = targetIsDirectory(*reader_, name);
        URL child = folder_.folder_.appending(folder_.name(position));
        ResourceValues values =
            folder_.resources_.values(child, folder_.name(position), *attributes, target, keys_);
        return FileItem::make(std::move(child), std::move(values));
    }

private:
    const ListedFolder& folder_;
    std::span<const std::uint32_t> positions_;
    ResourceKeys keys_;
    std::unique_ptr<FolderReader> reader_;
};

ListedFolder::ListedFolder(URL folder, bool includeHidden, const CancelToken& token)
    : folder_(std::move(folder)), reader_(open(folder_)), resources_(folder_) {
    try {
        readAt_ = systemTime();
        modified_ = reader_->attributes().modified;
        readNames(includeHidden, token);
    } catch (const std::system_error& error) {
        throw listingError(folder_, error.code().value());
    }
}

void ListedFolder::readNames(bool includeHidden, const CancelToken& token) {
    for (auto batch = reader_->read(); !batch.empty() && !token.isCancelled();
         batch = reader_->read()) {
        for (const FolderEntry& entry : batch) {
            if (!includeHidden && resources_.isHidden(entry.view())) continue;
            entries_.push_back({bytes_.size(), entry.length, entry.type});
            bytes_.append(entry.name, entry.length + std::size_t{1});
        }
    }
}

bool ListedFolder::mayHaveChanged() const {
    try {
        // A change that follows another at once may leave the time as it is.
        return modified_ >= readAt_ - clockTick || reader_->attributes().modified != modified_;
    } catch (const std::system_error&) {
        return true;
    }
}

std::vector<ListedNameView> ListedFolder::names() const {
    std::vector<ListedNameView> names;
    names.reserve(size());
    for (std::size_t i = 0; i < size(); ++i) {
        const FileType type = entries_[i].type;
        bool isDirectory = type == FileType::directory;
        if (type == FileType::symlink || type == FileType::unknown)
            isDirectory = targetIsDirectory(*reader_, c_str(i)).value_or(false);
        if (isDirectory) isDirectory = !ResourceReader::isPackageName(name(i));
        names.push_back({name(i), isDirectory});
    }
    return names;
}

std::vector<FileItem> ListedFolder::items(std::span<const std::uint32_t> positions,
                                          ResourceKeys keys, const CancelToken& token) const {
    return ItemGathering::gather<Builder>(positions.size(), token,
                                          [&] { return Builder(*this, positions, keys); });
}

}  // namespace tarn
