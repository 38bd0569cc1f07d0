#include "Tarn/ui/text/ChoiceList.h"

#include <algorithm>

#include <QtGui/QWheelEvent>
#include <QtWidgets/QStyleOptionComboBox>

#include "Tarn/ui/theme/Fonts.h"

namespace tarn {
namespace {

constexpr int narrowest = 96;

}  // namespace

ChoiceList::ChoiceList(QWidget* parent) : QComboBox(parent) {
    connect(this, &QComboBox::currentTextChanged, this, &ChoiceList::updateToolTip);
}

QSize ChoiceList::minimumSizeHint() const {
    const QSize whole = sizeHint();
    return {std::min(whole.width(), narrowest), whole.height()};
}

void ChoiceList::wheelEvent(QWheelEvent* event) { event->ignore(); }

void ChoiceList::resizeEvent(QResizeEvent* event) {
    QComboBox::resizeEvent(event);
    updateToolTip();
}

void ChoiceList::updateToolTip() {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const bool isCut = Fonts::textWidth(font(), currentText()) > field.width();
    setToolTip(isCut ? currentText().toHtmlEscaped() : QString());
}

}  // namespace tarn
