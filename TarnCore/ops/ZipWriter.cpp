#include "TarnCore/ops/ZipWriter.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <limits>
#include <system_error>
#include <vector>

#include <sys/stat.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::uint64_t full32 = 0xFFFFFFFF;
constexpr std::uint64_t full16 = 0xFFFF;
constexpr std::uint16_t stored = 0, deflated = 8;
/// What a reader must know: 2.0 folders and DEFLATE, 4.5 the 64-bit extension.
constexpr std::uint16_t needsDeflate = 20, needsWide = 45;
constexpr std::uint16_t madeOnUnix = 3 << 8 | needsWide;
/// Files from here on get room for 64-bit sizes, since they may still grow while they are read.
constexpr std::uint64_t surelyNarrow = 0xF0000000;
constexpr std::size_t pieceSize = 1 << 20;
/// A first piece that shrinks less than this shows data that is packed already.
constexpr double worthPacking = 0.98;

struct DOSTime {
    std::uint16_t date = 1 << 5 | 1;  // 1 January 1980
    std::uint16_t time = 0;
};

DOSTime dosTime(const std::optional<UnixTime>& time) {
    if (!time) return {};
    const std::time_t seconds = time->seconds;
    std::tm local{};
    if (!localtime_r(&seconds, &local) || local.tm_year < 80) return {};
    if (local.tm_year > 207)
        return {.date = 127 << 9 | 12 << 5 | 31, .time = 23 << 11 | 59 << 5 | 29};
    return {.date = static_cast<std::uint16_t>((local.tm_year - 80) << 9 | (local.tm_mon + 1) << 5 |
                                               local.tm_mday),
            .time = static_cast<std::uint16_t>(local.tm_hour << 11 | local.tm_min << 5 |
                                               std::min(local.tm_sec, 59) / 2)};
}

/// The time in the "UT" field; absent for what its 32 bits cannot hold.
std::optional<std::int32_t> fieldTime(const ZipWriter::Facts& facts) {
    if (!facts.modified) return std::nullopt;
    const std::int64_t seconds = facts.modified->seconds;
    if (seconds < std::numeric_limits<std::int32_t>::min() ||
        seconds > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(seconds);
}

std::uint16_t flags(std::string_view name) {
    constexpr std::uint16_t utf8 = 1 << 11;
    return !Text::isASCII(name) && Text::isValidUTF8(name) ? utf8 : 0;
}

}  // namespace

/// Bytes being put together, numbers in little-endian order.
class ZipWriter::Record {
public:
    Record& u16(std::uint64_t value) { return number(value, 2); }
    Record& u32(std::uint64_t value) { return number(value, 4); }
    Record& u64(std::uint64_t value) { return number(value, 8); }
    Record& text(std::string_view bytes) {
        bytes_ += bytes;
        return *this;
    }
    std::size_t size() const { return bytes_.size(); }
    const std::string& bytes() const { return bytes_; }

private:
    Record& number(std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
        return *this;
    }
    std::string bytes_;
};

ZipWriter::Packed ZipWriter::pack(Deflater& deflater, std::string name, std::string_view content,
                                  const Facts& facts) {
    Packed packed{.name = std::move(name), .facts = facts, .bytes = {}};
    packed.crc = crc32(0, content);
    packed.size = content.size();
    packed.isDeflated = deflater.deflate(content, packed.bytes);
    if (!packed.isDeflated) packed.bytes = content;
    return packed;
}

ZipWriter::Record ZipWriter::localHeader(const Packed& member, std::uint64_t packedSize,
                                         bool isWide) const {
    if (member.name.size() > full16)
        throw std::system_error(ENAMETOOLONG, std::generic_category(), "zip");
    Record extra;
    if (isWide) extra.u16(0x0001).u16(16).u64(member.size).u64(packedSize);
    if (const auto time = fieldTime(member.facts))
        extra.u16(0x5455).u16(5).text("\1").u32(static_cast<std::uint32_t>(*time));
    const DOSTime time = dosTime(member.facts.modified);
    Record header;
    header.text("PK\3\4")
        .u16(isWide ? needsWide : needsDeflate)
        .u16(flags(member.name))
        .u16(member.isDeflated ? deflated : stored)
        .u16(time.time)
        .u16(time.date)
        .u32(member.crc)
        .u32(isWide ? full32 : packedSize)
        .u32(isWide ? full32 : member.size)
        .u16(member.name.size())
        .u16(extra.size())
        .text(member.name)
        .text(extra.bytes());
    return header;
}

void ZipWriter::add(Packed member) {
    const auto offset = static_cast<std::uint64_t>(file_.size());
    const std::uint64_t packedSize = member.bytes.size();
    const bool isWide = std::max(packedSize, member.size) >= full32;
    Record header = localHeader(member, packedSize, isWide);
    file_.append(header.text(member.bytes).bytes());
    addToDirectory(member, {offset, member.size, packedSize});
}

void ZipWriter::addFolder(std::string name, const Facts& facts) {
    add({.name = std::move(name), .facts = facts, .bytes = {}});
}

void ZipWriter::addFile(std::string name, const FileBytes& content, const Facts& facts,
                        const std::function<void(std::int64_t bytes)>& watch) {
    const bool isWide = static_cast<std::uint64_t>(content.size()) >= surelyNarrow;
    Packed member{.name = std::move(name), .facts = facts, .bytes = {}, .isDeflated = true};
    const auto offset = static_cast<std::uint64_t>(file_.size());
    file_.append(localHeader(member, 0, isWide).bytes());
    const std::int64_t begin = file_.size();

    TaskPool& pool = TaskPool::shared();
    const std::size_t most = 2 * (pool.threadCount() + 1);
    std::string bytes(deflateWindow, '\0');
    std::size_t before = 0;  // of the window that hold what stands before the pieces
    bool isFirst = true;
    for (bool atEnd = false; !atEnd;) {
        // One piece alone shows whether packing is worth it at all.
        const std::size_t wanted = isFirst ? pieceSize : most * pieceSize;
        bytes.resize(deflateWindow + wanted);
        const std::size_t got = content.read(static_cast<std::int64_t>(member.size),
                                             std::span<char>(bytes).subspan(deflateWindow, wanted));
        atEnd = got < wanted;
        const std::string_view all = std::string_view(bytes).substr(deflateWindow, got);
        member.crc = crc32(member.crc, all);
        member.size += got;
        if (member.isDeflated) {
            // Where a file ends at the end of a piece, an empty last one closes it.
            const std::size_t count = std::max<std::size_t>(1, (got + pieceSize - 1) / pieceSize);
            std::vector<std::string> packed(count);
            pool.forEach(count, [&](std::size_t i) {
                const std::string_view piece = all.substr(i * pieceSize, pieceSize);
                const std::size_t history = i == 0 ? before : deflateWindow;
                packed[i] =
                    deflatePiece({piece.data() - history, history}, piece, atEnd && i + 1 == count);
            });
            if (isFirst &&
                static_cast<double>(packed[0].size()) > worthPacking * static_cast<double>(got)) {
                member.isDeflated = false;
            } else {
                for (const std::string& piece : packed) file_.append(piece);
            }
        }
        if (!member.isDeflated) file_.append(all);
        before = std::min(got, deflateWindow);
        std::copy_n(all.end() - static_cast<std::ptrdiff_t>(before), before,
                    bytes.begin() + static_cast<std::ptrdiff_t>(deflateWindow - before));
        isFirst = false;
        watch(static_cast<std::int64_t>(got));
    }
    const auto packedSize = static_cast<std::uint64_t>(file_.size() - begin);
    if (!isWide && std::max(packedSize, member.size) >= full32)
        throw std::system_error(EFBIG, std::generic_category(), "zip");
    file_.writeAt(static_cast<std::int64_t>(offset),
                  localHeader(member, packedSize, isWide).bytes());
    addToDirectory(member, {offset, member.size, packedSize});
}

void ZipWriter::addToDirectory(const Packed& member, const Written& written) {
    Record wide;
    if (written.size >= full32) wide.u64(written.size);
    if (written.packedSize >= full32) wide.u64(written.packedSize);
    if (written.offset >= full32) wide.u64(written.offset);
    Record extra;
    if (wide.size() > 0) extra.u16(0x0001).u16(wide.size()).text(wide.bytes());
    if (const auto time = fieldTime(member.facts))
        extra.u16(0x5455).u16(5).text("\1").u32(static_cast<std::uint32_t>(*time));
    const std::uint16_t needs = wide.size() > 0 ? needsWide : needsDeflate;
    const bool isFolder = member.name.ends_with('/');
    const DOSTime time = dosTime(member.facts.modified);
    constexpr std::uint32_t dosFolder = 0x10;
    Record header;
    header.text("PK\1\2")
        .u16(member.facts.mode ? madeOnUnix : needs)
        .u16(needs)
        .u16(flags(member.name))
        .u16(member.isDeflated ? deflated : stored)
        .u16(time.time)
        .u16(time.date)
        .u32(member.crc)
        .u32(std::min(written.packedSize, full32))
        .u32(std::min(written.size, full32))
        .u16(member.name.size())
        .u16(extra.size())
        .u16(0)  // no comment
        .u16(0)  // the only disk
        .u16(0)  // not known to be text
        .u32((member.facts.mode.value_or(0) << 16) | (isFolder ? dosFolder : 0))
        .u32(std::min(written.offset, full32))
        .text(member.name)
        .text(extra.bytes());
    directory_ += header.bytes();
    ++count_;
}

void ZipWriter::finish() {
    const auto offset = static_cast<std::uint64_t>(file_.size());
    const std::uint64_t size = directory_.size();
    Record end;
    if (count_ >= full16 || size >= full32 || offset >= full32) {
        end.text("PK\6\6")
            .u64(44)  // what follows of this record
            .u16(madeOnUnix)
            .u16(needsWide)
            .u32(0)
            .u32(0)
            .u64(count_)
            .u64(count_)
            .u64(size)
            .u64(offset)
            .text("PK\6\7")
            .u32(0)
            .u64(offset + size)
            .u32(1);
    }
    end.text("PK\5\6")
        .u16(0)
        .u16(0)
        .u16(std::min(count_, full16))
        .u16(std::min(count_, full16))
        .u32(std::min(size, full32))
        .u32(std::min(offset, full32))
        .u16(0);
    file_.append(directory_);
    file_.append(end.bytes());
}

}  // namespace tarn
