#include "tests/support/ArchiveBytes.h"

#include <algorithm>
#include <cstdio>

#include "TarnCore/base/Deflate.h"

namespace tarn::test {
namespace {

std::string number(std::uint64_t value, int width) {
    std::string out;
    for (int i = 0; i < width; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
    return out;
}

std::string deflated(std::string_view content) { return deflatePiece({}, content, true); }

}  // namespace

std::string u16(std::uint64_t value) { return number(value, 2); }
std::string u32(std::uint64_t value) { return number(value, 4); }
std::string u64(std::uint64_t value) { return number(value, 8); }

std::string extraField(std::uint16_t id, std::string_view content) {
    return u16(id) + u16(content.size()) + std::string(content);
}

void TarBytes::add(const Member& member) {
    std::string header(512, '\0');
    const auto put = [&](std::size_t at, std::string_view text) {
        header.replace(at, text.size(), text);
    };
    const auto octal = [&](std::size_t at, std::size_t width, std::uint64_t value) {
        char text[32];
        std::snprintf(text, sizeof text, "%0*llo", static_cast<int>(width - 1),
                      static_cast<unsigned long long>(value));
        put(at, text);
    };
    put(0, std::string_view(member.path).substr(0, 100));
    octal(100, 8, member.mode);
    octal(108, 8, 0);
    octal(116, 8, 0);
    octal(124, 12, member.content.size());
    octal(136, 12, member.modified);
    put(148, "        ");
    header[156] = member.type;
    put(157, std::string_view(member.target).substr(0, 100));
    put(257, std::string_view("ustar\0"
                              "00",
                              8));
    std::uint64_t sum = 0;
    for (const char c : header) sum += static_cast<unsigned char>(c);
    octal(148, 7, sum);
    bytes_ += header + member.content;
    bytes_.append((512 - member.content.size() % 512) % 512, '\0');
}

std::string cpio(const std::vector<CpioMember>& members) {
    std::string out;
    const auto pad = [&] { out.append((4 - out.size() % 4) % 4, '\0'); };
    const auto add = [&](const CpioMember& member) {
        const unsigned fields[] = {member.inode,
                                   0100644,
                                   0,
                                   0,
                                   member.links,
                                   1700000000,
                                   static_cast<unsigned>(member.content.size()),
                                   0,
                                   0,
                                   0,
                                   0,
                                   static_cast<unsigned>(member.path.size() + 1),
                                   0};
        out += "070701";
        for (const unsigned field : fields) {
            char text[16];
            std::snprintf(text, sizeof text, "%08X", field);
            out += text;
        }
        out += member.path + '\0';
        pad();
        out += member.content;
        pad();
    };
    for (const CpioMember& member : members) add(member);
    add({.path = "TRAILER!!!", .inode = 0});
    return out;
}

std::string gzipped(std::string_view bytes) {
    return std::string("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10) + deflated(bytes) +
           u32(crc32(0, bytes)) + u32(bytes.size());
}

std::string ZipBytes::bytes() const {
    std::string out, directory;
    constexpr std::uint32_t full = 0xFFFFFFFF;
    for (const Member& member : members_) {
        const std::string data = member.isDeflated ? deflated(member.content) : member.content;
        const std::uint16_t method = member.method != 0xFFFF ? member.method
                                     : member.isDeflated     ? std::uint16_t{8}
                                                             : std::uint16_t{0};
        const std::uint32_t crc = member.crc.value_or(crc32(0, member.content));
        const auto size = member.size.value_or(static_cast<std::uint32_t>(member.content.size()));
        const auto offset = member.offset.value_or(static_cast<std::uint32_t>(out.size()));
        const std::uint16_t flags =
            static_cast<std::uint16_t>(member.flags | (member.hasDescriptor ? 8 : 0));
        const std::string common =
            u16(flags) + u16(method) + u16(member.dosTime) + u16(member.dosDate);
        out += "PK\3\4" + u16(20) + common;
        out += member.hasDescriptor ? u32(0) + u32(0) + u32(0)
                                    : u32(crc) + u32(data.size()) + u32(size);
        out += u16(member.name.size()) + u16(0) + member.name + data;
        if (member.hasDescriptor) out += "PK\7\x08" + u32(crc) + u32(data.size()) + u32(size);

        std::string extra = member.extra;
        if (member.isWide) extra += extraField(1, u64(size) + u64(data.size()) + u64(offset));
        directory += "PK\1\2" + u16(20 | member.host << 8) + u16(20) + common + u32(crc);
        directory += u32(member.isWide ? full : data.size()) + u32(member.isWide ? full : size);
        directory += u16(member.name.size()) + u16(extra.size()) + u16(0) + u16(0) + u16(0);
        directory += u32(member.mode << 16 | member.dosAttributes);
        directory += u32(member.isWide ? full : offset) + member.name + extra;
    }
    const std::uint64_t start = out.size();
    const std::uint64_t entries = count.value_or(static_cast<std::uint16_t>(members_.size()));
    out += directory;
    if (isWide) {
        const std::uint64_t end = out.size();
        out += "PK\6\6" + u64(44) + u16(45) + u16(45) + u32(0) + u32(0) + u64(entries) +
               u64(entries) + u64(directory.size()) + u64(start);
        out += "PK\6\7" + u32(0) + u64(end + front.size()) + u32(1);
    }
    out += "PK\5\6" + u16(disk) + u16(disk) + u16(isWide ? 0xFFFF : entries) +
           u16(isWide ? 0xFFFF : entries) + u32(isWide ? full : directory.size()) +
           u32(isWide ? full : start) + u16(comment.size()) + comment;
    return front + out;
}

}  // namespace tarn::test
