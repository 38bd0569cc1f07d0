#include "TarnCore/files/StoreFile.h"

#include <cerrno>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"

namespace tarn {
namespace {

constexpr mode_t privateMode = 0600;

URL beside(const URL& url, std::string_view suffix) {
    return url.parent().appending("." + std::string(url.name()) + std::string(suffix));
}

/// Gives the file at `from` a second name, or the new name alone where a disk knows no second
/// names. Fails with EEXIST when the name is taken.
bool keepAs(const URL& from, const URL& to) {
    if (link(from.c_str(), to.c_str()) == 0) return true;
    if (errno == EEXIST) return false;
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

}  // namespace

StoreFile::Identity StoreFile::identity(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size,
            std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

StoreFile::Identity StoreFile::onDisk() const {
    struct stat status;
    if (stat(url_.c_str(), &status) != 0) return {};
    return identity(status);
}

bool StoreFile::hasChangedOnDisk() const { return onDisk() != seen_; }

StoreFile::Content StoreFile::read() {
    Content content;
    Identity found;
    // Without O_NONBLOCK a pipe of this name would hold us here for ever.
    const FileDescriptor fd(open(url_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd) {
        content.state = errno == ENOENT ? State::missing : State::unreadable;
        if (content.state == State::unreadable) found = onDisk();
    } else {
        struct stat status;
        if (fstat(fd.get(), &status) == 0) found = identity(status);
        auto text = FileIO::readAll(fd.get());
        content.state = text ? State::present : State::unreadable;
        if (text) content.text = std::move(*text);
    }
    content.hasChanged = found != seen_;
    seen_ = found;
    return content;
}

bool StoreFile::update(const std::function<Replacement(const Content&)>& edit) {
    const FileDescriptor lock(open(beside(url_, ".lock").c_str(),
                                   O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, privateMode));
    if (!lock) return false;
    while (flock(lock.get(), LOCK_EX) != 0)
        if (errno != EINTR) return false;

    const Identity before = seen_;
    const Replacement replacement = edit(read());
    if ((!replacement.keepsOldFile || keepOldFile()) && replace(replacement.text)) return true;
    seen_ = before;  // Whatever was read now was not taken over.
    return false;
}

bool StoreFile::keepOldFile() const {
    const std::string name = url_.path() + ".unreadable";
    if (keepAs(url_, URL::fromPath(name))) return true;
    for (int number = 2; errno == EEXIST && number < 10'000; ++number)
        if (keepAs(url_, URL::fromPath(name + " " + std::to_string(number)))) return true;
    return errno == ENOENT;  // Someone took it away, so there is nothing to lose.
}

bool StoreFile::replace(const std::string& text) {
    // The lock keeps other writers away, so that a file of this name is what one has left that was
    // ended here.
    const URL temporary = beside(url_, ".new");
    unlink(temporary.c_str());
    const FileDescriptor fd(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, privateMode));
    if (!fd) return false;
    struct stat status;
    if (FileIO::writeAll(fd.get(), text) == 0 && fsync(fd.get()) == 0 &&
        fstat(fd.get(), &status) == 0 && rename(temporary.c_str(), url_.c_str()) == 0) {
        seen_ = identity(status);
        return true;
    }
    unlink(temporary.c_str());
    return false;
}

}  // namespace tarn
