#include "Tarn/ui/rename/NumberField.h"

#include <algorithm>

#include <QtGui/QIntValidator>
#include <QtGui/QKeyEvent>

namespace tarn {

NumberField::NumberField(int smallest, int largest, QWidget* parent)
    : QLineEdit(parent), smallest_(smallest), largest_(largest) {
    setValidator(new QIntValidator(smallest, largest, this));
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        bool isNumber = false;
        const int typed = text.toInt(&isNumber);
        if (isNumber && typed >= smallest_ && typed <= largest_) take(typed);
    });
}

void NumberField::setValue(int value) {
    value_ = std::clamp(value, smallest_, largest_);
    setText(QString::number(value_));
}

void NumberField::take(int value) {
    if (value == value_) return;
    value_ = value;
    emit valueChanged(value);
}

void NumberField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
        const int next =
            std::clamp(value_ + (event->key() == Qt::Key_Up ? 1 : -1), smallest_, largest_);
        setText(QString::number(next));
        selectAll();
        take(next);
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberField::focusOutEvent(QFocusEvent* event) {
    // What was left half-typed gives way to what counts.
    setText(QString::number(value_));
    QLineEdit::focusOutEvent(event);
}

}  // namespace tarn
