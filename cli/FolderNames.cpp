#include "cli/FolderNames.h"

#include <algorithm>
#include <memory>
#include <system_error>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::cli {
namespace {

constexpr std::size_t chunkSize = 4096;

/// A folder to enter, as FileItem::isDirectory has it. Only links need the disk.
bool isFolder(const FolderReader& reader, const FolderEntry& entry) {
    FileType type = entry.type;
    if (type == FileType::unknown) {
        const auto attributes = reader.attributes(entry.name, Links::keep);
        type = attributes ? attributes->type : FileType::unknown;
    }
    if (type == FileType::symlink) {
        const auto target = reader.attributes(entry.name, Links::follow);
        type = target ? target->type : FileType::symlink;
    }
    return type == FileType::directory && !ResourceReader::isPackageName(entry.view());
}

}  // namespace

FolderNames::FolderNames(const URL& folder, bool includeHidden) {
    std::unique_ptr<FolderReader> reader;
    try {
        reader = Platform::current().files->openFolder(folder);
    } catch (const std::system_error&) {
        DirectoryLister::list(folder, includeHidden);  // Throws the sentence for it.
        throw;
    }
    const ResourceReader resources(folder);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
        for (const FolderEntry& entry : batch) {
            const std::string_view name = entry.view();
            if (!includeHidden && resources.isHidden(name)) continue;
            entries_.push_back({bytes_.size(), entry.length, isFolder(*reader, entry)});
            bytes_ += name;
        }
    }
}

void FolderNames::sort(bool ascending, bool foldersFirst) {
    struct Key {
        std::string_view bytes;
        std::uint32_t index = 0;
    };
    std::vector<Key> keys(entries_.size());
    const std::size_t chunks = (keys.size() + chunkSize - 1) / chunkSize;
    std::vector<std::string> arenas(chunks);
    const auto buildChunk = [&](std::size_t chunk) {
        const std::size_t start = chunk * chunkSize;
        const std::size_t end = std::min(keys.size(), start + chunkSize);
        std::vector<std::size_t> ends;
        ends.reserve(end - start);
        std::string& arena = arenas[chunk];
        std::string key;
        for (std::size_t i = start; i < end; ++i) {
            Collation::sortKeyInto(key, (*this)[i]);
            arena += key;
            ends.push_back(arena.size());
        }
        std::size_t begin = 0;
        for (std::size_t i = start; i < end; ++i) {
            const std::size_t length = ends[i - start] - begin;
            keys[i] = {std::string_view(arena).substr(begin, length),
                       static_cast<std::uint32_t>(i)};
            begin += length;
        }
    };
    if (chunks > 1) {
        TaskPool::shared().forEach(chunks, buildChunk);
    } else if (chunks == 1) {
        buildChunk(0);
    }

    std::ranges::sort(keys, [&](const Key& a, const Key& b) {
        if (foldersFirst && entries_[a.index].isFolder != entries_[b.index].isFolder) {
            return entries_[a.index].isFolder;
        }
        const int order = a.bytes.compare(b.bytes);
        if (order != 0) return ascending ? order < 0 : order > 0;
        return (*this)[a.index] < (*this)[b.index];
    });
    std::vector<Entry> sorted;
    sorted.reserve(entries_.size());
    for (const Key& key : keys) sorted.push_back(entries_[key.index]);
    entries_ = std::move(sorted);
}

}  // namespace tarn::cli
