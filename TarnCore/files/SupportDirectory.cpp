#include "TarnCore/files/SupportDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"

namespace tarn::SupportDirectory {
namespace {

Guarded<std::optional<URL>>& testFolder() {
    static Guarded<std::optional<URL>> folder;
    return folder;
}

/// A folder that cannot be made shows later, when a file in it cannot be written.
URL made(const URL& folder) {
    std::error_code ignored;
    const bool isNew = std::filesystem::create_directories(folder.path(), ignored);
    if (isNew && !ignored)
        std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all, ignored);
    return folder;
}

}  // namespace

URL location() {
    if (const auto folder = testFolder().lock(); *folder) return **folder;
    return Paths::isIsolated() ? Paths::isolatedRoot().appending("Support")
                               : Paths::dataHome().appending("Tarn");
}

URL url() { return made(location()); }
URL file(std::string_view name) { return url().appending(name); }
URL templates() { return made(location().appending("Templates")); }
URL thumbnails() { return made(location().appending("Thumbnails")); }

void useTestFolder() {
    std::error_code ignored;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(ignored);
    const URL base = ignored ? URL::fromPath("/tmp") : URL::fromPath(temporary.native());
    *testFolder().lock() = base.appending("TarnTestSupport-" + std::to_string(getpid()));
}

bool isTestFolder() { return testFolder().lock()->has_value(); }

}  // namespace tarn::SupportDirectory
