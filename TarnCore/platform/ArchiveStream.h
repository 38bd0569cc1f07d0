#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tarn {

/// An instant as file systems and archives keep it.
struct UnixTime {
    std::int64_t seconds = 0;  ///< Since 1970-01-01 00:00:00 UTC.
    std::int32_t nanoseconds = 0;
    bool operator==(const UnixTime&) const = default;
};

/// What an archive says about one of its members. Nothing of it is to be trusted.
struct ArchiveMember {
    enum class Type : std::uint8_t { file, folder, symlink, hardLink, other };

    std::string path;  ///< Bytes as the archive has them; UTF-8 where it stores Unicode.
    Type type = Type::file;
    std::string target;                ///< Of a link; the path of a member for a hard link.
    std::optional<std::int64_t> size;  ///< Bytes, where the archive knows beforehand.
    std::optional<UnixTime> modified;
    std::optional<std::uint32_t> mode;  ///< Permission bits, where the archive keeps them.
    bool isEncrypted = false;
};

/// The members of an archive, one after the other, in its order. One thread at a time. Never
/// throws, because it is implemented in a module.
class ArchiveStream {
public:
    /// What the file is taken for.
    enum class Form {
        archive,    ///< Any archive that the library knows, compressed in any way it knows.
        singleFile  ///< One compressed file; `next` finds one member without a name.
    };
    enum class Result {
        found,
        end,
        unrecognised,  ///< Not of this form at all.
        failed         ///< failure() says why.
    };

    virtual ~ArchiveStream() = default;

    /// Goes on to the next member, past what was not read of the last.
    virtual Result next(ArchiveMember& member) = 0;

    struct Block {
        const char* data = nullptr;  ///< Valid until the next call.
        std::size_t size = 0;
        std::int64_t offset = 0;  ///< In the member; what is skipped is zeroes.
    };
    /// The next bytes of the current member.
    virtual Result read(Block& block) = 0;

    /// How much of the file has been taken in, in bytes.
    virtual std::int64_t position() const = 0;

    /// The library's words for the last failure.
    virtual std::string failure() const = 0;
};

}  // namespace tarn
