#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "TarnCore/base/URL.h"
#include "TarnCore/files/ZipDirectory.h"
#include "TarnCore/platform/ArchiveStream.h"
#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// An archive, opened as what it is. Its content decides, except that a compressed file that is not
/// called an archive ("notes.txt.gz", not "notes.tar.gz") is a single file, whatever is in it.
class OpenArchive {
public:
    enum class Form { zip, archive, singleFile };

    /// Throws ArchiveError. For archives that are no zip files this looks no further than needed to
    /// open them; `next` may still find that they are none.
    explicit OpenArchive(const URL& url);
    /// The same for bytes that are called so.
    OpenArchive(std::shared_ptr<const FileBytes> bytes, const URL& url);

    Form form() const { return form_; }
    const FileBytes& bytes() const { return *bytes_; }
    /// Only of a zip file.
    const ZipDirectory& directory() const { return *directory_; }
    ZipDirectory takeDirectory() && { return *std::move(directory_); }
    /// From the beginning. Never null.
    std::unique_ptr<ArchiveStream> stream() const;
    /// What the single file is called.
    std::string singleName() const;

    /// The next member; false at the end. Throws ArchiveError for everything else.
    static bool next(ArchiveStream& stream, ArchiveMember& member);

private:
    void recognise();

    URL url_;
    std::shared_ptr<const FileBytes> bytes_;
    Form form_ = Form::archive;
    std::optional<ZipDirectory> directory_;
};

}  // namespace tarn
