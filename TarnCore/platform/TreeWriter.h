#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/platform/ArchiveStream.h"

namespace tarn {

/// What a new file or folder gets beside its content.
struct NewItemFacts {
    /// Permission bits; of these only the nine for reading, writing and executing are used, and
    /// those less what the user's mask takes away. Absent for what new items have.
    std::optional<std::uint32_t> mode;
    std::optional<UnixTime> modified;  ///< Absent for now.
};

/// A file that is being written. One thread at a time. Failures throw std::system_error.
class NewFile {
public:
    virtual ~NewFile() = default;
    virtual void append(std::string_view bytes) = 0;
    /// Leaves a hole of that many bytes.
    virtual void skip(std::int64_t bytes) = 0;
    /// Writes over what is there already.
    virtual void writeAt(std::int64_t offset, std::string_view bytes) = 0;
    /// Bytes so far.
    virtual std::int64_t size() const = 0;
    /// Gives it its time; nothing may be written any more. A file that goes without it keeps what
    /// was written.
    virtual void finish() = 0;
};

/// Makes files, folders and links below one folder, and nowhere else: paths are relative, every
/// folder on the way is opened without following a link, and ".." leads nowhere (ENOTDIR or EXDEV).
/// Folders that are missing on the way are made. Nothing is ever replaced (EEXIST).
///
/// One thread at a time; several writers may work on one folder at once. Failures throw
/// std::system_error.
class TreeWriter {
public:
    virtual ~TreeWriter() = default;

    /// Nothing happens when the folder is there. It can be written to until finishFolder.
    virtual void createFolder(std::string_view path) = 0;
    virtual void writeFile(std::string_view path, std::string_view content,
                           const NewItemFacts& facts) = 0;
    virtual std::unique_ptr<NewFile> createFile(std::string_view path,
                                                const NewItemFacts& facts) = 0;
    virtual void createLink(std::string_view path, const std::string& target,
                            const std::optional<UnixTime>& modified) = 0;
    /// A second name for a file that was made before; a link is not followed.
    virtual void createHardLink(std::string_view path, std::string_view existing) = 0;
    /// Gives a folder its mode and time, when nothing more will be made in it.
    virtual void finishFolder(std::string_view path, const NewItemFacts& facts) = 0;
    virtual void removeFile(std::string_view path) = 0;
};

}  // namespace tarn
