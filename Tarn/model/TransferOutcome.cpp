#include "Tarn/model/TransferOutcome.h"

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TransferModel.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn::TransferOutcome {
namespace {

std::string countOf(std::size_t count) {
    return Format::count(static_cast<std::int64_t>(count), "item");
}

std::string doneSentence(const TransferModel& transfer, std::size_t count) {
    const std::vector<URL>& sources = transfer.sources();
    const std::string what =
        count == 1 && sources.size() == 1 ? Text::quoted(sources.front().name()) : countOf(count);
    const std::string place =
        Text::quoted(Paths::displayName(transfer.destination().value_or(URL())));
    switch (transfer.kind()) {
        case TransferKind::copy:
            return "Copied " + what + " to " + place;
        case TransferKind::move:
            return "Moved " + what + " to " + place;
        case TransferKind::trash:
            return "Moved " + what + " to the Trash";
    }
    return what;
}

std::string failureSentence(const TransferModel& transfer, const TransferResult& result) {
    if (result.failures.size() == 1) return result.failures.front().message;
    return countOf(result.failures.size()) +
           (transfer.kind() == TransferKind::copy ? " couldn’t be copied." : " couldn’t be moved.");
}

}  // namespace

bool isFailure(const TransferResult& result) {
    return !result.failures.empty() || !result.notice.empty();
}

QString sentence(const TransferModel& transfer, const TransferResult& result) {
    if (!result.failures.empty()) return displayText(failureSentence(transfer, result));
    if (!result.notice.empty()) return displayText(result.notice);
    return displayText(doneSentence(transfer, result.resultURLs.size()));
}

}  // namespace tarn::TransferOutcome
