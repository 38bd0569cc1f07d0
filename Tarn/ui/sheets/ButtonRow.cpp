#include "Tarn/ui/sheets/ButtonRow.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QPushButton>

#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

ButtonRow::ButtonRow(QWidget* beside)
    : row_(new QBoxLayout(QBoxLayout::LeftToRight, this)), beside_(beside) {
    row_->setContentsMargins(0, 0, 0, 0);
    row_->setSpacing(Metrics::space8);
    row_->addWidget(beside, 1);
}

void ButtonRow::add(QPushButton& button) {
    buttons_.push_back(&button);
    row_->addWidget(&button);
}

QSize ButtonRow::minimumSizeHint() const {
    // That of the widest, which is what it comes to at last.
    int width = beside_->minimumSizeHint().width();
    for (const QPushButton* button : buttons_)
        if (!button->isHidden()) width = std::max(width, button->sizeHint().width());
    return {width, QWidget::minimumSizeHint().height()};
}

void ButtonRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

bool ButtonRow::event(QEvent* event) {
    // A button has got another text, or has come or gone.
    if (event->type() == QEvent::LayoutRequest) place();
    return QWidget::event(event);
}

void ButtonRow::place() {
    int wanted = beside_->minimumSizeHint().width();
    for (const QPushButton* button : buttons_)
        if (!button->isHidden()) wanted += row_->spacing() + button->sizeHint().width();
    const auto direction = wanted <= width() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    if (direction == row_->direction()) return;
    row_->setDirection(direction);
    const bool isLine = direction == QBoxLayout::LeftToRight;
    for (QPushButton* button : buttons_) row_->removeWidget(button);
    for (QPushButton* button : buttons_) {
        if (isLine)
            row_->addWidget(button);
        else
            row_->insertWidget(1, button);
    }
}

}  // namespace tarn
