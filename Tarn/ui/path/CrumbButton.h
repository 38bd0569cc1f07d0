#pragma once

#include <optional>
#include <string_view>

#include <QtWidgets/QAbstractButton>

#include "TarnCore/base/URL.h"

namespace tarn {

struct FileDrop;

/// One folder on the way, with the mark that leads to the next.
class CrumbButton final : public QAbstractButton {
    Q_OBJECT
public:
    /// `symbol` may be empty.
    CrumbButton(const QString& text, std::string_view symbol, QWidget* parent);

    /// The last crumb is where one is: it stands out and leads nowhere.
    void setLast(bool last);
    /// Files can be dropped on it, for that folder, which itself can be dragged from here.
    void setDropFolder(const URL& folder);
    QSize sizeHint() const override;
    /// Enough for a few letters and the dots.
    int shortestWidth() const;

signals:
    /// Clicked so that it opens in a tab of its own.
    void clickedAside();
    void dropped(const tarn::FileDrop& drop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int textLeft() const;
    int markWidth() const;

    void setDropTarget(bool isTarget);

    bool last_ = false;
    bool isDropTarget_ = false;
    QPoint pressedAt_;
    std::optional<URL> folder_;  ///< Takes what is dropped.
};

}  // namespace tarn
