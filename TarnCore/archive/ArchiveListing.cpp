#include "TarnCore/archive/ArchiveListing.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "TarnCore/archive/MemberPath.h"
#include "TarnCore/archive/OpenArchive.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/platform/ArchiveStream.h"

namespace tarn::ArchiveListing {
namespace {

std::optional<Date> date(const std::optional<UnixTime>& time) {
    if (!time) return std::nullopt;
    return Date::fromUnix(time->seconds, time->nanoseconds);
}

/// Adds the folders above `path` that are not known yet, outermost first.
void addFoldersAbove(std::string_view path, const auto& isKnown,
                     std::unordered_set<std::string>& added, std::vector<ArchiveEntry>& out) {
    for (std::size_t slash = path.find('/'); slash != path.npos;
         slash = path.find('/', slash + 1)) {
        const std::string_view folder = path.substr(0, slash);
        if (isKnown(folder) || !added.emplace(folder).second) continue;
        out.push_back({.path = std::string(folder), .isDirectory = true});
    }
}

}  // namespace

std::vector<ArchiveEntry> entries(const ZipDirectory& directory) {
    std::vector<ArchiveEntry> members;
    members.reserve(directory.members().size());
    for (const ZipMember& member : directory.members()) {
        const bool isFolder = member.type == ZipMember::Type::folder;
        members.push_back({.path = member.path,
                           .isDirectory = isFolder,
                           .size = isFolder ? 0 : static_cast<std::int64_t>(member.size),
                           .modified = date(member.modified)});
    }
    return completed(std::move(members));
}

std::vector<ArchiveEntry> entries(ArchiveStream& stream, const CancelToken& token) {
    std::vector<ArchiveEntry> members;
    ArchiveMember member;
    while (OpenArchive::next(stream, member)) {
        if (token.isCancelled()) throw ArchiveError::cancelled();
        const bool isFolder = member.type == ArchiveMember::Type::folder;
        members.push_back({.path = std::move(member.path),
                           .isDirectory = isFolder,
                           .size = isFolder ? 0 : member.size.value_or(0),
                           .modified = date(member.modified)});
    }
    return completed(std::move(members));
}

std::vector<ArchiveEntry> singleFile(ArchiveStream& stream, std::string_view name,
                                     const CancelToken& token) {
    ArchiveEntry entry{.path = std::string(name)};
    ArchiveMember member;
    if (OpenArchive::next(stream, member)) {
        entry.modified = date(member.modified);
        ArchiveStream::Block block;
        for (;;) {
            if (token.isCancelled()) throw ArchiveError::cancelled();
            const ArchiveStream::Result result = stream.read(block);
            if (result == ArchiveStream::Result::end) break;
            if (result != ArchiveStream::Result::found)
                throw ArchiveError::fromLibrary(stream.failure());
            entry.size = block.offset + static_cast<std::int64_t>(block.size);
        }
    }
    return {std::move(entry)};
}

std::vector<ArchiveEntry> completed(std::vector<ArchiveEntry> members) {
    for (ArchiveEntry& member : members) member.path = MemberPath::cleaned(member.path);
    std::erase_if(members, [](const ArchiveEntry& member) {
        return member.path.empty() || MemberPath::isJunk(member.path);
    });
    std::unordered_map<std::string_view, std::size_t> last;
    last.reserve(members.size());
    std::vector<bool> isReplaced(members.size());  // By a later one of the same path.
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto [found, isNew] = last.try_emplace(members[i].path, i);
        if (isNew) continue;
        isReplaced[found->second] = true;
        found->second = i;
    }

    // What has members is a folder, whatever else the archive says of it.
    std::string_view parent;
    std::vector<std::size_t> parents;
    for (const ArchiveEntry& member : members) {
        if (member.parent() == parent) continue;
        parent = member.parent();
        if (const auto found = last.find(parent); found != last.end())
            parents.push_back(found->second);
    }
    for (const std::size_t index : parents) {
        members[index].isDirectory = true;
        members[index].size = 0;
    }

    std::vector<ArchiveEntry> out;
    out.reserve(members.size() + members.size() / 8);
    std::vector<std::pair<std::size_t, std::size_t>> moves;  // from, to
    moves.reserve(members.size());
    std::unordered_set<std::string> added;
    const auto isKnown = [&](std::string_view folder) { return last.contains(folder); };
    parent = {};
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (isReplaced[i]) continue;
        if (members[i].parent() != parent) {
            parent = members[i].parent();
            addFoldersAbove(members[i].path, isKnown, added, out);
        }
        moves.emplace_back(i, out.size());
        out.emplace_back();  // Filled when nothing points into the paths any more.
    }
    last.clear();
    for (const auto& [from, to] : moves) out[to] = std::move(members[from]);
    return out;
}

}  // namespace tarn::ArchiveListing
