#include "TarnCore/ops/TransferRun.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <exception>
#include <iterator>
#include <system_error>
#include <unordered_set>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/AddedDate.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TransferMeasure.h"
#include "TarnCore/ops/TransferWords.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Originals wait this long for the next flush, so that ten thousand small ones cost a few.
constexpr double longestWait = 5.0;

double steadyNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::vector<std::string> childNames(const FileSystem& files, const URL& folder) {
    std::vector<std::string> names;
    const auto reader = files.openFolder(folder);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) names.emplace_back(entry.view());
    std::ranges::sort(names);
    return names;
}

std::pair<std::uint64_t, std::uint64_t> identity(const FileAttributes& facts) {
    return {facts.device, facts.inode};
}

}  // namespace

TransferRun::TransferRun(const TransferJob& job, TransferMonitor& monitor)
    : job_(job),
      monitor_(monitor),
      files_(Platform::current().files),
      copying_(Platform::current().copying) {}

TransferResult TransferRun::run() {
    monitor_.enter(TransferState::scanning);
    const std::vector<URL>& sources = job_.sources();
    std::vector<Measure> measures;
    if (job_.kind() == TransferKind::trash) {
        measures.assign(sources.size(), {0, 1});
    } else {
        measures = measureSources(sources, monitor_.token());
        lookAtDestination();
        record_ = copying_->makeRecord(job_.kind() == TransferKind::move ? FileCopy::Purpose::move
                                                                         : FileCopy::Purpose::copy);
    }
    Measure total;
    for (const Measure& measure : measures) {
        total.bytes += measure.bytes;
        total.items += measure.items;
    }
    monitor_.setTotals(total.bytes, total.items);
    monitor_.enter(TransferState::running);

    Measure done;
    for (std::size_t i = 0; i < sources.size() && monitor_.proceed(); ++i) {
        monitor_.setName(std::string(sources[i].name()));
        if (job_.kind() == TransferKind::trash) {
            trashOne(sources[i]);
        } else {
            transfer(sources[i], *job_.destination());
        }
        // Whatever an item came to, it is done with.
        done.bytes += measures[i].bytes;
        done.items += measures[i].items;
        if (!monitor_.isCancelled() && waiting_.isEmpty()) monitor_.setDone(done.bytes, done.items);
        monitor_.emit(false);
        if (!pending_.empty() && steadyNow() - pendingSince_ > longestWait) removePending();
    }
    copyWaiting();
    if (!monitor_.isCancelled()) monitor_.setDone(done.bytes, done.items);
    if (!monitor_.isCancelled()) removePending();
    if (!monitor_.isCancelled() && needsFlush_) finishWriting();
    if (monitor_.isCancelled()) return cancelledResult();

    TransferResult result;
    result.notice = TransferWords::attributesLost(withoutAttributes_);
    result.steps = std::move(steps_);
    result.failures = std::move(failures_);
    result.resultURLs = std::move(results_);
    monitor_.enter(TransferState::finished);
    return result;
}

void TransferRun::trashOne(const URL& item) {
    try {
        const URL trashed = FileOps::trash(item);
        steps_.push_back(Step::move(item, trashed));
        results_.push_back(trashed);
        moved_.push_back(item);
    } catch (const std::exception& error) {
        fail(item, error.what());
    }
}

void TransferRun::transfer(const URL& source, const URL& folder) {
    try {
        const auto facts = files_->attributes(source, Links::keep);
        if (facts && isInsideItself(source, *facts)) {
            return fail(source, "Can’t put " + Text::quoted(source.name()) + " inside itself.");
        }
        if (!facts) return fail(source, Text::quoted(source.name()) + " no longer exists.");
        transferChecked(source, *facts, folder);
    } catch (const FileOpError& error) {
        fail(source, error.what());
    } catch (const std::system_error& error) {
        failCopying(source, error.code().value());
    } catch (const std::exception& error) {
        fail(source, FileOps::friendly(error, verb(source)));
    }
}

void TransferRun::transferChecked(const URL& source, const FileAttributes& facts,
                                  const URL& folder) {
    URL target = folder.appending(source.name());
    std::optional<Replaced> replaced;
    const auto home = identityOf(source.parent(), lastSource_);
    const auto there = identityOf(folder, lastTarget_);
    if (!there) throw std::system_error(ENOENT, std::generic_category(), "stat");
    if (waiting_.hasTarget(target)) copyWaiting();
    if (home == there) {
        if (job_.kind() == TransferKind::move) {
            addResult(target);
            return;
        }
        target = freeName([&] { return FileOps::copyName(folder.appending(source.name())); });
    } else if (const auto existing = files_->attributes(target, Links::keep)) {
        const auto free = resolve(source, facts, target, *existing, replaced);
        if (!free) return;
        target = *free;
    }
    try {
        if (!place(source, facts, target, !replaced) && replaced) putBack(*replaced);
    } catch (const std::exception&) {
        if (replaced) putBack(*replaced);
        throw;
    }
}

std::optional<URL> TransferRun::resolve(const URL& source, const FileAttributes& facts,
                                        const URL& target, const FileAttributes& existing,
                                        std::optional<Replaced>& replaced) {
    const bool bothFolders =
        facts.type == FileType::directory && existing.type == FileType::directory;
    const ConflictAction action = decide(source, facts, target, existing).action;
    if (monitor_.isCancelled()) return std::nullopt;
    switch (action) {
        case ConflictAction::replace:
            if (replace(source, target, replaced)) return target;
            return std::nullopt;
        case ConflictAction::skip:
            return std::nullopt;
        case ConflictAction::merge:
            // A decision remembered from the folders of another conflict.
            if (!bothFolders) break;
            merge(source, target);
            return std::nullopt;
        case ConflictAction::stop:
            monitor_.cancel();
            return std::nullopt;
        case ConflictAction::keepBoth:
            break;
    }
    return freeName([&] { return FileOps::uniqueURL(target); });
}

URL TransferRun::freeName(const std::function<URL()>& propose) {
    URL name = propose();
    if (!waiting_.hasTarget(name)) return name;
    copyWaiting();
    return propose();
}

bool TransferRun::replace(const URL& source, const URL& target, std::optional<Replaced>& replaced) {
    const URL inside = files_->resolved(source.parent()).value_or(source.parent());
    if (inside.isInside(files_->resolved(target).value_or(target)) || inside.isInside(target)) {
        fail(source, "Can’t replace " + Text::quoted(target.name()) +
                         " because it contains the item being moved.");
        return false;
    }
    const URL trashed = FileOps::trash(target);
    replaced = Replaced{target, trashed, steps_.size()};
    steps_.push_back(Step::move(target, trashed));
    replaced_.push_back(target);
    return true;
}

/// Nothing came in its place after all. When it cannot be put back it stays in the Trash, from
/// where undo brings it back.
void TransferRun::putBack(const Replaced& replaced) {
    try {
        FileOps::move(replaced.trashed, replaced.original);
    } catch (const std::exception&) {
        return;
    }
    if (const auto& trash = Platform::current().trash) trash->forget(replaced.trashed);
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(replaced.step));
    std::erase(replaced_, replaced.original);
}

ConflictDecision TransferRun::decide(const URL& source, const FileAttributes& facts,
                                     const URL& target, const FileAttributes& existing) {
    TransferConflict conflict;
    conflict.bothFolders =
        facts.type == FileType::directory && existing.type == FileType::directory;
    auto& remembered = conflict.bothFolders ? rememberedFolderDecision_ : rememberedFileDecision_;
    if (remembered) return *remembered;
    if (!job_.resolveConflict) return {ConflictAction::keepBoth, false};

    conflict.source = source;
    conflict.existing = target;
    conflict.sourceModified = facts.modified;
    conflict.existingModified = existing.modified;
    if (facts.type != FileType::directory) conflict.sourceSize = facts.size;
    if (existing.type != FileType::directory) conflict.existingSize = existing.size;
    monitor_.enter(TransferState::waiting);
    const ConflictDecision decision = job_.resolveConflict(conflict);
    monitor_.enter(TransferState::running);
    if (decision.applyToAll) remembered = decision;
    return decision;
}

void TransferRun::merge(const URL& source, const URL& folder) {
    copyWaiting();
    ++mergeDepth_;
    for (const std::string& name : childNames(*files_, source)) {
        if (!monitor_.proceed()) break;
        transfer(source.appending(name), folder);
        monitor_.emit(false);
    }
    copyWaiting();
    --mergeDepth_;
    if (monitor_.isCancelled()) return;
    addResult(folder);
    if (job_.kind() != TransferKind::move) return;
    if (pending_.empty()) {
        removeIfEmpty(source);
    } else {
        pending_.push_back({source, folder, true, false, 0});
    }
}

bool TransferRun::place(const URL& source, const FileAttributes& facts, URL target, bool mayWait) {
    if (job_.kind() == TransferKind::move && rename(source, facts.type, target)) return true;
    if (!mayWait || !mayBatch_ || !TransferBatch::takes(facts)) {
        copyWaiting();
        return copy(source, std::move(target));
    }
    if (!waiting_.hasRoomFor(target, facts)) copyWaiting();
    waiting_.add(source, target, facts);
    return true;
}

void TransferRun::copyWaiting() {
    if (waiting_.isEmpty() || monitor_.isCancelled()) return;
    TransferBatch batch = std::exchange(waiting_, {});
    const URL& folder = batch.folder();
    addToJournal(folder);
    URL unused;
    lost_.clear();
    try {
        const auto outcome = copying_->copyFiles(batch.files(), folder, watch(unused));
        if (outcome == FileCopy::Outcome::stopped) monitor_.cancel();
    } catch (const std::system_error& error) {
        for (FileCopy::FileOrder& file : batch.files()) file.errnum = error.code().value();
    }
    const std::unordered_set<URL> lost(lost_.begin(), lost_.end());
    for (const FileCopy::FileOrder& file : batch.files()) {
        if (file.errnum == 0) {
            if (lost.contains(file.from)) withoutAttributes_.push_back(file.from);
            copied(file.from, folder.appending(file.name), FileCopy::Outcome::complete);
        } else if (file.errnum == EEXIST && !monitor_.isCancelled()) {
            // Somebody was faster, or the disk takes two names for one: now it is asked about.
            mayBatch_ = false;
            transfer(file.from, folder);
            mayBatch_ = true;
        } else if (file.errnum != ECANCELED) {
            failCopying(file.from, file.errnum);
        }
    }
}

/// False when that is another disk.
bool TransferRun::rename(const URL& source, FileType type, URL& target) {
    for (;;) {
        try {
            files_->move(source, target);
            FileTags::moved(source, target);
            steps_.push_back(Step::move(source, target));
            addResult(target);
            moved_.push_back(source);
            AddedDate::note(target, type);
            return true;
        } catch (const std::system_error& error) {
            if (error.code().value() == EXDEV) return false;
            if (error.code().value() != EEXIST) throw;
        }
        target = FileOps::uniqueURL(target);
    }
}

bool TransferRun::copy(const URL& source, URL target) {
    addToJournal(target.parent());
    lost_.clear();
    const FileCopy::Outcome outcome = copying_->copy(source, target, watch(target));
    if (outcome == FileCopy::Outcome::stopped) {
        monitor_.cancel();
        return false;
    }
    std::ranges::move(lost_, std::back_inserter(withoutAttributes_));
    copied(source, target, outcome);
    return true;
}

void TransferRun::copied(const URL& source, const URL& target, FileCopy::Outcome outcome) {
    createdForCleanup_.push_back({target, source});
    if (outcome == FileCopy::Outcome::partial || job_.kind() == TransferKind::copy)
        FileTags::copied(source, target);
    if (job_.kind() == TransferKind::copy || outcome == FileCopy::Outcome::partial) {
        // A move that did not get everything keeps its original, so what there is is a copy.
        steps_.push_back(Step::create(target));
        addResult(target);
    } else {
        if (pending_.empty()) pendingSince_ = steadyNow();
        pending_.push_back(
            {source, target, false, mergeDepth_ == 0, createdForCleanup_.size() - 1});
    }
}

FileCopy::Watch TransferRun::watch(URL& target) {
    FileCopy::Watch watch;
    watch.progress = [this](std::int64_t bytes, std::int64_t items) {
        monitor_.add(bytes, items);
        if (std::this_thread::get_id() == thread_) monitor_.emit(false);
        if (job_.afterEachFile) {
            for (std::int64_t i = 0; i < items; ++i) job_.afterEachFile();
        }
        return monitor_.proceed();
    };
    watch.failed = [this](const URL& item, int errnum) { failCopying(item, errnum); };
    watch.attributesLost = [this](const URL& item) { lost_.push_back(item); };
    watch.nextName = [&target](const URL& taken) {
        target = FileOps::uniqueURL(taken);
        return target;
    };
    watch.record = record_;
    watch.temporaryName = temporaryPrefix_ + "-" + std::to_string(++temporaryCount_);
    watch.reportsEachItem = static_cast<bool>(job_.afterEachFile);
    watch.writesSteadily = needsFlush_;
    return watch;
}

/// The file that another system leaves everywhere does not count.
void TransferRun::removeIfEmpty(const URL& folder) {
    constexpr std::string_view traces = ".DS_Store";
    const auto names = childNames(*files_, folder);
    if (names.size() > 1 || (names.size() == 1 && names[0] != traces)) return;
    if (!names.empty()) files_->removeFile(folder.appending(traces));
    files_->removeFolder(folder);
}

void TransferRun::addResult(const URL& target) {
    if (mergeDepth_ == 0) results_.push_back(target);
}

void TransferRun::lookAtDestination() {
    const auto& volumes = Platform::current().volumes;
    const URL folder = files_->resolved(*job_.destination()).value_or(*job_.destination());
    for (URL above = folder;; above = above.parent()) {
        if (const auto facts = files_->attributes(above, Links::keep))
            around_.push_back(identity(*facts));
        if (above.isRoot()) break;
    }
    const auto mount = volumes ? volumes->mountHolding(folder) : std::nullopt;
    needsFlush_ = mount && (mount->isRemovable || mount->isNetwork);
}

std::optional<TransferRun::Identity> TransferRun::identityOf(const URL& folder,
                                                             KnownFolder& known) const {
    if (!known.identity || known.url != folder) {
        const auto facts = files_->attributes(folder, Links::follow);
        known = {folder, facts ? std::optional(identity(*facts)) : std::nullopt};
    }
    return known.identity;
}

bool TransferRun::isInsideItself(const URL& source, const FileAttributes& facts) const {
    if (facts.type != FileType::directory) return false;
    return job_.destination()->isInside(source) ||
           std::ranges::find(around_, identity(facts)) != around_.end();
}

/// The journal only tidies up after a crash, so a copy is made without it, too.
void TransferRun::addToJournal(const URL& folder) {
    if (!journal_) {
        temporaryPrefix_ = ChangeJournal::temporaryName(ChangeJournal::copying);
        journal_ = ChangeJournal::ofLeftovers(temporaryPrefix_);
    }
    try {
        journal_->addFolder(folder);
    } catch (const std::system_error&) {
    }
}

void TransferRun::fail(const URL& source, std::string sentence) {
    TransferFailure failure;
    failure.source = source;
    if (job_.kind() != TransferKind::trash) failure.destinationFolder = job_.destination();
    failure.message = std::move(sentence);
    failures_.push_back(std::move(failure));
}

void TransferRun::failCopying(const URL& source, int errnum) {
    if (errnum == FileCopy::changedMeanwhile) {
        fail(source, TransferWords::changed(verb(source)));
    } else if (errnum == FileCopy::notCopyable) {
        fail(source, TransferWords::notCopyable(verb(source)));
    } else {
        fail(source, FileOps::friendly(errnum, verb(source)));
    }
}

std::string TransferRun::verb(const URL& source) const {
    return (job_.kind() == TransferKind::move ? "move " : "copy ") + Text::quoted(source.name());
}

TransferResult TransferRun::cancelledResult() {
    cleanUpAfterCancel();
    TransferResult result;
    result.cancelled = true;
    result.failures = std::move(failures_);
    result.notice = TransferWords::alreadyDone(job_.kind(), job_.destination(), moved_, replaced_);
    monitor_.enter(TransferState::cancelled);
    return result;
}

void TransferRun::cleanUpAfterCancel() {
    std::ranges::reverse(createdForCleanup_);
    for (const Created& created : std::exchange(createdForCleanup_, {})) {
        // When the original has gone meanwhile, the copy is all there is.
        if (!created.mayGo || !files_->attributes(created.source, Links::keep)) continue;
        try {
            copying_->remove(created.url);
        } catch (const std::system_error& error) {
            if (error.code().value() == ENOENT) continue;
            fail(created.url, FileOps::friendly(error.code().value(),
                                                "remove " + Text::quoted(created.url.name())));
        }
    }
    steps_.clear();
}

}  // namespace tarn
