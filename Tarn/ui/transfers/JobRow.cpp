#include "Tarn/ui/transfers/JobRow.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QToolButton>

#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// Milliseconds between two changes of the numbers.
constexpr int calm = 250;
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

JobRow::JobRow(const QString& title, std::string_view symbol, QWidget* parent)
    : QWidget(parent),
      title_(title),
      pause_(makeButton("pause")),
      stop_(makeButton("xmark")),
      bar_(new QProgressBar),
      detail_(new TabularLabel),
      lines_(new QVBoxLayout) {
    auto* picture = new SymbolView(Metrics::iconRow, Icons::Tint::secondary);
    picture->setSymbol(symbol);
    bar_->setTextVisible(false);
    bar_->setFixedHeight(Metrics::space8);
    bar_->setAccessibleName(title);
    lines_->setSpacing(Metrics::space4);
    lines_->addWidget(new ElidedLabel(title));
    lines_->addWidget(bar_);
    lines_->addWidget(detail_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(
        Margins::directed(Metrics::space16, Metrics::space8, Metrics::space8, Metrics::space8));
    row->setSpacing(Metrics::space12);
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addLayout(lines_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    buttons->addWidget(pause_);
    buttons->addWidget(stop_);
    row->addLayout(buttons);
    row->setAlignment(buttons, Qt::AlignTop);
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &JobRow::refresh);
}

QString JobRow::detail() const { return detail_->text(); }

void JobRow::refresh() {
    timer_.stop();
    sinceShown_.start();
    showState();
}

void JobRow::refreshSoon() {
    if (!sinceShown_.isValid() || sinceShown_.elapsed() >= calm)
        refresh();
    else if (!timer_.isActive())
        timer_.start(static_cast<int>(calm - sinceShown_.elapsed()));
}

void JobRow::setFraction(std::optional<double> fraction) {
    bar_->setRange(0, fraction ? barSteps : 0);
    bar_->setValue(static_cast<int>(fraction.value_or(0) * barSteps));
}

void JobRow::setDetail(const QString& detail) { detail_->setText(detail); }

void JobRow::setPause(const char* symbol, const QString& text) {
    pause_->setIcon(Icons::symbol(symbol));
    pause_->setToolTip(text);
    pause_->setAccessibleName(tr("%1: %2").arg(text, title_));
}

void JobRow::setStop(const QString& text) {
    stop_->setToolTip(text);
    stop_->setAccessibleName(tr("%1: %2").arg(text, title_));
}

}  // namespace tarn
