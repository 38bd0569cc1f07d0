#pragma once

#include <vector>

#include <QtWidgets/QWidget>

class QBoxLayout;
class QPushButton;

namespace tarn {

/// The buttons at the foot of a sheet, the one that goes on last: in one line, or below each other
/// where that has no room, and then the one that goes on first.
class ButtonRow final : public QWidget {
    Q_OBJECT
public:
    /// `beside` stands in front of them and takes the rest of the line.
    explicit ButtonRow(QWidget* beside);

    void add(QPushButton& button);
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void place();

    QBoxLayout* row_;
    QWidget* beside_;
    std::vector<QPushButton*> buttons_;
};

}  // namespace tarn
