#include "TarnCore/files/ListedFolder.h"

#include <cerrno>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/FirstNames.h"
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

bool mayBeLink(FileType type) { return type == FileType::symlink || type == FileType::unknown; }

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

/// What one reader brings. For one thread at a time.
class ListedFolder::Stretch {
public:
    Stretch(const ListedFolder& folder, FolderReader& reader,
            const std::optional<Beginning>& beginning)
        : folder_(folder), reader_(reader) {
        if (beginning) first_.emplace(beginning->order, beginning->count);
    }

    /// From so many names on it picks those that come first while it reads.
    void read(bool includeHidden, const CancelToken& token, std::size_t pickFrom) {
        try {
            for (auto batch = reader_.read(); !batch.empty() && !token.isCancelled();
                 batch = reader_.read()) {
                for (const FolderEntry& entry : batch) {
                    if (!includeHidden && folder_.resources_.isHidden(entry.view())) continue;
                    entries_.push_back({bytes_.size(), entry.length, entry.type});
                    bytes_.append(entry.name, entry.length + std::size_t{1});
                }
                if (entries_.size() > pickFrom) pick();
            }
        } catch (const std::system_error&) {
            failure_ = std::current_exception();
        }
    }
    void throwFailure() const {
        if (failure_) std::rethrow_exception(failure_);
    }
    std::size_t size() const { return entries_.size(); }

    /// Looks at the names that it has not looked at yet.
    void pick() {
        if (!first_) return;
        for (; picked_ < entries_.size(); ++picked_) {
            const Entry& entry = entries_[picked_];
            const char* name = bytes_.data() + entry.offset;
            const std::string_view view(name, entry.length);
            // Where a link leads to is looked at only where that can matter.
            if (mayBeLink(entry.type) && !first_->mayTake(view)) continue;
            first_->add(view, folder_.isDirectory(name, entry),
                        static_cast<std::uint32_t>(picked_));
        }
    }
    std::vector<std::uint32_t> first() {
        return first_ ? first_->positions() : std::vector<std::uint32_t>();
    }

    /// Puts what the reader behind this one has brought behind its own.
    void append(Stretch&& later) {
        if (first_) first_->add(std::move(*later.first_), static_cast<std::uint32_t>(size()));
        picked_ += later.picked_;
        entries_.reserve(size() + later.size());
        for (Entry entry : later.entries_) {
            entry.offset += bytes_.size();
            entries_.push_back(entry);
        }
        bytes_ += later.bytes_;
    }
    void moveInto(std::string& bytes, std::vector<Entry>& entries) {
        bytes = std::move(bytes_);
        entries = std::move(entries_);
    }

private:
    const ListedFolder& folder_;
    FolderReader& reader_;
    std::string bytes_;
    std::vector<Entry> entries_;
    std::optional<FirstNames> first_;
    std::size_t picked_ = 0;  ///< So many entries have been looked at.
    std::exception_ptr failure_;
};

ListedFolder::ListedFolder(URL folder, bool includeHidden, const CancelToken& token,
                           const std::optional<Beginning>& beginning)
    : folder_(std::move(folder)), reader_(open(folder_)), resources_(folder_) {
    try {
        readAt_ = systemTime();
        modified_ = reader_->attributes().modified;
        readNames(includeHidden, token, beginning);
    } catch (const std::system_error& error) {
        throw listingError(folder_, error.code().value());
    }
}

void ListedFolder::readNames(bool includeHidden, const CancelToken& token,
                             const std::optional<Beginning>& beginning) {
    const std::unique_ptr<FolderReader> behind = reader_->splitOff();
    std::vector<Stretch> stretches;
    stretches.emplace_back(*this, *reader_, beginning);
    if (behind) stretches.emplace_back(*this, *behind, beginning);
    const std::size_t from = beginning ? beginning->from : 0;
    const auto read = [&](std::size_t i) {
        stretches[i].read(includeHidden, token, from / stretches.size());
    };
    if (behind)
        TaskPool::shared().forEach(stretches.size(), read);
    else
        read(0);
    std::size_t count = 0;
    for (const Stretch& stretch : stretches) {
        stretch.throwFailure();
        count += stretch.size();
    }
    const bool picks = beginning && count > from;
    if (picks)
        for (Stretch& stretch : stretches) stretch.pick();
    Stretch& all = stretches.front();
    for (std::size_t i = 1; i < stretches.size(); ++i) all.append(std::move(stretches[i]));
    if (picks) first_ = all.first();
    all.moveInto(bytes_, entries_);
}

bool ListedFolder::isDirectory(const char* name, const Entry& entry) const {
    bool isDirectory = entry.type == FileType::directory;
    if (mayBeLink(entry.type)) isDirectory = targetIsDirectory(*reader_, name).value_or(false);
    return isDirectory && !ResourceReader::isPackageName({name, entry.length});
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
    for (std::size_t i = 0; i < size(); ++i)
        names.push_back({name(i), isDirectory(c_str(i), entries_[i])});
    return names;
}

std::vector<FileItem> ListedFolder::items(std::span<const std::uint32_t> positions,
                                          ResourceKeys keys, const CancelToken& token) const {
    return ItemGathering::gather<Builder>(positions.size(), token,
                                          [&] { return Builder(*this, positions, keys); });
}

}  // namespace tarn
