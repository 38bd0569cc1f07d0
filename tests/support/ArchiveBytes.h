#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Archives put together byte by byte, so that they can hold what no program would write.
namespace tarn::test {

/// A tar file in the form of POSIX 1988 ("ustar").
class TarBytes {
public:
    struct Member {
        std::string path;
        char type = '0';  ///< '0' file, '1' hard link, '2' symbolic link, '5' folder, '6' pipe.
        std::string content{};
        std::string target{};
        unsigned mode = 0644;
        std::uint64_t modified = 1700000000;
    };
    explicit TarBytes(const std::vector<Member>& members) {
        for (const Member& member : members) add(member);
    }
    /// With the two empty blocks that end it.
    std::string bytes() const { return bytes_ + std::string(1024, '\0'); }

private:
    void add(const Member& member);
    std::string bytes_;
};

/// A cpio file in the form of SVR4 ("newc"), in which the bytes of a file with several names stand
/// behind the last of them.
struct CpioMember {
    std::string path;
    std::string content{};
    unsigned inode = 1;
    unsigned links = 1;
};
std::string cpio(const std::vector<CpioMember>& members);

/// Wraps bytes as gzip does.
std::string gzipped(std::string_view bytes);

/// A zip file of stored and deflated members, with everything in it to be chosen.
class ZipBytes {
public:
    struct Member {
        std::string name;
        std::string content{};
        bool isDeflated = false;
        std::uint16_t flags = 0;
        std::uint16_t method = 0xFFFF;  ///< Chosen by isDeflated.
        std::uint8_t host = 3;          ///< Unix.
        std::uint32_t mode = 0100644;   ///< As in stat.
        std::uint32_t dosAttributes = 0;
        std::uint16_t dosDate = 44 << 9 | 3 << 5 | 10;  ///< 10 March 2024
        std::uint16_t dosTime = 9 << 11 | 30 << 5 | 4;  ///< 09:30:08
        std::string extra{};                            ///< In the directory.
        std::optional<std::uint32_t> size{};            ///< What the directory claims.
        std::optional<std::uint32_t> crc{};
        std::optional<std::uint32_t> offset{};
        bool hasDescriptor = false;  ///< Sizes behind the data, none in front of it.
        bool isWide = false;         ///< Sizes and offset in the 64-bit field only.
    };
    explicit ZipBytes(std::vector<Member> members) : members_(std::move(members)) {}

    std::string front{};    ///< In front of the archive; offsets do not count it.
    std::string comment{};  ///< Behind it.
    bool isWide = false;    ///< With the 64-bit end record.
    std::uint16_t disk = 0;
    std::optional<std::uint16_t> count{};

    std::string bytes() const;

private:
    std::vector<Member> members_;
};

/// Little-endian numbers and the extra fields that are made of them.
std::string u16(std::uint64_t value);
std::string u32(std::uint64_t value);
std::string u64(std::uint64_t value);
std::string extraField(std::uint16_t id, std::string_view content);

}  // namespace tarn::test
