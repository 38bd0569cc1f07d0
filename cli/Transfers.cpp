#include "cli/Transfers.h"

#include <chrono>
#include <condition_variable>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/ops/TransferJob.h"
#include "TarnCore/platform/Platform.h"
#include "cli/Arguments.h"
#include "cli/Changes.h"
#include "cli/ConflictQuestion.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli::Transfers {
namespace {

constexpr Option transferOptions[] = {
    {.name = "on-conflict",
     .value = "ask|replace|skip|keep-both|merge|stop",
     .help = "What happens when a name is taken: by default one is asked on a terminal, and both "
             "are kept elsewhere; “merge” merges folders and keeps both files; what is replaced "
             "goes to the Trash"},
    CommonOptions::json,
    CommonOptions::paths,
    CommonOptions::null,
};

enum class Conflicts { ask, replace, skip, keepBoth, merge, stop };

Conflicts conflicts(const Arguments& arguments) {
    const auto given = arguments.value("on-conflict");
    if (!given) return ConflictQuestion::canAsk() ? Conflicts::ask : Conflicts::keepBoth;
    if (*given == "replace") return Conflicts::replace;
    if (*given == "skip") return Conflicts::skip;
    if (*given == "keep-both") return Conflicts::keepBoth;
    if (*given == "merge") return Conflicts::merge;
    if (*given == "stop") return Conflicts::stop;
    if (!ConflictQuestion::canAsk()) {
        throw UsageError("With “--on-conflict=ask” there must be a terminal to ask on.");
    }
    return Conflicts::ask;
}

ConflictDecision fixedDecision(Conflicts conflicts, bool bothFolders) {
    switch (conflicts) {
        case Conflicts::replace:
            return {ConflictAction::replace, true};
        case Conflicts::skip:
            return {ConflictAction::skip, true};
        case Conflicts::stop:
            return {ConflictAction::stop, true};
        case Conflicts::merge:
            if (bothFolders) return {ConflictAction::merge, true};
            break;
        case Conflicts::ask:
        case Conflicts::keepBoth:
            break;
    }
    return {ConflictAction::keepBoth, true};
}

/// What the job's thread and the main thread tell each other.
struct Shared {
    TransferProgress progress;
    std::optional<TransferConflict> question;
    std::optional<ConflictDecision> answer;
    std::optional<TransferResult> result;
    std::optional<TransferConflict> stoppedAt;
};

std::string line(TransferKind kind, const TransferProgress& progress) {
    if (progress.isFinishingWriting) return "Writing everything out…";
    if (progress.state == TransferState::scanning) return "Measuring…";
    std::string text = kind == TransferKind::copy ? "Copied " : "Moved ";
    text += Format::bytes(progress.doneBytes) + " of " + Format::bytes(progress.totalBytes);
    const std::string speed = Format::speed(progress.bytesPerSecond);
    if (!speed.empty()) text += ", " + speed;
    if (const auto left = progress.secondsRemaining())
        text += ", " + Text::withFirstLowered(Format::timeRemaining(left));
    return text;
}

class Transfer {
public:
    Transfer(TransferKind kind, std::vector<URL> sources, URL destination, Conflicts conflicts,
             Session& session)
        : job_(kind, std::move(sources), std::move(destination)),
          conflicts_(conflicts),
          session_(session),
          progress_(!session.quiet()) {
        job_.onProgress = [this](const TransferProgress& progress) {
            shared_.lock()->progress = progress;
        };
        job_.resolveConflict = [this](const TransferConflict& conflict) {
            return resolve(conflict);
        };
        job_.onFinish = [this](const TransferResult& result) {
            shared_.lock()->result = result;
            changed_.notify_all();
        };
    }

    TransferResult run(const CancelToken& token) {
        job_.start();
        auto shared = shared_.lock();
        while (!shared->result) {
            changed_.wait_for(shared.mutex(), std::chrono::milliseconds(50));
            if (token.isCancelled()) job_.cancel();
            if (shared->question) {
                const TransferConflict question = std::move(*shared->question);
                shared->question.reset();
                shared.mutex().unlock();
                const ConflictDecision answer = ask(question, token);
                shared.mutex().lock();
                shared->answer = answer;
                changed_.notify_all();
            } else {
                // A terminal that is stopped must not stop the job.
                const TransferProgress progress = shared->progress;
                shared.mutex().unlock();
                show(progress);
                shared.mutex().lock();
            }
        }
        progress_.clear();
        return *shared->result;
    }

    const TransferJob& job() const { return job_; }
    /// The taken name that ended the transfer, when it was one.
    std::optional<TransferConflict> stoppedAt() const { return shared_.lock()->stoppedAt; }

private:
    /// On the job's thread.
    ConflictDecision resolve(const TransferConflict& conflict) {
        auto shared = shared_.lock();
        ConflictDecision decision = fixedDecision(conflicts_, conflict.bothFolders);
        if (conflicts_ == Conflicts::ask) {
            shared->question = conflict;
            changed_.notify_all();
            changed_.wait(shared.mutex(), [&] { return shared->answer.has_value(); });
            decision = *shared->answer;
            shared->answer.reset();
        }
        if (decision.action == ConflictAction::stop) shared->stoppedAt = conflict;
        return decision;
    }
    ConflictDecision ask(const TransferConflict& conflict, const CancelToken& token) {
        progress_.clear();
        useLocale();
        return ConflictQuestion::ask(conflict, token);
    }
    void show(const TransferProgress& progress) {
        if (!progress_.isDue()) return;
        useLocale();
        progress_.show(line(job_.kind(), progress));
    }
    void useLocale() {
        if (!std::exchange(usesLocale_, true)) session_.useLocaleForFormats();
    }

    TransferJob job_;
    Conflicts conflicts_;
    Session& session_;
    Progress progress_;
    bool usesLocale_ = false;
    Guarded<Shared> shared_;
    std::condition_variable changed_;
};

void printResults(const TransferResult& result, const Arguments& arguments, Session& session) {
    if (arguments.has("json")) {
        JSONWriter json(session.out().buffer());
        json.beginArray();
        for (const URL& url : result.resultURLs) json.url(url);
        json.endArray();
        session.out() << '\n';
    } else {
        const bool isExact =
            arguments.has("paths") || arguments.has("null") || !session.terminal().isTerminal();
        const char end = arguments.has("null") ? '\0' : '\n';
        for (const URL& url : result.resultURLs) {
            session.out() << (isExact ? url.path() : Terminal::escaped(url.path())) << end;
        }
    }
    session.out().flush();
}

void record(const TransferJob& job, const TransferResult& result) {
    const auto kind = job.kind() == TransferKind::copy ? OperationKind::copy : OperationKind::move;
    Changes::record(kind, job.title(), result.steps,
                    static_cast<std::int64_t>(result.resultURLs.size()));
}

int statusOf(const TransferResult& result, bool stoppedByName) {
    if (result.cancelled) return stoppedByName ? ExitStatus::failed : ExitStatus::cancelled;
    if (result.failures.empty()) return ExitStatus::done;
    return result.resultURLs.empty() ? ExitStatus::failed : ExitStatus::partlyFailed;
}

}  // namespace

std::span<const Option> options() { return transferOptions; }

int run(TransferKind kind, const Arguments& arguments, Session& session) {
    if (arguments.has("json") && (arguments.has("paths") || arguments.has("null"))) {
        throw UsageError("“--json” and “--paths” exclude each other.");
    }
    const Conflicts answer = conflicts(arguments);
    std::vector<URL> sources;
    for (const std::string_view argument : arguments.rest())
        sources.push_back(session.url(argument));
    const URL destination = std::move(sources.back());
    sources.pop_back();
    const auto facts = Platform::current().files->attributes(destination, Links::follow);
    if (!facts) throw Error("There is no folder " + Text::quoted(arguments.rest().back()) + ".");
    if (facts->type != FileType::directory) {
        throw ListingError::notAFolder(std::string(destination.name()));
    }

    const CancelToken token;
    const Interrupt::Cancels cancels(token);
    Transfer transfer(kind, std::move(sources), destination, answer, session);
    const TransferResult result = transfer.run(token);
    record(transfer.job(), result);
    for (const TransferFailure& failure : result.failures) Session::say(failure.message);
    const auto stoppedAt = transfer.stoppedAt();
    const bool stoppedByName = stoppedAt && !token.isCancelled();
    if (stoppedByName) {
        Session::say(Text::quoted(stoppedAt->existing.name()) + " already exists in " +
                     Text::quoted(stoppedAt->existing.parent().name()) +
                     ", so everything was stopped.");
    }
    if (!result.notice.empty()) Session::say(result.notice);
    printResults(result, arguments, session);
    return statusOf(result, stoppedByName);
}

}  // namespace tarn::cli::Transfers
