#include "TarnCore/archive/ArchiveListing.h"

#include <bit>
#include <cstdint>
#include <functional>
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

/// Which of the entries has a path: a table with open addressing, since a node for each of 50,000
/// paths costs more than all the rest of a listing.
class PathTable {
public:
    /// `entries` must stay where they are, and as they are.
    explicit PathTable(const std::vector<ArchiveEntry>& entries)
        : entries_(entries), slots_(std::bit_ceil(2 * entries.size() + 1)) {}

    std::optional<std::size_t> find(std::string_view path) const {
        const Slot& slot = slots_[place(path, hash(path))];
        return slot.isUsed() ? std::optional(slot.index()) : std::nullopt;
    }
    bool contains(std::string_view path) const { return find(path).has_value(); }

    /// From now on that entry is the one with its path. The one that it was before, if any.
    std::optional<std::size_t> put(std::size_t index) {
        const std::string_view path = entries_[index].path;
        const std::uint32_t hashed = hash(path);
        Slot& slot = slots_[place(path, hashed)];
        const auto before = slot.isUsed() ? std::optional(slot.index()) : std::nullopt;
        slot = {hashed, static_cast<std::uint32_t>(index + 1)};
        return before;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;  ///< The index and 1: more than memory has room for.
        bool isUsed() const { return number != 0; }
        std::size_t index() const { return number - 1; }
    };
    static std::uint32_t hash(std::string_view path) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(path));
    }
    std::size_t place(std::string_view path, std::uint32_t hashed) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = hashed & mask;
        while (slots_[at].isUsed() &&
               (slots_[at].hash != hashed || entries_[slots_[at].index()].path != path))
            at = (at + 1) & mask;
        return at;
    }

    const std::vector<ArchiveEntry>& entries_;
    std::vector<Slot> slots_;
};

/// A folder that the archive implies but does not list.
struct Implied {
    std::string path;
    std::size_t before = 0;  ///< The member that it is to stand in front of.
};

std::vector<Implied> impliedFolders(const std::vector<ArchiveEntry>& members,
                                    const std::vector<bool>& isReplaced, const PathTable& known) {
    std::vector<Implied> implied;
    std::unordered_set<std::string> added;
    std::string_view parent;  // Of the member before, most often the same.
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (isReplaced[i] || members[i].parent() == parent) continue;
        parent = members[i].parent();
        const std::string_view path = members[i].path;
        for (std::size_t slash = path.find('/'); slash != path.npos;
             slash = path.find('/', slash + 1)) {
            const std::string_view folder = path.substr(0, slash);
            if (known.contains(folder) || !added.emplace(folder).second) continue;
            implied.push_back({std::string(folder), i});
        }
    }
    return implied;
}

}  // namespace

std::vector<ArchiveEntry> entries(ZipDirectory directory) {
    std::vector<ZipMember> listed = std::move(directory).takeMembers();
    std::vector<ArchiveEntry> members;
    members.reserve(listed.size());
    for (ZipMember& member : listed) {
        const bool isFolder = member.type == ZipMember::Type::folder;
        members.push_back({.path = std::move(member.path),
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
    for (ArchiveEntry& member : members)
        if (!MemberPath::isClean(member.path)) member.path = MemberPath::cleaned(member.path);
    std::erase_if(members, [](const ArchiveEntry& member) {
        return member.path.empty() || MemberPath::isJunk(member.path);
    });
    PathTable last(members);
    std::vector<bool> isReplaced(members.size());  // By a later one of the same path.
    bool anyIsReplaced = false;
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (const auto before = last.put(i)) isReplaced[*before] = anyIsReplaced = true;
    }

    // What has members is a folder, whatever else the archive says of it.
    std::string_view parent;
    for (const ArchiveEntry& member : members) {
        if (member.parent() == parent) continue;
        parent = member.parent();
        if (const auto found = last.find(parent)) {
            members[*found].isDirectory = true;
            members[*found].size = 0;
        }
    }

    std::vector<Implied> implied = impliedFolders(members, isReplaced, last);
    if (implied.empty() && !anyIsReplaced) return members;
    std::vector<ArchiveEntry> out;
    out.reserve(members.size() + implied.size());
    auto next = implied.begin();
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (isReplaced[i]) continue;
        for (; next != implied.end() && next->before == i; ++next)
            out.push_back({.path = std::move(next->path), .isDirectory = true});
        out.push_back(std::move(members[i]));
    }
    return out;
}

}  // namespace tarn::ArchiveListing
