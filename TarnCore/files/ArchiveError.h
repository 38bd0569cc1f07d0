#pragma once

#include <string>
#include <string_view>

#include "TarnCore/base/Error.h"

namespace tarn {

/// Looking into an archive or unpacking it went wrong, or was stopped.
class ArchiveError : public Error {
public:
    enum class Reason { unreadable, unsupported, disk, cancelled };

    /// “This archive couldn’t be read. ” and the detail, itself a sentence.
    static ArchiveError unreadable(std::string_view detail);
    static ArchiveError damaged();
    static ArchiveError incomplete();
    static ArchiveError encrypted();
    /// A member would be written outside of the folder.
    static ArchiveError leadsOut(std::string_view member);
    /// From what the library for archives says about a failure.
    static ArchiveError fromLibrary(std::string_view text);
    static ArchiveError unsupported();
    /// The archive is good, the disk is not; a complete sentence.
    static ArchiveError disk(const std::string& sentence);
    static ArchiveError cancelled();

    Reason reason() const { return reason_; }

private:
    ArchiveError(Reason reason, const std::string& sentence) : Error(sentence), reason_(reason) {}
    Reason reason_;
};

}  // namespace tarn
