#include "TarnCore/files/ZipDirectory.h"

#include <algorithm>
#include <array>
#include <bit>
#include <ctime>
#include <numeric>
#include <unordered_map>

#include <sys/stat.h>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/files/ZipNames.h"

namespace tarn {
namespace {

using namespace std::string_view_literals;

constexpr auto localSignature = "PK\3\4"sv;
constexpr auto centralSignature = "PK\1\2"sv;
constexpr auto endSignature = "PK\5\6"sv;
constexpr auto end64Signature = "PK\6\6"sv;
constexpr auto locator64Signature = "PK\6\7"sv;
constexpr auto spannedSignature = "PK\7\x08"sv;
constexpr auto onceSpannedSignature = "PK00"sv;
constexpr std::size_t centralSize = 46, endSize = 22, end64Size = 56, locator64Size = 20;
constexpr std::size_t longestComment = 65535;
constexpr std::uint16_t full16 = 0xFFFF;
constexpr std::uint32_t full32 = 0xFFFFFFFF;

/// Little-endian numbers at places in bytes; what lies behind the end is 0.
class Fields {
public:
    explicit Fields(std::string_view bytes) : bytes_(bytes) {}
    std::size_t size() const { return bytes_.size(); }
    std::uint16_t u16(std::size_t at) const { return number<std::uint16_t>(at); }
    std::uint32_t u32(std::size_t at) const { return number<std::uint32_t>(at); }
    std::uint64_t u64(std::size_t at) const { return number<std::uint64_t>(at); }
    std::uint8_t u8(std::size_t at) const { return number<std::uint8_t>(at); }
    bool startsWith(std::string_view text) const { return bytes_.starts_with(text); }
    std::string_view part(std::size_t at, std::size_t size) const {
        return at > bytes_.size() ? std::string_view() : bytes_.substr(at, size);
    }

private:
    template <class Number>
    Number number(std::size_t at) const {
        if (at + sizeof(Number) > bytes_.size()) return 0;
        return bytesOf<Number>(&bytes_[at], std::make_index_sequence<sizeof(Number)>());
    }
    /// Written so that the compiler makes one load of it, whatever the processor's order.
    template <class Number, std::size_t... i>
    static Number bytesOf(const char* first, std::index_sequence<i...>) {
        return static_cast<Number>(
            ((std::uint64_t{static_cast<unsigned char>(first[i])} << (8 * i)) | ...));
    }
    std::string_view bytes_;
};

std::string readAt(const FileBytes& bytes, std::uint64_t offset, std::size_t size) {
    std::string out(size, '\0');
    out.resize(bytes.read(static_cast<std::int64_t>(offset), out));
    return out;
}

/// Where the directory lies.
struct Place {
    std::uint64_t offset = 0;  ///< From the beginning of the file.
    std::uint64_t size = 0;
    std::uint64_t count = 0;
    bool countIsWhole = false;  ///< Not only its lowest 16 bits.
    std::uint64_t base = 0;     ///< What is to be added to offsets, for data in front.
};

/// Where the end record begins in `tail`, the last bytes of the file. One whose comment reaches to
/// the end of the file is preferred, since a comment may hold anything.
std::optional<std::size_t> findEnd(std::string_view tail) {
    std::optional<std::size_t> loose;
    for (std::size_t at = tail.rfind(endSignature); at != tail.npos;
         at = at == 0 ? tail.npos : tail.rfind(endSignature, at - 1)) {
        if (tail.size() - at < endSize) continue;
        const std::size_t end = at + endSize + Fields(tail.substr(at)).u16(20);
        if (end == tail.size()) return at;
        if (end < tail.size() && !loose) loose = at;
    }
    return loose;
}

using End64 = std::array<char, end64Size>;

std::string_view view(const End64& record) { return {record.data(), record.size()}; }

/// The 64-bit end record that the locator in front of the ordinary one names. Absent when there is
/// none; `at` becomes where it was found.
std::optional<End64> findEnd64(const FileBytes& bytes, std::uint64_t end, std::uint64_t& at) {
    if (end < locator64Size) return std::nullopt;
    const std::string locator = readAt(bytes, end - locator64Size, locator64Size);
    if (!locator.starts_with(locator64Signature)) return std::nullopt;
    const std::uint64_t named = Fields(locator).u64(8);
    // With data in front of the archive it lies elsewhere, mostly right before its locator.
    const std::uint64_t before =
        end - locator64Size - std::min<std::uint64_t>(end - locator64Size, end64Size);
    for (const std::uint64_t place : {named, before}) {
        if (place > end) continue;
        End64 record{};
        if (bytes.read(static_cast<std::int64_t>(place), record) == record.size() &&
            view(record).starts_with(end64Signature)) {
            at = place;
            return record;
        }
    }
    return std::nullopt;
}

Place findDirectory(const FileBytes& bytes, std::uint64_t most) {
    const auto fileSize = static_cast<std::uint64_t>(bytes.size());
    const std::uint64_t tailSize = std::min<std::uint64_t>(fileSize, endSize + longestComment);
    const std::string tail = readAt(bytes, fileSize - tailSize, static_cast<std::size_t>(tailSize));
    const auto found = findEnd(tail);
    if (!found) throw ArchiveError::incomplete();
    const Fields end(std::string_view(tail).substr(*found));
    std::uint64_t directoryEnd = fileSize - tailSize + *found;

    Place place{.offset = end.u32(16), .size = end.u32(12), .count = end.u16(10)};
    std::uint32_t disk = end.u16(4);
    if (end.u16(10) == full16 || end.u32(12) == full32 || end.u32(16) == full32) {
        if (const auto record = findEnd64(bytes, directoryEnd, directoryEnd)) {
            const Fields wide(view(*record));
            place = {.offset = wide.u64(48),
                     .size = wide.u64(40),
                     .count = wide.u64(32),
                     .countIsWhole = true};
            disk = wide.u32(16);
        }
    }
    if (disk != 0 && disk != full16) {
        throw ArchiveError::unreadable(
            "It is one part of an archive that was split into several files.");
    }
    if (place.size > directoryEnd || place.size > most ||
        place.offset > directoryEnd - place.size) {
        throw ArchiveError::incomplete();
    }
    if (place.size > 0 &&
        readAt(bytes, place.offset, centralSignature.size()) != centralSignature) {
        place.base = directoryEnd - place.size - place.offset;
        place.offset += place.base;
    }
    return place;
}

/// DOS times are those of the maker's clock on the wall; taken as the user's own.
class DOSTimes {
public:
    std::optional<UnixTime> convert(std::uint16_t date, std::uint16_t time) {
        if (date == 0) return std::nullopt;
        // Members come in runs of one day and hour, and mktime costs more than all the rest.
        const std::uint32_t hour = std::uint32_t{date} << 5 | time >> 11;
        auto [known, isNew] = hours_.try_emplace(hour, 0);
        if (isNew) {
            std::tm fields{};
            fields.tm_year = (date >> 9) + 80;
            fields.tm_mon = ((date >> 5) & 15) - 1;
            fields.tm_mday = date & 31;
            fields.tm_hour = time >> 11;
            fields.tm_isdst = -1;
            known->second = std::mktime(&fields);
        }
        return UnixTime{known->second + ((time >> 5) & 63) * 60 + (time & 31) * 2};
    }

private:
    std::unordered_map<std::uint32_t, std::int64_t> hours_;
};

/// What the extra fields of a member say.
struct Extras {
    std::optional<UnixTime> modified;
    std::string_view unicodeName;
    bool isAES = false;
};

std::optional<UnixTime> ntfsTime(const Fields& field) {
    // Four reserved bytes, then attributes; number 1 holds three times in 100 ns since 1601.
    constexpr std::int64_t since1601 = 11644473600;
    for (std::size_t at = 4; at + 4 <= field.size();) {
        const std::size_t size = field.u16(at + 2);
        if (field.u16(at) == 1 && size >= 8 && at + 4 + size <= field.size()) {
            const std::uint64_t ticks = field.u64(at + 4);
            if (ticks == 0) return std::nullopt;
            return UnixTime{static_cast<std::int64_t>(ticks / 10000000) - since1601,
                            static_cast<std::int32_t>(ticks % 10000000 * 100)};
        }
        at += 4 + size;
    }
    return std::nullopt;
}

/// Widens the sizes and the offset of `member` where they are in the 64-bit field.
void readZip64(const Fields& field, ZipMember& member) {
    std::size_t at = 0;
    for (std::uint64_t* value : {&member.size, &member.packedSize, &member.offset}) {
        if (*value != full32 || at + 8 > field.size()) continue;
        *value = field.u64(at);
        at += 8;
    }
}

Extras readExtras(std::string_view bytes, std::string_view rawName, ZipMember& member) {
    Extras extras;
    const Fields all(bytes);
    for (std::size_t at = 0; at + 4 <= all.size();) {
        const std::uint16_t id = all.u16(at);
        const std::size_t size = all.u16(at + 2);
        if (at + 4 + size > all.size()) break;
        const Fields field(all.part(at + 4, size));
        switch (id) {
            case 0x0001:
                readZip64(field, member);
                break;
            case 0x000A:
                if (!extras.modified) extras.modified = ntfsTime(field);
                break;
            case 0x5455:  // "UT", Info-ZIP: the bit says that the time of change is here
                if (size >= 5 && (field.u8(0) & 1) != 0)
                    extras.modified = UnixTime{static_cast<std::int32_t>(field.u32(1))};
                break;
            case 0x5855:  // "UX", the same before 1998: times of access and of change
                if (size >= 8 && !extras.modified)
                    extras.modified = UnixTime{static_cast<std::int32_t>(field.u32(4))};
                break;
            case 0x7075:  // "up": the name in UTF-8, when it belongs to this very name
                if (size > 5 && field.u8(0) == 1 && field.u32(1) == crc32(0, rawName))
                    extras.unicodeName = field.part(5, size - 5);
                break;
            case 0x9901:
                extras.isAES = true;
                break;
            default:
                break;
        }
        at += 4 + size;
    }
    return extras;
}

/// Systems in the upper byte of “version made by”.
enum Host : std::uint8_t {
    fat = 0,
    unixHost = 3,
    hpfs = 6,
    ntfs = 10,
    windows = 11,
    vfat = 14,
    macOS = 19
};

class Reader {
public:
    explicit Reader(std::string_view language) : language_(language) {}

    ZipMember member(const Fields& header, std::uint64_t base) {
        constexpr std::uint16_t encryptedFlag = 1 << 0, strongFlag = 1 << 6, utf8Flag = 1 << 11;
        const std::size_t nameSize = header.u16(28), extraSize = header.u16(30);
        const std::string_view rawName = header.part(centralSize, nameSize);
        const auto host = header.u8(5);
        const std::uint16_t flags = header.u16(8);
        ZipMember member;
        member.method = header.u16(10);
        member.crc = header.u32(16);
        member.packedSize = header.u32(20);
        member.size = header.u32(24);
        member.offset = header.u32(42);
        const Extras extras =
            readExtras(header.part(centralSize + nameSize, extraSize), rawName, member);
        member.offset += base;
        member.isEncrypted = (flags & (encryptedFlag | strongFlag)) != 0 || extras.isAES;
        member.modified =
            extras.modified ? extras.modified : times_.convert(header.u16(14), header.u16(12));
        member.path = !extras.unicodeName.empty() && Text::isValidUTF8(extras.unicodeName)
                          ? std::string(extras.unicodeName)
                          : name(rawName, host, (flags & utf8Flag) != 0);
        setType(member, host, header.u32(38));
        return member;
    }

private:
    static bool isDOS(std::uint8_t host) {
        return host == fat || host == hpfs || host == ntfs || host == windows || host == vfat;
    }

    std::string name(std::string_view raw, std::uint8_t host, bool isUTF8) {
        std::string name(raw);
        // Names made on Unix are bytes, like those of its files.
        if (!isUTF8 && isDOS(host) && !Text::isValidUTF8(raw)) {
            if (!names_) names_.emplace(language_);
            name = names_->decode(raw);
        }
        if (isDOS(host) && name.find('/') == name.npos) std::ranges::replace(name, '\\', '/');
        return name;
    }

    static void setType(ZipMember& member, std::uint8_t host, std::uint32_t attributes) {
        if (host == unixHost || host == macOS) {
            const std::uint32_t mode = attributes >> 16;
            if ((mode & 07777) != 0) member.mode = mode & 07777;
            if (S_ISDIR(mode)) {
                member.type = ZipMember::Type::folder;
            } else if (S_ISLNK(mode)) {
                member.type = ZipMember::Type::symlink;
            } else if ((mode & S_IFMT) != 0 && !S_ISREG(mode)) {
                member.type = ZipMember::Type::other;
            }
        } else if (isDOS(host) && (attributes & 0x10) != 0) {
            member.type = ZipMember::Type::folder;
        }
        if (member.path.ends_with('/')) member.type = ZipMember::Type::folder;
    }

    std::string_view language_;
    DOSTimes times_;
    std::optional<ZipNames> names_;
};

}  // namespace

bool ZipDirectory::isZip(const FileBytes& bytes) {
    const std::string start = readAt(bytes, 0, localSignature.size());
    return start == localSignature || start == endSignature || start == spannedSignature ||
           start == onceSpannedSignature;
}

ZipDirectory ZipDirectory::read(const FileBytes& bytes, std::string_view language,
                                std::uint64_t most) {
    const Place place = findDirectory(bytes, most);
    const std::string all = readAt(bytes, place.offset, static_cast<std::size_t>(place.size));
    if (all.size() != place.size) throw ArchiveError::incomplete();
    ZipDirectory directory;
    directory.members_.reserve(
        static_cast<std::size_t>(std::min<std::uint64_t>(place.count, all.size() / centralSize)));
    Reader reader(language);
    for (std::size_t at = 0; at + centralSize <= all.size();) {
        const Fields header(std::string_view(all).substr(at));
        if (!header.startsWith(centralSignature)) break;
        const std::size_t size = centralSize + header.u16(28) + header.u16(30) + header.u16(32);
        if (size > header.size()) throw ArchiveError::damaged();
        directory.members_.push_back(reader.member(header, place.base));
        const ZipMember& member = directory.members_.back();
        if (member.offset >= place.offset || member.packedSize > place.offset - member.offset)
            throw ArchiveError::damaged();
        at += size;
    }
    const std::uint64_t count = directory.members_.size();
    if (place.countIsWhole ? count != place.count : (count & full16) != (place.count & full16))
        throw ArchiveError::damaged();
    directory.findEnds(place.offset);
    return directory;
}

void ZipDirectory::findEnds(std::uint64_t directory) {
    std::vector<std::uint32_t> order(members_.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto offset = [this](std::uint32_t index) { return members_[index].offset; };
    if (!std::ranges::is_sorted(order, {}, offset)) std::ranges::sort(order, {}, offset);
    std::uint64_t next = directory;
    for (std::size_t i = order.size(); i-- > 0;) {
        ZipMember& member = members_[order[i]];
        member.end = next;
        constexpr std::uint64_t localSize = 30;
        if (next - member.offset < localSize ||
            next - member.offset - localSize < member.packedSize) {
            hasOverlaps_ = true;
        }
        next = member.offset;
    }
}

}  // namespace tarn
