#include "cli/ItemChanges.h"

#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/ops/Subject.h"
#include "TarnCore/platform/Platform.h"
#include "cli/Arguments.h"
#include "cli/Interrupt.h"
#include "cli/Session.h"

namespace tarn::cli::ItemChanges {
namespace {

constexpr Option allOptions[] = {json, CommonOptions::paths, CommonOptions::null};

/// Byte for byte, except to a terminal, where a name could mislead.
void print(const Arguments& arguments, Session& session, const std::vector<URL>& urls) {
    const bool null = arguments.has("null");
    const bool escapes = session.terminal().isTerminal() && !null && !arguments.has("paths");
    for (const URL& url : urls) {
        if (escapes)
            session.out() << Terminal::escaped(url.path());
        else
            session.out() << url.path();
        session.out() << (null ? '\0' : '\n');
    }
}

}  // namespace

std::span<const Option> options() { return allOptions; }

void report(const Arguments& arguments, Session& session, const Done& done) {
    HistoryEntry entry;
    entry.date = Platform::current().clock->now();
    entry.kind = done.kind;
    entry.title = done.title;
    entry.steps = done.steps;
    entry.fileCount = done.fileCount;
    if (!done.steps.empty()) OperationHistory::append(OperationHistory::defaultFile(), entry);
    if (arguments.has("json"))
        session.out() << JSONText::pretty(JSON(entry)) << '\n';
    else
        print(arguments, session, done.results);
}

int toEach(const Arguments& arguments, Session& session, OperationKind kind, Title title,
           const std::function<One(const URL&, const CancelToken&)>& change) {
    const CancelToken token;
    const Interrupt::Cancels cancels(token);
    Done done{kind, {}, {}, 0, {}};
    std::vector<URL> items;
    std::size_t failures = 0;
    for (const std::string_view argument : arguments.rest()) {
        if (token.isCancelled()) break;
        const URL url = session.url(argument);
        try {
            One one = change(url, token);
            items.push_back(url);
            done.results.push_back(std::move(one.result));
            done.steps.insert(done.steps.end(), one.steps.begin(), one.steps.end());
        } catch (const Error& error) {
            if (token.isCancelled()) break;
            Session::say(error.what());
            ++failures;
        }
    }
    done.fileCount = static_cast<std::int64_t>(items.size());
    if (!items.empty()) {
        done.title = std::string(title.before) + Subject::of(items) + std::string(title.behind);
        report(arguments, session, done);
    }
    if (token.isCancelled()) return ExitStatus::cancelled;
    if (failures == 0) return ExitStatus::done;
    return items.empty() ? ExitStatus::failed : ExitStatus::partlyFailed;
}

}  // namespace tarn::cli::ItemChanges
