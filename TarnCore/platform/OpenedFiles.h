#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

struct OpenedFile {
    URL url;
    std::string mimeType;
};

/// Where the desktop keeps what was opened lately, by all programs; RecentFiles reads it. Callable
/// from any thread, and does file work.
class OpenedFiles {
public:
    virtual ~OpenedFiles() = default;

    /// Notes that these were opened from here. Nothing happens where the user wants no such list,
    /// or where it cannot be written.
    virtual void note(const std::vector<OpenedFile>& files, Date when) = 0;

    /// Of this process; null where nothing is noted.
    static std::shared_ptr<OpenedFiles> current();
    /// Once, before the first window; and by tests.
    static void setCurrent(std::shared_ptr<OpenedFiles> files);
};

}  // namespace tarn
