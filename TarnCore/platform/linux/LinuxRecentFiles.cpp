#include "TarnCore/platform/linux/LinuxRecentFiles.h"

#include <algorithm>
#include <system_error>

#include <sys/stat.h>

#include "TarnCore/platform/linux/BookmarkList.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/XDGFolders.h"

namespace tarn {
namespace {

constexpr std::size_t largestFile = 64'000'000;

}  // namespace

LinuxRecentFiles::LinuxRecentFiles()
    : LinuxRecentFiles(XDGFolders::dataHome().appending("recently-used.xbel")) {}

Guarded<LinuxRecentFiles::List>::Access LinuxRecentFiles::current() const {
    struct stat attributes {};
    Seen now;
    if (stat(file_.c_str(), &attributes) == 0)
        now = {std::int64_t{attributes.st_mtim.tv_sec} * 1'000'000'000 + attributes.st_mtim.tv_nsec,
               attributes.st_size, attributes.st_ino};
    auto list = list_.lock();
    if (list->seen == now) return list;
    // Under the lock on purpose: whoever else asks meanwhile needs the same file.
    list->seen = now;
    list->visited.clear();
    try {
        list->files = parseBookmarkList(LinuxFileSystem().readFile(file_, largestFile));
    } catch (const std::system_error&) {
        list->files.clear();
    }
    for (const RecentFile& file : list->files) {
        Date& latest = list->visited.try_emplace(file.url, file.visited).first->second;
        latest = std::max(latest, file.visited);
    }
    return list;
}

std::vector<RecentFile> LinuxRecentFiles::all() const { return current()->files; }

std::optional<Date> LinuxRecentFiles::lastVisited(const URL& url) const {
    const auto list = current();
    const auto found = list->visited.find(url);
    if (found == list->visited.end()) return std::nullopt;
    return found->second;
}

}  // namespace tarn
