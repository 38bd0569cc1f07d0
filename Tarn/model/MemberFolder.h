#pragma once

#include <memory>

#include "TarnCore/base/URL.h"

class QTemporaryDir;

namespace tarn {

/// A private temporary folder for members of archives. It goes with this object, and all that is in
/// it.
class MemberFolder {
public:
    /// Throws ArchiveError where none can be made.
    MemberFolder();
    ~MemberFolder();
    MemberFolder(const MemberFolder&) = delete;
    MemberFolder& operator=(const MemberFolder&) = delete;

    URL url() const;
    /// True for what lies in such a folder, whichever process made it.
    static bool holds(const URL& file);

private:
    std::unique_ptr<QTemporaryDir> folder_;
};

}  // namespace tarn
