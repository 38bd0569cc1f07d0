#include "TarnCore/archive/ArchiveReader.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

#include "TarnCore/archive/ArchiveListing.h"
#include "TarnCore/archive/MemberPath.h"
#include "TarnCore/archive/OpenArchive.h"
#include "TarnCore/archive/StreamUnpacker.h"
#include "TarnCore/archive/UnpackFolder.h"
#include "TarnCore/archive/ZipCompressor.h"
#include "TarnCore/archive/ZipUnpacker.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::ArchiveReader {
namespace {

using Place = std::function<std::optional<std::string>(std::string_view cleaned)>;

/// Unpacking never fills a disk to the brim: a fiftieth stays free, at most this.
constexpr std::int64_t mostKeptFree = std::int64_t{1} << 30;

std::int64_t roomIn(const URL& folder) {
    const auto space = Platform::current().volumes->space(folder);
    if (!space) return std::numeric_limits<std::int64_t>::max();
    return std::max<std::int64_t>(0, space->free - std::min(mostKeptFree, space->total / 50));
}

/// Runs `body` with what the disk refuses turned into a sentence.
template <class Body>
auto withSentences(const URL& archive, Body&& body) {
    try {
        return body();
    } catch (const std::system_error& error) {
        throw ArchiveError::disk(
            FileOps::friendly(error, "unpack " + Text::quoted(archive.name())));
    }
}

void fillSingle(const OpenArchive& archive, const URL& url, const UnpackPlan& plan) {
    const std::string name = archive.singleName();
    const auto place = plan.placeOf(name);
    if (!place) return;
    NewItemFacts facts;
    if (const auto known = Platform::current().files->attributes(url, Links::follow)) {
        facts.mode = known->mode;
        facts.modified = UnixTime{known->modified.unixSeconds()};
    }
    StreamUnpacker::unpackSingleFile(*archive.stream(), archive.bytes().size(), plan, *place,
                                     facts);
}

void fill(UnpackFolder& folder, const OpenArchive& archive, const URL& url, const Place& place,
          const Watch& watch) {
    UnpackPlan plan{.folder = folder.url(),
                    .place = place,
                    .archives = *Platform::current().archives,
                    .watch = watch,
                    .room = roomIn(folder.url())};
    if (archive.form() == OpenArchive::Form::singleFile) return fillSingle(archive, url, plan);
    if (archive.form() == OpenArchive::Form::zip &&
        ZipUnpacker::canUnpack(archive.directory(), plan)) {
        return ZipUnpacker::unpack(archive.bytes(), archive.directory(), plan);
    }
    const auto missing = StreamUnpacker::unpack(*archive.stream(), archive.bytes().size(), plan);
    if (missing.empty()) return;
    // Their bytes are in members that nobody asked for; these are unpacked into a corner of the
    // folder that goes with it.
    folder.clear();
    plan.place = [&](std::string_view cleaned) -> std::optional<std::string> {
        if (auto wanted = place(cleaned)) return wanted;
        const auto found = std::ranges::find(missing, cleaned);
        if (found == missing.end()) return std::nullopt;
        return "unwanted/" + std::to_string(found - missing.begin());
    };
    if (!StreamUnpacker::unpack(*archive.stream(), archive.bytes().size(), plan).empty())
        throw ArchiveError::damaged();
}

std::optional<std::string> everything(std::string_view cleaned) { return std::string(cleaned); }

/// Gives items of the folder their names in `to`; all or, with an exception, none.
std::vector<URL> moveOut(UnpackFolder& folder, const std::vector<std::string>& paths,
                         const URL& to) {
    std::vector<URL> moved;
    try {
        for (const std::string& path : paths) {
            const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
            moved.push_back(folder.moveOut(path, to.appending(name)));
        }
    } catch (const std::system_error&) {
        for (std::size_t i = 0; i < moved.size(); ++i)
            Platform::current().files->move(moved[i], folder.url().appending(paths[i]));
        throw;
    }
    return moved;
}

/// The item itself, or the first of the folders above it that is missing too.
URL firstMissing(const URL& url) {
    URL missing = url;
    while (!missing.parent().isRoot() && !FileOps::exists(missing.parent()))
        missing = missing.parent();
    return missing;
}

}  // namespace

std::vector<ArchiveEntry> entries(const URL& url, const CancelToken& token) {
    OpenArchive archive(url);
    switch (archive.form()) {
        case OpenArchive::Form::zip:
            return ArchiveListing::entries(std::move(archive).takeDirectory());
        case OpenArchive::Form::singleFile:
            return ArchiveListing::singleFile(*archive.stream(), archive.singleName(), token);
        case OpenArchive::Form::archive:
            break;
    }
    return ArchiveListing::entries(*archive.stream(), token);
}

std::vector<ArchiveEntry> children(std::string_view path,
                                   const std::vector<ArchiveEntry>& entries) {
    std::vector<ArchiveEntry> found;
    std::ranges::copy_if(entries, std::back_inserter(found),
                         [path](const ArchiveEntry& entry) { return entry.parent() == path; });
    return found;
}

std::vector<URL> extract(const URL& from, const URL& to, const Watch& watch) {
    return withSentences(from, [&]() -> std::vector<URL> {
        const OpenArchive archive(from);
        if (FileOps::exists(to)) {
            if (!FileOps::isDirectory(to))
                throw std::system_error(ENOTDIR, std::generic_category(), "open");
            UnpackFolder folder(to);
            fill(folder, archive, from, everything, watch);
            return moveOut(folder, folder.names(), to);
        }
        // Folders that are missing above it are made and taken back with it.
        const URL made = firstMissing(to);
        const std::string below = to.path().substr(made.path().size());
        UnpackFolder folder(made.parent());
        fill(
            folder, archive, from,
            [&](std::string_view cleaned) {
                return below.empty() ? std::string(cleaned)
                                     : below.substr(1) + "/" + std::string(cleaned);
            },
            watch);
        if (!below.empty()) Platform::current().files->createFolders(folder.url().appending(below));
        return {folder.moveWhole(made)};
    });
}

URL extractAll(const URL& url, const Watch& watch) {
    return withSentences(url, [&] {
        const OpenArchive archive(url);
        const URL beside = url.parent();
        UnpackFolder folder(beside);
        fill(folder, archive, url, everything, watch);
        const auto names = folder.names();
        if (names.size() == 1) return folder.moveOut(names[0], beside.appending(names[0]));
        return folder.moveWhole(beside.appending(FileOps::split(url.name()).base));
    });
}

std::vector<URL> extract(const URL& from, const std::vector<std::string>& members, const URL& to,
                         const Watch& watch) {
    return withSentences(from, [&] {
        const OpenArchive archive(from);
        // Each in a folder of its own, because two may have one name.
        const auto place = [&](std::string_view cleaned) -> std::optional<std::string> {
            for (std::size_t i = 0; i < members.size(); ++i) {
                if (!MemberPath::isInside(cleaned, members[i])) continue;
                const std::size_t name = members[i].rfind('/') + 1;
                return std::to_string(i) + "/" + std::string(cleaned.substr(name));
            }
            return std::nullopt;
        };
        Platform::current().files->createFolders(to);
        UnpackFolder folder(to);
        fill(folder, archive, from, place, watch);
        std::vector<std::string> paths;
        for (std::size_t i = 0; i < members.size(); ++i) {
            const std::string& member = members[i];
            std::string path = std::to_string(i) + "/" + member.substr(member.rfind('/') + 1);
            if (FileOps::exists(folder.url().appending(path))) paths.push_back(std::move(path));
        }
        return moveOut(folder, paths, to);
    });
}

URL compress(const std::vector<URL>& urls, const Watch& watch) {
    return ZipCompressor::compress(urls, watch);
}

}  // namespace tarn::ArchiveReader
