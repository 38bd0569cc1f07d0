#pragma once

#include <QtWidgets/QWidget>

class QBoxLayout;

namespace tarn {

/// A name and the control that it is for, beside each other where there is room for both, or else
/// one below the other.
class FoldingRow final : public QWidget {
public:
    /// Beside each other as soon as both have the room that they want, and always from `besideFrom`
    /// on, in logical pixels.
    FoldingRow(QWidget& name, QWidget& control, int besideFrom);

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void place();

    QBoxLayout* row_;
    QWidget& name_;
    QWidget& control_;
    int besideFrom_;
};

}  // namespace tarn
