#include "Tarn/model/ArchiveMembers.h"

#include <filesystem>
#include <optional>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MemberFolder.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/UUID.h"

namespace tarn {
namespace {

constexpr auto writing = std::filesystem::perms::owner_write | std::filesystem::perms::group_write |
                         std::filesystem::perms::others_write;

/// Takes the permission to write from the files, and leaves it to their folders.
void protect(const URL& url) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const auto protectFile = [&ignored](const fs::path& path) {
        if (fs::is_regular_file(fs::symlink_status(path, ignored)))
            fs::permissions(path, writing, fs::perm_options::remove, ignored);
    };
    protectFile(url.path());
    if (!fs::is_directory(fs::symlink_status(url.path(), ignored))) return;
    for (auto it = fs::recursive_directory_iterator(url.path(), ignored);
         !ignored && it != fs::recursive_directory_iterator(); it.increment(ignored))
        protectFile(it->path());
}

}  // namespace

struct ArchiveMembers::State {
    Guarded<std::optional<MemberFolder>> folder;
};

ArchiveMembers::ArchiveMembers() : state_(std::make_unique<State>()) {}

ArchiveMembers::~ArchiveMembers() = default;

URL ArchiveMembers::folder() {
    const auto folder = state_->folder.lock();
    if (!*folder) folder->emplace();
    return (*folder)->url();
}

void ArchiveMembers::watch(ActivityTask::Handle& handle, const std::string& currentName,
                           std::int64_t doneBytes, std::int64_t totalBytes) {
    std::optional<double> fraction;
    if (totalBytes > 0) fraction = static_cast<double>(doneBytes) / static_cast<double>(totalBytes);
    handle.report(displayText(currentName), fraction);
}

std::vector<URL> ArchiveMembers::take(const URL& archive, const std::vector<std::string>& members,
                                      bool readOnly, ActivityTask::Handle* handle) {
    ArchiveReader::Watch watching;
    if (handle) {
        watching.token = handle->token();
        watching.progress = [handle](const ArchiveReader::Progress& progress) {
            watch(*handle, progress.currentName, progress.doneBytes, progress.totalBytes);
        };
    }
    // A folder for each call, so that every member keeps its own name.
    const URL target = folder().appending(UUID::random().string());
    std::vector<URL> taken = ArchiveReader::extract(archive, members, target, watching);
    if (readOnly)
        for (const URL& url : taken) protect(url);
    return taken;
}

}  // namespace tarn
