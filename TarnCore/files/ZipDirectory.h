#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TarnCore/platform/ArchiveStream.h"
#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// One member of a zip file, as its central directory describes it. Nothing of it is to be trusted
/// but that the offsets lie in the file.
struct ZipMember {
    enum class Type : std::uint8_t { file, folder, symlink, other };

    std::string path;  ///< '/' between names, otherwise as the archive has it.
    Type type = Type::file;
    bool isEncrypted = false;
    std::uint16_t method = 0;  ///< 0 stored, 8 deflated; others are for the library.
    std::uint32_t crc = 0;
    std::uint64_t packedSize = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;  ///< Of its local header, from the beginning of the file.
    std::uint64_t end = 0;     ///< Where the next local header or the directory begins.
    std::optional<std::uint32_t> mode;
    std::optional<UnixTime> modified;
};

/// The directory at the end of a zip file (APPNOTE.TXT 6.3.10), read without touching the members:
/// with the 64-bit extension, data in front of the archive and behind it, names in UTF-8, in the
/// Info-ZIP Unicode field or in an old code page, and times of Unix and NTFS.
class ZipDirectory {
public:
    /// The file begins like a zip file.
    static bool isZip(const FileBytes& bytes);

    static constexpr std::uint64_t largest = std::uint64_t{1} << 30;

    /// `language` (an ICU identifier) chooses the code page of old names. Throws ArchiveError, also
    /// when the directory has more than `most` bytes: all of it is kept in memory.
    static ZipDirectory read(const FileBytes& bytes, std::string_view language,
                             std::uint64_t most = largest);

    /// In the order of the directory.
    const std::vector<ZipMember>& members() const { return members_; }
    std::vector<ZipMember> takeMembers() && { return std::move(members_); }

    /// Two members share bytes of the file: nothing that an honest program writes.
    bool hasOverlaps() const { return hasOverlaps_; }

private:
    void findEnds(std::uint64_t directory);

    std::vector<ZipMember> members_;
    bool hasOverlaps_ = false;
};

}  // namespace tarn
