#include "Tarn/ui/transfers/TransferRow.h"

#include <algorithm>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QToolButton>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/TransferText.h"

namespace tarn {
namespace {

constexpr int barSteps = 1000;
constexpr std::size_t mostFailures = 20;

QToolButton* makeButton(const char* symbol) {
    auto* button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol(symbol));
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    button->setFixedSize(Metrics::rowCompact, Metrics::rowCompact);
    return button;
}

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
    : QWidget(parent),
      list_(list),
      transfer_(transfer),
      title_(new ElidedLabel(transfer.title())),
      pause_(makeButton("pause")),
      stop_(makeButton("xmark")),
      bar_(new QProgressBar),
      detail_(new TabularLabel),
      column_(new QVBoxLayout) {
    auto* symbol = new SymbolView(Metrics::iconRow, Icons::Tint::secondary);
    symbol->setSymbol(TransferText::symbol(transfer.kind()));
    bar_->setTextVisible(false);
    bar_->setFixedHeight(Metrics::space8);
    bar_->setRange(0, barSteps);
    bar_->setAccessibleName(transfer.title());

    column_->setSpacing(Metrics::space4);
    column_->addWidget(title_);
    column_->addWidget(bar_);
    column_->addWidget(detail_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Metrics::space16, Metrics::space8, Metrics::space8, Metrics::space8);
    row->setSpacing(Metrics::space12);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(column_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    buttons->addWidget(pause_);
    buttons->addWidget(stop_);
    row->addLayout(buttons);
    row->setAlignment(buttons, Qt::AlignTop);

    timer_.setSingleShot(true);
    clock_.start();
    connect(&timer_, &QTimer::timeout, this, &TransferRow::refresh);
    connect(&list, &TransferList::transferChanged, this, [this](TransferModel* changed) {
        if (changed == &transfer_) refreshSoon();
    });
    connect(pause_, &QToolButton::clicked, this, [this] {
        if (!transfer_.hasStarted())
            list_.startNow(transfer_);
        else if (transfer_.progress().state == TransferState::paused)
            transfer_.resume();
        else
            transfer_.pause();
    });
    connect(stop_, &QToolButton::clicked, this, [this] {
        if (transfer_.isActive())
            transfer_.cancel();
        else
            list_.remove(transfer_);
    });
    refresh();
}

QString TransferRow::detail() const { return detail_->text(); }

void TransferRow::refreshSoon() {
    const bool isOther = transfer_.progress().state != shownState_ || !transfer_.isActive();
    if (isOther || !sinceShown_.isValid() || sinceShown_.elapsed() >= calm)
        refresh();
    else if (!timer_.isActive())
        timer_.start(static_cast<int>(calm - sinceShown_.elapsed()));
}

void TransferRow::refresh() {
    timer_.stop();
    sinceShown_.start();
    const TransferProgress& progress = transfer_.progress();
    shownState_ = progress.state;
    const bool isQueued = transfer_.isActive() && !transfer_.hasStarted();
    std::optional<double> left;
    if (progress.state == TransferState::running)
        left = timeLeft_.update(progress.secondsRemaining(),
                                static_cast<double>(clock_.elapsed()) / 1000);
    else
        timeLeft_.reset();
    bar_->setValue(static_cast<int>(progress.fraction() * barSteps));
    detail_->setText(TransferText::detail(progress, left, isQueued));

    const bool isPaused = progress.state == TransferState::paused;
    pause_->setIcon(Icons::symbol(isQueued || isPaused ? "play" : "pause"));
    const QString pause = isQueued ? tr("Start Now") : isPaused ? tr("Resume") : tr("Pause");
    pause_->setToolTip(pause);
    pause_->setAccessibleName(tr("%1: %2").arg(pause, transfer_.title()));
    pause_->setVisible(transfer_.isActive() && progress.state != TransferState::waiting);
    const QString stop = transfer_.isActive() ? tr("Stop") : tr("Dismiss");
    stop_->setToolTip(stop);
    stop_->setAccessibleName(tr("%1: %2").arg(stop, transfer_.title()));
    bar_->setVisible(transfer_.isActive());
    if (!transfer_.isActive()) showFailures();
}

void TransferRow::showFailures() {
    if (failures_) return;
    failures_ = new QWidget;
    auto* lines = new QVBoxLayout(failures_);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Metrics::space4);
    if (!transfer_.notice().empty()) lines->addWidget(sentence(displayText(transfer_.notice())));
    const auto& failures = transfer_.failures();
    detail_->setVisible(failures.empty());
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
        lines->addWidget(sentence(displayText(failures[i].message)));
    if (failures.size() > mostFailures)
        lines->addWidget(sentence(tr("and %1 more").arg(failures.size() - mostFailures)));
    column_->addWidget(failures_);
}

}  // namespace tarn
