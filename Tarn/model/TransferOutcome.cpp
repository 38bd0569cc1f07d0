#include "Tarn/model/TransferOutcome.h"

#include <QtCore/QCoreApplication>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TransferModel.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/Subject.h"

namespace tarn::TransferOutcome {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::TransferOutcome)
};

QString doneSentence(const TransferModel& transfer, std::size_t count) {
    const std::vector<URL>& sources = transfer.sources();
    const QString what = coreSentence(count == 1 && sources.size() == 1 ? Subject::of(sources)
                                                                        : Subject::items(count));
    const QString place = displayText(Paths::displayName(transfer.destination().value_or(URL())));
    switch (transfer.kind()) {
        case TransferKind::copy:
            return Words::tr("Copied %1 to “%2”").arg(what, place);
        case TransferKind::move:
            return Words::tr("Moved %1 to “%2”").arg(what, place);
        case TransferKind::trash:
            return Words::tr("Moved %1 to the Trash").arg(what);
    }
    return what;
}

QString failureSentence(const TransferModel& transfer, const TransferResult& result) {
    if (result.failures.size() == 1) return coreSentence(result.failures.front().message);
    const QString items = Counts::items(static_cast<std::int64_t>(result.failures.size()));
    return transfer.kind() == TransferKind::copy ? Words::tr("%1 couldn’t be copied.").arg(items)
                                                 : Words::tr("%1 couldn’t be moved.").arg(items);
}

}  // namespace

bool isFailure(const TransferResult& result) {
    return !result.failures.empty() || !result.notice.empty();
}

QString sentence(const TransferModel& transfer, const TransferResult& result) {
    if (!result.failures.empty()) return failureSentence(transfer, result);
    if (!result.notice.empty()) return coreSentence(result.notice);
    return doneSentence(transfer, result.resultURLs.size());
}

}  // namespace tarn::TransferOutcome
