#include "TarnCore/ops/ChangeJournal.h"

#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>

#include <sys/file.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/JournalRepair.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr mode_t privateMode = 0600;

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

/// Makes the name of a new file last, where the disk can be told so.
void syncFolder(const URL& folder) {
    const FileDescriptor fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd) fsync(fd.get());
}

std::string lineOf(const ChangeJournal::Move& move, const FileAttributes& item) {
    std::string line;
    JSONWriter json(line);
    json.beginObject();
    json.key("move");
    json.beginObject();
    json.key("from");
    json.url(move.from);
    json.key("to");
    json.url(move.to);
    json.key("temporary");
    json.url(move.temporary);
    json.key("inode");
    json.integer(static_cast<std::int64_t>(item.inode));
    json.endObject();
    json.endObject();
    return line + "\n";
}

std::string lineOf(const URL& folder, std::string_view prefix) {
    std::string line;
    JSONWriter json(line);
    json.beginObject();
    json.key("leftovers");
    json.beginObject();
    json.key("folder");
    json.url(folder);
    json.key("prefix");
    json.string(prefix);
    json.endObject();
    json.endObject();
    return line + "\n";
}

}  // namespace

struct ChangeJournal::State {
    FileDescriptor fd;  ///< Holds the lock. None until the note exists.
    URL url;
    std::string prefix;
    std::set<URL> folders;

    /// The note gets its name when it is locked and whole, so that no other program takes it for
    /// one that was left behind.
    void create(std::string_view text) {
        const URL folder = JournalRepair::folder();
        // The note lies on the disk of the stores, whatever disk the change is on.
        std::filesystem::create_directories(folder.path());
        url = folder.appending(UUID::random().string() + std::string(JournalRepair::extension));
        const URL temporary = URL::fromPath(url.path() + ".new");
        fd = FileDescriptor(open(temporary.c_str(),
                                 O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, privateMode));
        if (!fd) fail(errno, "open");
        try {
            while (flock(fd.get(), LOCK_EX) != 0)
                if (errno != EINTR) fail(errno, "flock");
            if (const int errnum = FileIO::writeAll(fd.get(), text)) fail(errnum, "write");
            if (fsync(fd.get()) != 0) fail(errno, "fsync");
            if (::rename(temporary.c_str(), url.c_str()) != 0) fail(errno, "rename");
        } catch (const std::system_error&) {
            unlink(temporary.c_str());
            fd.close();
            throw;
        }
        syncFolder(folder);
    }
};

ChangeJournal::ChangeJournal(std::unique_ptr<State> state) : state_(std::move(state)) {}
ChangeJournal::ChangeJournal(ChangeJournal&&) noexcept = default;

ChangeJournal& ChangeJournal::operator=(ChangeJournal&& other) noexcept {
    state_.swap(other.state_);
    return *this;
}

ChangeJournal::~ChangeJournal() {
    // Removed before the lock goes with the descriptor.
    if (state_ && state_->fd) unlink(state_->url.c_str());
}

void ChangeJournal::leaveToRepair() { state_.reset(); }

ChangeJournal ChangeJournal::ofMoves(std::span<const Move> moves) {
    std::string text;
    for (const Move& move : moves)
        text += lineOf(move, Platform::current().files->requireAttributes(move.from, Links::keep));
    auto state = std::make_unique<State>();
    state->create(text);
    return ChangeJournal(std::move(state));
}

ChangeJournal ChangeJournal::ofLeftovers(std::string prefix) {
    auto state = std::make_unique<State>();
    state->prefix = std::move(prefix);
    return ChangeJournal(std::move(state));
}

void ChangeJournal::addFolder(const URL& folder) {
    if (state_->folders.contains(folder)) return;
    const std::string line = lineOf(folder, state_->prefix);
    if (!state_->fd) {
        state_->create(line);
    } else {
        if (const int errnum = FileIO::writeAll(state_->fd.get(), line)) fail(errnum, "write");
        if (fdatasync(state_->fd.get()) != 0) fail(errno, "fdatasync");
    }
    state_->folders.insert(folder);
}

std::size_t ChangeJournal::repair() { return JournalRepair::run(); }

std::string ChangeJournal::temporaryName(std::string_view prefix) {
    return std::string(prefix) + UUID::random().string();
}

}  // namespace tarn
