#include "Tarn/model/TerminalCalls.h"

#include <optional>
#include <string>
#include <utility>

#include <QtCore/QSocketNotifier>

#include "Tarn/model/HistoryModel.h"

namespace tarn {

TerminalCalls::TerminalCalls(HistoryModel& history, QObject* parent)
    : QObject(parent), history_(history), socket_(WindowSocket::listen()) {
    if (!socket_) return;
    notifier_ = std::make_unique<QSocketNotifier>(socket_->descriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &TerminalCalls::answerNext);
}

TerminalCalls::~TerminalCalls() = default;

void TerminalCalls::answerNext() {
    std::optional<WindowSocket::Call> next = socket_->accept();
    if (!next) return;
    const auto call = std::make_shared<WindowSocket::Call>(*std::move(next));
    if (call->request() != "redo") return call->answer("unknown");
    history_.redo([call](const HistoryModel::Outcome& outcome) {
        if (!outcome.failure.isEmpty())
            call->answer("failed\n" + outcome.failure.toStdString());
        else if (outcome.entry)
            call->answer("done\n" + outcome.entry->title);
        else
            call->answer("nothing");
    });
}

}  // namespace tarn
