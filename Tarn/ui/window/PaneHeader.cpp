#include "Tarn/ui/window/PaneHeader.h"

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QToolButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

PaneHeader::PaneHeader(PaneModel& pane, QWidget* parent)
    : QWidget(parent),
      pane_(pane),
      symbol_(new SymbolView(Metrics::iconSmall, Icons::Tint::secondary)),
      title_(new ElidedLabel),
      close_(new QToolButton) {
    close_->setAutoRaise(true);
    close_->setIcon(Icons::symbol("xmark", Icons::Tint::secondary));
    close_->setIconSize({Metrics::space12, Metrics::space12});
    close_->setFixedSize(Metrics::smallestTarget, Metrics::smallestTarget);
    close_->setFocusPolicy(Qt::TabFocus);
    close_->setToolTip(tr("Close This Pane"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(
        Margins::directed(Metrics::space12, Metrics::space4, Metrics::space4, Metrics::space2));
    row->setSpacing(Metrics::space8);
    row->addWidget(symbol_);
    row->addWidget(title_, 1);
    row->addWidget(close_);
    connect(close_, &QToolButton::clicked, this, &PaneHeader::closePressed);
    connect(&pane, &PaneModel::locationChanged, this, &PaneHeader::showPlace);
    showPlace();
}

void PaneHeader::showPlace() {
    const Location& location = pane_.location();
    const QString title = placeText(location, pane_.title());
    symbol_->setSymbol(location.symbol());
    title_->setText(title);
    close_->setAccessibleName(tr("Close Pane “%1”").arg(title));
}

void PaneHeader::setActive(bool active) {
    if (active == isActive_) return;
    isActive_ = active;
    title_->setSecondary(!active);
    update();
}

void PaneHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    painter.fillRect(rect(), colors.base);
    const int thickness = isActive_ ? Metrics::focusRing : Metrics::hairline;
    painter.fillRect(0, 0, width(), thickness, isActive_ ? colors.accent : colors.separator);
}

}  // namespace tarn
