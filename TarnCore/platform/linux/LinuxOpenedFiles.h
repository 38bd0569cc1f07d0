#pragma once

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/OpenedFiles.h"

namespace tarn {

/// recently-used.xbel in $XDG_DATA_HOME.
class LinuxOpenedFiles final : public OpenedFiles {
public:
    LinuxOpenedFiles();
    /// `settings` is the folder of the user's settings, which may forbid to keep a list.
    LinuxOpenedFiles(const URL& file, const URL& settings) : file_(file), settings_(settings) {}

    void note(const std::vector<OpenedFile>& files, Date when) override;

private:
    bool isWanted() const;

    URL file_;
    URL settings_;
};

}  // namespace tarn
