#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// A ring along the inside of a view that shows nowhere else that it has the keyboard: a picture, a
/// text without a cursor. It lies over what scrolls, and is there once one came by the keyboard.
///
/// A child of the view, which deletes it.
class FocusOutline final : public QWidget {
public:
    explicit FocusOutline(QWidget& view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void follow(Qt::FocusReason reason);

    bool cameByKey_ = false;
};

}  // namespace tarn
