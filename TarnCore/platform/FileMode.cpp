#include "TarnCore/platform/FileMode.h"

#include <cerrno>
#include <system_error>
#include <vector>

#include <sys/stat.h>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn::FileMode {
namespace {

[[noreturn]] void fail(int errnum) { throw std::system_error(errnum, std::generic_category()); }

/// Calls one of the reentrant look-ups with as much room as it asks for.
template <class Record, class Lookup>
std::string nameOf(std::uint32_t id, Lookup lookup, char* Record::*name) {
    constexpr std::size_t mostRoom = 1 << 20;
    std::vector<char> room(1024);
    Record record{};
    Record* found = nullptr;
    while (lookup(id, &record, room.data(), room.size(), &found) == ERANGE &&
           room.size() < mostRoom)
        room.resize(room.size() * 2);
    return found != nullptr ? std::string(record.*name) : std::to_string(id);
}

}  // namespace

void set(const URL& url, const FileAttributes& seen, std::uint32_t mode) {
    // A descriptor that is good for nothing else opens pipes and devices without touching them.
    const FileDescriptor item(open(url.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat now {};
    if (!item || fstat(item.get(), &now) != 0) fail(errno);
    if (S_ISLNK(now.st_mode)) fail(ELOOP);
    if (now.st_ino != seen.inode || now.st_dev != seen.device) fail(ESTALE);
    const std::string self = "/proc/self/fd/" + std::to_string(item.get());
    if (chmod(self.c_str(), mode & 07777U) != 0) fail(errno);
}

bool canSet(const FileAttributes& item) { return geteuid() == 0 || geteuid() == item.owner; }

Access access(const URL& url) {
    const auto may = [&url](int what) {
        return faccessat(AT_FDCWD, url.c_str(), what, AT_EACCESS) == 0;
    };
    return {may(R_OK), may(W_OK), may(X_OK)};
}

std::string userName(std::uint32_t id) { return nameOf(id, getpwuid_r, &passwd::pw_name); }

std::string groupName(std::uint32_t id) { return nameOf(id, getgrgid_r, &group::gr_name); }

}  // namespace tarn::FileMode
