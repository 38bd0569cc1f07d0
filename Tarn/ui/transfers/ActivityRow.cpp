#include "Tarn/ui/transfers/ActivityRow.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QToolButton>

#include "Tarn/model/ActivityTask.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/TransferRow.h"

namespace tarn {
namespace {

constexpr int barSteps = 1000;

QToolButton* makeButton(const char* symbol) {
    auto* button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol(symbol));
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    button->setFixedSize(Metrics::rowCompact, Metrics::rowCompact);
    return button;
}

}  // namespace

ActivityRow::ActivityRow(ActivityTask& task, QWidget* parent)
    : QWidget(parent),
      task_(&task),
      pause_(makeButton("pause")),
      stop_(makeButton("xmark")),
      bar_(new QProgressBar),
      detail_(new TabularLabel) {
    auto* symbol = new SymbolView(Metrics::iconRow, Icons::Tint::secondary);
    symbol->setSymbol(task.symbol());
    bar_->setTextVisible(false);
    bar_->setFixedHeight(Metrics::space8);
    bar_->setAccessibleName(task.title());
    auto* column = new QVBoxLayout;
    column->setSpacing(Metrics::space4);
    column->addWidget(new ElidedLabel(task.title()));
    column->addWidget(bar_);
    column->addWidget(detail_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Metrics::space16, Metrics::space8, Metrics::space8, Metrics::space8);
    row->setSpacing(Metrics::space12);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(column, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    buttons->addWidget(pause_);
    buttons->addWidget(stop_);
    row->addLayout(buttons);
    row->setAlignment(buttons, Qt::AlignTop);
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &ActivityRow::refresh);
    connect(&task, &ActivityTask::changed, this, &ActivityRow::refreshSoon);
    connect(pause_, &QToolButton::clicked, this, [this] {
        if (!task_) return;
        if (task_->isPaused())
            task_->resume();
        else
            task_->pause();
        refresh();
    });
    connect(stop_, &QToolButton::clicked, this, [this] {
        if (task_) task_->stop();
        refresh();
    });
    stop_->setToolTip(tr("Stop"));
    stop_->setAccessibleName(tr("Stop: %1").arg(task.title()));
    refresh();
}

void ActivityRow::refreshSoon() {
    if (!sinceShown_.isValid() || sinceShown_.elapsed() >= TransferRow::calm)
        refresh();
    else if (!timer_.isActive())
        timer_.start(static_cast<int>(TransferRow::calm - sinceShown_.elapsed()));
}

void ActivityRow::refresh() {
    timer_.stop();
    sinceShown_.start();
    if (!task_) return;
    const auto fraction = task_->fraction();
    bar_->setRange(0, fraction ? barSteps : 0);
    bar_->setValue(static_cast<int>(fraction.value_or(0) * barSteps));
    QString detail = task_->isStopped()  ? tr("Stopping…")
                     : task_->isPaused() ? tr("Paused")
                                         : task_->power().value_or(task_->detail());
    if (detail.isEmpty()) detail = tr("Waiting…");
    detail_->setText(detail);
    pause_->setIcon(Icons::symbol(task_->isPaused() ? "play" : "pause"));
    const QString pause = task_->isPaused() ? tr("Resume") : tr("Pause");
    pause_->setToolTip(pause);
    pause_->setAccessibleName(tr("%1: %2").arg(pause, task_->title()));
    pause_->setVisible(task_->canPause());
    pause_->setEnabled(!task_->isStopped());
    stop_->setEnabled(!task_->isStopped());
}

}  // namespace tarn
