#include "TarnCore/ops/FileOps.h"

#include <cerrno>
#include <cmath>
#include <system_error>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/files/AddedDate.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/TwoPhaseMove.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOps {
namespace {

/// Another program took the proposed name this often: something is wrong with the folder.
constexpr int mostAttempts = 100;

FileSystem& files() { return *Platform::current().files; }

std::string quotedName(const URL& url) { return Text::quoted(url.name()); }

[[noreturn]] void throwFailed(const std::exception& error, std::string_view verb) {
    throw FileOpError::failed(friendly(error, verb));
}

/// "." and ".." are always there.
void validateNew(std::string_view name) {
    validate(name);
    if (name == "." || name == "..") throw FileOpError::nameTaken(name);
}

/// Calls `make` with proposals of `propose` until one is not taken under its hands.
template <class Propose, class Make>
URL makeUnderFreeName(const Propose& propose, const Make& make) {
    for (int attempt = 1;; ++attempt) {
        URL url = propose();
        try {
            make(url);
            return url;
        } catch (const std::system_error& error) {
            if (error.code() != std::errc::file_exists || attempt == mostAttempts) throw;
        }
    }
}

std::optional<FileAttributes> nearestExisting(URL url) {
    for (;; url = url.parent()) {
        if (auto found = files().attributes(url, Links::follow)) return found;
        if (url.isRoot()) return std::nullopt;
    }
}

FileCopy& copying() {
    const auto& service = Platform::current().copying;
    if (!service) throw std::system_error(ENOTSUP, std::generic_category(), "copy");
    return *service;
}

/// A copy that a crash leaves behind half-made is deleted at the next start.
struct NotedCopy {
    ChangeJournal journal;
    FileCopy::Watch watch;

    explicit NotedCopy(const URL& to)
        : NotedCopy(to, ChangeJournal::temporaryName(ChangeJournal::copying)) {}

private:
    NotedCopy(const URL& to, const std::string& temporaryName)
        : journal(ChangeJournal::ofLeftovers(temporaryName)) {
        journal.addFolder(to.parent());
        watch.temporaryName = temporaryName;
        watch.stopsAtFailure = true;
    }
};

/// Into a folder of its own, which keeps items of the same name apart.
URL trashPrivately(const URL& url, const URL& trash) {
    const URL folder = trash.appending(UUID::random().string());
    files().createFolders(folder);
    const URL place = folder.appending(url.name());
    try {
        move(url, place);
    } catch (const std::exception&) {
        try {
            files().removeFolder(folder);
        } catch (const std::system_error&) {
            // Not empty, or gone: nothing of the user's is in it.
        }
        throw;
    }
    return place;
}

std::string reason(int errnum) {
    switch (errnum) {
        case EPERM:
        case EACCES:
            return " because you don’t have permission.";
        case ENOENT:
            return " because it no longer exists.";
        case EBUSY:
            return " because it’s in use.";
        case EEXIST:
            return " because an item with that name already exists.";
        case ENOSPC:
            return " because the disk is full.";
        case EROFS:
            return " because the disk is read-only.";
        default:
            return ". " + systemErrorSentence(errnum);
    }
}

}  // namespace

bool exists(const URL& url) { return files().attributes(url, Links::keep).has_value(); }

bool isDirectory(const URL& url) {
    const auto found = files().attributes(url, Links::follow);
    return found && found->type == FileType::directory;
}

bool sameVolume(const URL& a, const URL& b) {
    const auto first = nearestExisting(a);
    const auto second = nearestExisting(b);
    return !first || !second || first->device == second->device;
}

bool sameFile(const URL& a, const URL& b) {
    const auto first = files().attributes(a, Links::keep);
    const auto second = files().attributes(b, Links::keep);
    return first && second && first->device == second->device && first->inode == second->inode;
}

bool isUnchanged(const URL& url, std::int64_t size, Date modified) {
    const auto found = files().attributes(url, Links::follow);
    return found && found->size == size && std::abs(found->modified - modified) < 1.0;
}

FileChange createFolder(const URL& parent, std::string_view name) {
    validateNew(name);
    try {
        URL folder = makeUnderFreeName([&] { return uniqueURL(parent.appending(name)); },
                                       [&](const URL& url) { files().createFolder(url); });
        return {folder, {Step::create(folder)}};
    } catch (const std::system_error& error) {
        throwFailed(error, "create the folder");
    }
}

FileChange createFolder(const std::vector<URL>& items, const URL& parent, std::string_view name,
                        std::vector<Step>* done) {
    FileChange change = createFolder(parent, name);
    const auto add = [&](Step step) {
        if (done != nullptr) done->push_back(step);
        change.steps.push_back(std::move(step));
    };
    if (done != nullptr) done->push_back(change.steps.front());
    for (const URL& item : items) {
        if (change.url.isInside(item))
            throw FileOpError::failed("Can’t put " + quotedName(item) + " inside itself.");
        try {
            const URL to =
                makeUnderFreeName([&] { return uniqueURL(change.url.appending(item.name())); },
                                  [&](const URL& url) { move(item, url); });
            add(Step::move(item, to));
            AddedDate::note(to);
        } catch (const std::exception& error) {
            throwFailed(error, "move " + quotedName(item));
        }
    }
    return change;
}

FileChange rename(const URL& url, std::string_view newName) {
    validateNew(newName);
    if (!exists(url)) throw FileOpError::missing(url.name());
    if (newName == url.name()) return {url, {}};
    const URL target = url.parent().appending(newName);
    try {
        moveHandlingCase(url, target);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::file_exists) throw FileOpError::nameTaken(newName);
        throwFailed(error, "rename " + quotedName(url));
    }
    return {target, {Step::move(url, target)}};
}

FileChange duplicate(const URL& url, const CancelToken& token) {
    if (url.isRoot()) throw FileOpError::failed("Can’t put “/” inside itself.");
    try {
        URL copy = makeUnderFreeName(
            [&] { return copyName(url); },
            [&](const URL& to) {
                NotedCopy noted(to);
                noted.watch.progress = [&](std::int64_t, std::int64_t) {
                    return !token.isCancelled();
                };
                if (copying().copy(url, to, noted.watch) == FileCopy::Outcome::stopped)
                    throw FileOpError::failed("The copy was cancelled.");
            });
        FileTags::copied(url, copy);
        return {copy, {Step::create(copy)}};
    } catch (const std::system_error& error) {
        throwFailed(error, "duplicate " + quotedName(url));
    }
}

URL trash(const URL& url) {
    try {
        if (const auto folder = privateTrash()) return trashPrivately(url, *folder);
        const auto& desktop = Platform::current().trash;
        if (!desktop) throw std::system_error(EXDEV, std::generic_category(), "trash");
        const URL trashed = desktop->trash(url);
        FileTags::moved(url, trashed);
        return trashed;
    } catch (const std::system_error& error) {
        const std::string verb = "move " + quotedName(url) + " to the Trash";
        if (error.code() == std::errc::cross_device_link)
            throw FileOpError::failed("Couldn’t " + verb +
                                      " because its disk has no Trash that can be used.");
        if (error.code() == std::errc::invalid_argument)
            throw FileOpError::failed("Couldn’t " + verb + " because the Trash is inside it.");
        throwFailed(error, verb);
    }
}

std::vector<Step> trash(const std::vector<URL>& urls, std::vector<Step>* done) {
    std::vector<Step> steps;
    for (const URL& url : urls) {
        Step step = Step::move(url, trash(url));
        if (done != nullptr) done->push_back(step);
        steps.push_back(std::move(step));
    }
    return steps;
}

void move(const URL& from, const URL& to) {
    try {
        files().move(from, to);
    } catch (const std::system_error& error) {
        if (error.code() != std::errc::cross_device_link) throw;
        const NotedCopy noted(to);
        copying().moveAcross(from, to, noted.watch);
    }
    FileTags::moved(from, to);
}

void moveHandlingCase(const URL& from, const URL& to) {
    try {
        move(from, to);
        return;
    } catch (const std::system_error& error) {
        if (error.code() != std::errc::file_exists || from == to || !sameFile(from, to)) throw;
    }
    // The disk takes both names for one, so that the way leads through a third.
    if (const auto failure = TwoPhaseMove::run({{from, to}}, ChangeJournal::renaming);
        failure.error)
        std::rethrow_exception(failure.error);
}

std::string friendly(const std::exception& error, std::string_view verb) {
    if (const auto* failure = dynamic_cast<const FileOpError*>(&error)) return failure->what();
    if (const auto* failure = dynamic_cast<const std::system_error*>(&error))
        return friendly(failure->code().value(), verb);
    return "Couldn’t " + std::string(verb) + ". " + error.what();
}

std::string friendly(int errnum, std::string_view verb) {
    return "Couldn’t " + std::string(verb) + reason(errnum);
}

std::optional<URL> privateTrash() {
    if (Paths::isIsolated() || SupportDirectory::isTestFolder()) return Paths::trash();
    return std::nullopt;
}

}  // namespace tarn::FileOps
