#include "TarnCore/index/readers/OfficePackage.h"

#include <algorithm>
#include <utility>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn {
namespace {

constexpr std::uint64_t localSize = 30;  // of the header in front of a member, less its name
constexpr std::uint16_t stored = 0, deflated = 8;
constexpr std::size_t pieceSize = 16 * 1024;
/// Bytes of the directory; that of a book of a thousand pages has some 100 KB.
constexpr std::uint64_t largestDirectory = 16 << 20;

std::uint64_t number16(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[at])) |
           static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

/// Where the bytes of a member begin; absent when its header is none or they reach too far.
std::optional<std::uint64_t> dataOffset(const FileBytes& bytes, const ZipMember& member) {
    std::string header(localSize, '\0');
    if (bytes.read(static_cast<std::int64_t>(member.offset), header) != localSize ||
        !header.starts_with("PK\3\4")) {
        return std::nullopt;
    }
    const std::uint64_t offset =
        member.offset + localSize + number16(header, 26) + number16(header, 28);
    if (offset > member.end || member.end - offset < member.packedSize) return std::nullopt;
    return offset;
}

}  // namespace

std::optional<OfficePackage> OfficePackage::open(const FileBytes& bytes, std::uint64_t most) {
    try {
        if (!ZipDirectory::isZip(bytes)) return std::nullopt;
        auto directory = ZipDirectory::read(bytes, "en", largestDirectory);
        if (directory.hasOverlaps()) return std::nullopt;
        return OfficePackage(bytes, std::move(directory), most);
    } catch (const ArchiveError&) {
        return std::nullopt;
    }
}

const ZipMember* OfficePackage::find(std::string_view name) const {
    const auto& members = directory_.members();
    const auto found = std::ranges::find(members, name, &ZipMember::path);
    return found == members.end() ? nullptr : &*found;
}

std::vector<std::string> OfficePackage::numbered(std::string_view before,
                                                 std::string_view after) const {
    std::vector<std::pair<std::string_view, std::string_view>> found;  // number and name
    for (const ZipMember& member : directory_.members()) {
        const std::string_view path = member.path;
        if (path.size() < before.size() + after.size() || !path.starts_with(before) ||
            !path.ends_with(after)) {
            continue;
        }
        std::string_view digits =
            path.substr(before.size(), path.size() - before.size() - after.size());
        if (digits.find_first_not_of("0123456789") != digits.npos) continue;
        digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
        found.emplace_back(digits, path);
    }
    std::ranges::sort(found, [](const auto& a, const auto& b) {
        return std::pair(a.first.size(), a.first) < std::pair(b.first.size(), b.first);
    });
    std::vector<std::string> names;
    for (const auto& one : found) names.emplace_back(one.second);
    return names;
}

bool OfficePackage::read(std::string_view name, const std::function<bool(std::string_view)>& sink) {
    const ZipMember* const member = find(name);
    if (!member || member->type != ZipMember::Type::file || member->isEncrypted) return false;
    if (member->method != stored && member->method != deflated) return false;
    const auto offset = dataOffset(*bytes_, *member);
    if (!offset) return false;

    bool wantsMore = true;
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
    const auto take = [&](std::string_view unpacked) {
        size += unpacked.size();
        if (!wantsMore || size > left_ || size > member->size) return;
        crc = crc32(crc, unpacked);
        wantsMore = sink(unpacked);
    };
    InflateStream stream;
    std::string packed;
    for (std::uint64_t at = 0; at < member->packedSize && wantsMore;) {
        packed.resize(std::min<std::uint64_t>(pieceSize, member->packedSize - at));
        if (bytes_->read(static_cast<std::int64_t>(*offset + at), packed) != packed.size())
            return false;
        at += packed.size();
        if (member->method == stored) {
            take(packed);
        } else if (!stream.push(packed, take)) {
            return false;
        }
        if (size > left_ || size > member->size) return false;
    }
    left_ -= size;
    if (!wantsMore) return true;
    const bool isWhole = member->method == stored || stream.isFinished();
    return isWhole && size == member->size && crc == member->crc;
}

}  // namespace tarn
