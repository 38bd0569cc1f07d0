// How the originals of a move to another disk go, and how copies are written out.
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TransferRun.h"
#include "TarnCore/ops/TransferWords.h"

namespace tarn {

void TransferRun::removePending() {
    if (pending_.empty()) return;
    const Flushed flushed = flush();
    if (flushed == Flushed::cancelled) return;
    for (const PendingRemoval& pending : std::exchange(pending_, {})) {
        if (flushed == Flushed::yes) {
            removeOriginal(pending);
        } else if (!pending.isEmptyFolder) {
            fail(pending.source, "Copied " + Text::quoted(pending.source.name()) +
                                     " but kept the original, because the copy couldn’t be " +
                                     "written out.");
            steps_.push_back(Step::create(pending.target));
            if (pending.isTopLevel) results_.push_back(pending.target);
        }
    }
}

void TransferRun::removeOriginal(const PendingRemoval& pending) {
    const URL& source = pending.source;
    // From here on the copy may be all there is.
    if (!pending.isEmptyFolder) createdForCleanup_[pending.created].mayGo = false;
    try {
        if (pending.isEmptyFolder) return removeIfEmpty(source);
        copying_->removeCopied(source, *record_);
        FileTags::moved(source, pending.target);
        steps_.push_back(Step::move(source, pending.target));
        moved_.push_back(source);
    } catch (const std::system_error& error) {
        const int errnum = error.code().value();
        fail(source,
             "Copied " + Text::quoted(source.name()) + " but couldn’t remove the original. " +
                 (errnum == FileCopy::changedMeanwhile ? TransferWords::changed("remove it")
                                                       : FileOps::friendly(errnum, "remove it")));
    }
    if (pending.isTopLevel) results_.push_back(pending.target);
}

/// On a thread of its own: it may take minutes, in which the job can be paused and cancelled.
TransferRun::Flushed TransferRun::flush() {
    if (!flushing_) flushing_ = std::make_unique<SerialQueue>("tarn.flush");
    isFlushed_ = false;
    flushing_->run([this] {
        flushWorked_ = copying_->flush(*job_.destination());
        isFlushed_ = true;
        monitor_.wake();
    });
    if (!monitor_.waitUntil([this] { return isFlushed_.load(); })) return Flushed::cancelled;
    return flushWorked_ ? Flushed::yes : Flushed::no;
}

void TransferRun::finishWriting() {
    if (results_.empty()) return;
    monitor_.setFinishingWriting(true);
    const Flushed flushed = flush();
    monitor_.setFinishingWriting(false);
    if (flushed == Flushed::no) {
        fail(*job_.destination(), TransferWords::notWrittenOut(*job_.destination()));
    }
}

}  // namespace tarn
