#pragma once

#include <QtWidgets/QLineEdit>

namespace tarn {

/// A field for a whole number. Up and down count; what is no number, or too large, is not taken.
class NumberField final : public QLineEdit {
    Q_OBJECT
public:
    NumberField(int smallest, int largest, QWidget* parent = nullptr);

    int value() const { return value_; }
    void setValue(int value);

signals:
    void valueChanged(int value);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void take(int value);

    int smallest_;
    int largest_;
    int value_ = 0;
};

}  // namespace tarn
