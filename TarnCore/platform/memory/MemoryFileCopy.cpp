#include "TarnCore/platform/memory/MemoryFileCopy.h"

#include <cerrno>
#include <limits>
#include <string>
#include <system_error>
#include <utility>

#include "TarnCore/platform/memory/MemoryFileSystem.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "memory disk");
}

std::vector<std::string> childNames(const FileSystem& files, const URL& folder) {
    std::vector<std::string> names;
    const auto reader = files.openFolder(folder);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) names.emplace_back(entry.view());
    return names;
}

}  // namespace

/// What was copied, and as of when.
struct MemoryFileCopy::Copied final : Record {
    Guarded<std::map<URL, std::pair<Date, std::int64_t>>> sources;
};

class MemoryFileCopy::Copying {
public:
    Copying(MemoryFileCopy& owner, const Watch& watch) : owner_(owner), watch_(watch) {}

    void copy(const URL& from, const URL& to) {
        if (stopped) return;
        try {
            copyOrThrow(from, to);
        } catch (const std::system_error& error) {
            const int errnum = error.code().value();
            if (isTop(from) || watch_.stopsAtFailure || errnum == ENOSPC || errnum == EROFS) throw;
            hasFailures = true;
            if (watch_.failed) watch_.failed(from, errnum);
        }
    }
    void setTop(const URL& top) { top_ = top; }
    bool hasFailures = false;
    bool stopped = false;

private:
    bool isTop(const URL& url) const { return url == top_; }

    void copyOrThrow(const URL& from, const URL& to) {
        MemoryFileSystem& files = *owner_.files_;
        {
            const auto state = owner_.state_.lock();
            const auto failure = state->failures.find(from);
            if (failure != state->failures.end() && failure->second) fail(failure->second);
            if (state->writing) fail(state->writing);
        }
        const FileAttributes facts = files.requireAttributes(from, Links::keep);
        switch (facts.type) {
            case FileType::directory:
                files.addFolder(to);
                for (const std::string& name : childNames(files, from))
                    copy(from.appending(name), to.appending(name));
                break;
            case FileType::symlink:
                files.addLink(to, files.linkTarget(from));
                break;
            case FileType::file:
                files.addFile(to, files.readFile(from, std::numeric_limits<std::size_t>::max()));
                break;
            default:
                fail(notCopyable);
        }
        files.setAttributes(to, facts);
        if (auto* record = static_cast<Copied*>(watch_.record.get()))
            (*record->sources.lock())[from] = {facts.modified, facts.size};
        const bool isFolder = facts.type == FileType::directory;
        if (watch_.progress && !watch_.progress(isFolder ? 0 : facts.size, isFolder ? 0 : 1))
            stopped = true;
    }

    MemoryFileCopy& owner_;
    const Watch& watch_;
    URL top_;
};

std::shared_ptr<FileCopy::Record> MemoryFileCopy::makeRecord(Purpose) const {
    return std::make_shared<Copied>();
}

FileCopy::Outcome MemoryFileCopy::copy(const URL& from, const URL& to, const Watch& watch) {
    URL target = to;
    while (files_->attributes(target, Links::keep)) {
        if (!watch.nextName) fail(EEXIST);
        target = watch.nextName(target);
    }
    files_->requireAttributes(target.parent(), Links::follow);
    Copying copying(*this, watch);
    copying.setTop(from);
    try {
        copying.copy(from, target);
    } catch (const std::system_error&) {
        files_->remove(target);
        throw;
    }
    if (copying.stopped) {
        files_->remove(target);
        return Outcome::stopped;
    }
    return copying.hasFailures ? Outcome::partial : Outcome::complete;
}

bool MemoryFileCopy::flush(const URL& folder) {
    const auto state = state_.lock();
    state->flushed.push_back(folder);
    return state->flushes;
}

void MemoryFileCopy::removeCopied(const URL& from, const Record& record) {
    const FileAttributes facts = files_->requireAttributes(from, Links::keep);
    int first = 0;
    if (facts.type == FileType::directory) {
        for (const std::string& name : childNames(*files_, from)) {
            try {
                removeCopied(from.appending(name), record);
            } catch (const std::system_error& error) {
                if (first == 0) first = error.code().value();
            }
        }
    }
    if (first != 0) fail(first);
    const auto sources = static_cast<const Copied&>(record).sources.lock();
    const auto copied = sources->find(from);
    const bool isSame =
        copied != sources->end() && (facts.type == FileType::directory ||
                                     copied->second == std::pair(facts.modified, facts.size));
    if (!isSame) fail(changedMeanwhile);
    files_->remove(from);
}

void MemoryFileCopy::remove(const URL& url) {
    files_->requireAttributes(url, Links::keep);
    files_->remove(url);
}

}  // namespace tarn
