#pragma once

#include <string>
#include <string_view>

#include <QtWidgets/QWidget>

#include "Tarn/ui/drag/FileDrop.h"

namespace tarn {

/// Says beside the pointer what a drop would do. A child of the window, since a program cannot
/// place windows of its own everywhere; there is one in each window.
class DropLabel final : public QWidget {
    Q_OBJECT
public:
    /// Shows it in the window of `target`, at a point of that widget.
    static void show(QWidget& target, const QPoint& point, const FileDrop& drop);
    static void show(QWidget& target, const QPoint& point, const QString& text,
                     std::string_view symbol);
    static void hide(QWidget& target);

    const QString& text() const { return text_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    explicit DropLabel(QWidget* window);
    static DropLabel* of(QWidget& target);

    QString text_;
    std::string symbol_;
};

}  // namespace tarn
