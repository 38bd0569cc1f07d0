#include "Tarn/ui/transfers/TransferRow.h"

#include <algorithm>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QToolButton>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/SpeedGraph.h"
#include "Tarn/ui/transfers/TransferText.h"

namespace tarn {
namespace {

constexpr std::size_t mostFailures = 20;

QLabel* sentence(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    label->setFont(Fonts::small());
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

}  // namespace

TransferRow::TransferRow(TransferList& list, TransferModel& transfer, QWidget* parent)
    : JobRow(transfer.title(), TransferText::symbol(transfer.kind()), parent),
      list_(list),
      transfer_(transfer),
      graph_(new SpeedGraph(this)) {
    graph_->hide();
    graph_->lower();
    clock_.start();
    connect(&list, &TransferList::transferChanged, this, [this](TransferModel* changed) {
        if (changed == &transfer_) transferChanged();
    });
    connect(&pauseButton(), &QToolButton::clicked, this, [this] {
        if (!transfer_.hasStarted())
            list_.startNow(transfer_);
        else if (transfer_.progress().state == TransferState::paused)
            transfer_.resume();
        else
            transfer_.pause();
    });
    connect(&stopButton(), &QToolButton::clicked, this, [this] {
        if (transfer_.isActive())
            transfer_.cancel();
        else
            list_.remove(transfer_);
    });
    refresh();
}

void TransferRow::enterEvent(QEnterEvent* event) {
    graph_->setVisible(transfer_.hasStarted());
    JobRow::enterEvent(event);
}

void TransferRow::leaveEvent(QEvent* event) {
    graph_->hide();
    JobRow::leaveEvent(event);
}

void TransferRow::resizeEvent(QResizeEvent* event) {
    graph_->setGeometry(rect());
    JobRow::resizeEvent(event);
}

void TransferRow::transferChanged() {
    if (transfer_.progress().state != shownState_ || !transfer_.isActive())
        refresh();
    else
        refreshSoon();
}

void TransferRow::showState() {
    const TransferProgress& progress = transfer_.progress();
    shownState_ = progress.state;
    const bool isQueued = transfer_.isActive() && !transfer_.hasStarted();
    std::optional<double> left;
    if (progress.state == TransferState::running)
        left = timeLeft_.update(progress.secondsRemaining(),
                                static_cast<double>(clock_.elapsed()) / 1000);
    else
        timeLeft_.reset();
    if (progress.state == TransferState::running)
        graph_->add(progress.fraction(), progress.bytesPerSecond);
    setFraction(progress.fraction());
    setDetail(TransferText::detail(progress, left, isQueued));
    if (isQueued)
        setPause("play", tr("Start Now"));
    else if (progress.state == TransferState::paused)
        setPause("play", tr("Resume"));
    else
        setPause("pause", tr("Pause"));
    pauseButton().setVisible(transfer_.isActive() && progress.state != TransferState::waiting);
    setStop(transfer_.isActive() ? tr("Stop") : tr("Dismiss"));
    bar().setVisible(transfer_.isActive());
    if (!transfer_.isActive()) showFailures();
}

void TransferRow::showFailures() {
    if (failures_) return;
    failures_ = new QWidget;
    auto* lines = new QVBoxLayout(failures_);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Metrics::space4);
    if (!transfer_.notice().empty()) lines->addWidget(sentence(coreSentence(transfer_.notice())));
    const auto& failures = transfer_.failures();
    detailLabel().setVisible(failures.empty());
    if (!failures.empty()) {
        auto* heading = new QHBoxLayout;
        heading->setSpacing(Metrics::space6);
        auto* mark = new SymbolView(Metrics::iconSmall, Icons::Tint::danger);
        mark->setSymbol("exclamationmark.triangle");
        auto* label = new QLabel(TransferText::failures(transfer_.kind(), failures.size()));
        label->setFont(Fonts::semibold(Fonts::small()));
        heading->addWidget(mark);
        heading->addWidget(label, 1);
        lines->addLayout(heading);
    }
    for (std::size_t i = 0; i < std::min(failures.size(), mostFailures); ++i)
        lines->addWidget(sentence(coreSentence(failures[i].message)));
    if (failures.size() > mostFailures)
        lines->addWidget(sentence(tr("and %1 more").arg(failures.size() - mostFailures)));
    this->lines().addWidget(failures_);
}

}  // namespace tarn
