#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/platform/ArchiveStream.h"
#include "TarnCore/platform/FileBytes.h"
#include "TarnCore/platform/TreeWriter.h"

namespace tarn {

/// Writes a zip file (APPNOTE.TXT 6.3.10): members in the order they are added, with the 64-bit
/// extension where a member or the whole is too large without. The one writer of zip files.
///
/// Names are bytes with '/' between them; those that are UTF-8 are marked as such. Used on one
/// thread at a time, but members that fit into memory can be packed on others beforehand.
/// Everything throws std::system_error when the file cannot be written or a name is too long.
class ZipWriter {
public:
    /// What is kept of a member beside its content; nothing of it means no extra attributes and
    /// the first day that a zip file can name, so that the same content gives the same file.
    struct Facts {
        std::optional<std::uint32_t> mode;  ///< As in stat: type and permissions.
        std::optional<UnixTime> modified;
    };
    /// A member ready to be written.
    struct Packed {
        std::string name;
        Facts facts;
        std::string bytes;
        bool isDeflated = false;
        std::uint32_t crc = 0;
        std::uint64_t size = 0;  ///< Unpacked.
    };

    explicit ZipWriter(NewFile& file) : file_(file) {}

    /// Packs it where that makes it smaller. Touches no writer: for any thread.
    static Packed pack(Deflater& deflater, std::string name, std::string_view content,
                       const Facts& facts);

    void add(Packed member);
    /// A name that ends in '/'.
    void addFolder(std::string name, const Facts& facts);
    /// A file of any size, read and packed in pieces on several threads. `watch` hears of every
    /// run of bytes that is done and may stop the whole by throwing.
    void addFile(std::string name, const FileBytes& content, const Facts& facts,
                 const std::function<void(std::int64_t bytes)>& watch);
    /// Writes the directory; nothing may be added after it.
    void finish();

private:
    struct Written {
        std::uint64_t offset;
        std::uint64_t size;
        std::uint64_t packedSize;
    };
    class Record;

    Record localHeader(const Packed& member, std::uint64_t packedSize, bool isWide) const;
    void addToDirectory(const Packed& member, const Written& written);

    NewFile& file_;
    std::string directory_;
    std::uint64_t count_ = 0;
};

}  // namespace tarn
