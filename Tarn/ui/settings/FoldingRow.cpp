#include "Tarn/ui/settings/FoldingRow.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// In one line: a label that may wrap asks for less.
int wantedWidth(const QWidget& name) {
    if (const auto* label = qobject_cast<const QLabel*>(&name))
        return Fonts::textWidth(label->font(), label->text());
    return name.sizeHint().width();
}

int controlWidth(const QWidget& control) {
    return std::max(control.sizeHint().width(), control.minimumWidth());
}

}  // namespace

FoldingRow::FoldingRow(QWidget& name, QWidget& control, int besideFrom)
    : row_(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      name_(name),
      control_(control),
      besideFrom_(besideFrom) {
    row_->setContentsMargins(0, 0, 0, 0);
    row_->setSpacing(Metrics::space12);
    row_->addWidget(&name, 1);
    row_->addWidget(&control);
    place();
}

QSize FoldingRow::minimumSizeHint() const {
    // Folded, which is what it comes to at last.
    return {std::max(name_.minimumSizeHint().width(), controlWidth(control_)),
            QWidget::minimumSizeHint().height()};
}

bool FoldingRow::event(QEvent* event) {
    // One of the two has got another size.
    if (event->type() == QEvent::LayoutRequest) place();
    return QWidget::event(event);
}

void FoldingRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

void FoldingRow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) place();
}

void FoldingRow::place() {
    const int both = wantedWidth(name_) + Metrics::space12 + controlWidth(control_);
    const bool isBeside = width() >= std::min(both, besideFrom_);
    const auto wanted = isBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    if (row_->direction() == wanted) return;
    row_->setDirection(wanted);
    row_->setSpacing(isBeside ? Metrics::space12 : Metrics::space4);
    row_->setAlignment(&control_, isBeside ? Qt::Alignment() : Qt::Alignment(Qt::AlignLeading));
}

}  // namespace tarn
