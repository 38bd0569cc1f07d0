#include "TarnCore/files/DirectoryLister.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <iterator>
#include <system_error>
#include <thread>
#include <utility>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::DirectoryLister {
namespace {

constexpr std::size_t mostWorkers = 8;
/// Items between two looks at the cancel token.
constexpr std::size_t cancelStride = 256;

ListingError listingError(const URL& folder, int errnum) {
    const std::string name = displayName(folder);
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

/// The names of one folder, end to end in one buffer, each followed by a NUL.
struct NameList {
    struct Entry {
        std::size_t offset;
        std::uint32_t length;
        FileType type;
    };
    std::string bytes;
    std::vector<Entry> entries;

    std::size_t size() const { return entries.size(); }
    const char* c_str(std::size_t i) const { return bytes.data() + entries[i].offset; }
    std::string_view view(std::size_t i) const { return {c_str(i), entries[i].length}; }
};

NameList readNames(const URL& folder, FolderReader& reader, const ResourceReader& resources,
                   bool includeHidden, const CancelToken& token) {
    NameList names;
    try {
        for (auto batch = reader.read(); !batch.empty() && !token.isCancelled();
             batch = reader.read()) {
            for (const FolderEntry& entry : batch) {
                if (!includeHidden && resources.isHidden(entry.view())) continue;
                names.entries.push_back({names.bytes.size(), entry.length, entry.type});
                names.bytes.append(entry.name, entry.length + std::size_t{1});
            }
        }
    } catch (const std::system_error& error) {
        throw listingError(folder, error.code().value());
    }
    return names;
}

/// Calls `build(worker, i)` for 0 … count - 1 and gathers what it returns, in this order. From
/// `parallelFrom` on each worker takes one run of neighbours.
template <class Worker>
std::vector<FileItem> gather(std::size_t count, const CancelToken& token,
                             const std::function<Worker()>& makeWorker) {
    const auto buildRange = [&](std::vector<FileItem>& out, std::size_t begin, std::size_t end) {
        Worker worker = makeWorker();
        for (std::size_t i = begin; i < end; ++i) {
            if (i % cancelStride == 0 && token.isCancelled()) return;
            if (auto item = worker(i)) out.push_back(std::move(*item));
        }
    };
    std::vector<FileItem> items;
    items.reserve(count);
    if (count < parallelFrom) {
        buildRange(items, 0, count);
        return items;
    }
    const std::size_t workers =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, mostWorkers);
    const std::size_t chunk = (count + workers - 1) / workers;
    std::vector<std::vector<FileItem>> slots(workers);
    // The first slot is the result itself, so that its part need not be moved.
    slots[0] = std::move(items);
    TaskPool::shared().forEach(workers, [&](std::size_t i) {
        const std::size_t begin = std::min(i * chunk, count);
        const std::size_t end = std::min(begin + chunk, count);
        if (i > 0) slots[i].reserve(end - begin);
        buildRange(slots[i], begin, end);
    });
    items = std::move(slots[0]);
    for (std::size_t i = 1; i < workers; ++i) {
        std::move(slots[i].begin(), slots[i].end(), std::back_inserter(items));
        slots[i] = {};
    }
    return items;
}

std::optional<bool> targetIsDirectory(const FolderReader& reader, const char* name) {
    const auto target = reader.attributes(name, Links::follow);
    if (!target) return std::nullopt;
    return target->type == FileType::directory;
}

/// Builds the items of one folder from its names, through a descriptor of its own.
class ChildBuilder {
public:
    ChildBuilder(const URL& folder, const NameList& names, const ResourceReader& resources,
                 ResourceKeys keys)
        : folder_(folder), names_(names), resources_(resources), keys_(keys) {
        try {
            reader_ = Platform::current().files->openFolder(folder);
        } catch (const std::system_error&) {
            // Gone or closed since its names were read: then so are its children.
        }
    }

    std::optional<FileItem> operator()(std::size_t i) const {
        if (!reader_) return std::nullopt;
        const char* name = names_.c_str(i);
        const auto attributes = reader_->attributes(name, Links::keep);
        if (!attributes) return std::nullopt;
        std::optional<bool> target;
        if (attributes->type == FileType::symlink) target = targetIsDirectory(*reader_, name);
        URL child = folder_.appending(names_.view(i));
        ResourceValues values =
            resources_.values(child, names_.view(i), *attributes, target, keys_);
        return FileItem::make(std::move(child), std::move(values));
    }

private:
    const URL& folder_;
    const NameList& names_;
    const ResourceReader& resources_;
    ResourceKeys keys_;
    std::unique_ptr<FolderReader> reader_;
};

/// Builds the items of URLs from anywhere. Neighbours in the list mostly share their folder, so its
/// `.hidden` list is kept until the next folder.
class ItemLoader {
public:
    ItemLoader(const std::vector<URL>& urls, ResourceKeys keys) : urls_(urls), keys_(keys) {}

    std::optional<FileItem> operator()(std::size_t i) {
        const URL& url = urls_[i];
        URL parent = url.parent();
        if (!resources_ || parent != folder_) {
            folder_ = std::move(parent);
            resources_ = std::make_unique<ResourceReader>(folder_);
        }
        const auto values = resources_->values(url, keys_);
        return values ? std::optional(FileItem::make(url, *values)) : std::nullopt;
    }

private:
    const std::vector<URL>& urls_;
    ResourceKeys keys_;
    URL folder_;
    std::unique_ptr<ResourceReader> resources_;
};

}  // namespace

bool tagsDeferred(std::size_t count) { return count > deferTagsAbove; }

std::vector<FileItem> list(const URL& folder, bool includeHidden, const CancelToken& token,
                           AttributeReading reading) {
    const auto reader = open(folder);
    const ResourceReader resources(folder);
    const NameList names = readNames(folder, *reader, resources, includeHidden, token);
    const bool readsAttributes = reading == AttributeReading::always || !tagsDeferred(names.size());
    const ResourceKeys keys{.tags = readsAttributes, .cloud = FileItem::isCloudPath(folder)};
    return gather<ChildBuilder>(names.size(), token,
                                [&] { return ChildBuilder(folder, names, resources, keys); });
}

std::vector<ListedName> names(const URL& folder, bool includeHidden, const CancelToken& token) {
    const auto reader = open(folder);
    const ResourceReader resources(folder);
    const NameList list = readNames(folder, *reader, resources, includeHidden, token);
    std::vector<ListedName> names;
    names.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        const FileType type = list.entries[i].type;
        bool isDirectory = type == FileType::directory;
        if (type == FileType::symlink || type == FileType::unknown)
            isDirectory = targetIsDirectory(*reader, list.c_str(i)).value_or(false);
        if (isDirectory) isDirectory = !ResourceReader::isPackageName(list.view(i));
        names.push_back({std::string(list.view(i)), isDirectory});
    }
    return names;
}

std::vector<FileItem> load(const std::vector<URL>& urls, ResourceKeys keys) {
    return gather<ItemLoader>(urls.size(), {}, [&] { return ItemLoader(urls, keys); });
}

std::unordered_map<URL, std::vector<std::string>> loadTags(const std::vector<URL>& urls) {
    Guarded<std::unordered_map<URL, std::vector<std::string>>> result;
    TaskPool::shared().forEach(mostWorkers, [&](std::size_t worker) {
        for (std::size_t i = worker; i < urls.size(); i += mostWorkers) {
            std::vector<std::string> tags = ResourceReader::tags(urls[i]);
            if (!tags.empty()) result.lock()->emplace(urls[i], std::move(tags));
        }
    });
    return std::move(*result.lock());
}

std::string displayName(const URL& url) {
    return url.isRoot() ? "Computer" : Text::sanitized(url.name());
}

}  // namespace tarn::DirectoryLister
