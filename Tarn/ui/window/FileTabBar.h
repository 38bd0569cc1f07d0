#pragma once

#include <functional>
#include <optional>

#include <QtCore/QTimer>
#include <QtWidgets/QTabBar>

#include "TarnCore/base/URL.h"

namespace tarn {

struct FileDrop;

/// A row of tabs in our own look, onto which files can be dropped: whoever holds them over a tab
/// for a moment gets it in front, and whoever lets go drops them into what it shows.
class FileTabBar final : public QTabBar {
    Q_OBJECT
public:
    explicit FileTabBar(QWidget* parent);

    /// Which folder a tab takes files for; absent for none.
    void setFolders(std::function<std::optional<URL>(int)> folderOf) {
        folderOf_ = std::move(folderOf);
    }
    /// Adds a tab with its button for closing.
    void insert(int index, const QString& text, const QString& toolTip);
    /// How wide all tabs may be together; they share it once the bar gets another width.
    void setRoom(int width) { room_ = width; }
    /// The width that its tabs take of that.
    int wantedWidth() const;

signals:
    /// The button or the middle button of the mouse.
    void closePressed(int index);
    /// Dragged away from the bar and let go there.
    void tornOff(int index, const QPoint& globalPosition);
    void menuRequested(int index, const QPoint& globalPosition);
    void dropped(const tarn::FileDrop& drop);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// Far enough from the bar that the tab is not only being moved in it.
    bool isAway(const QMouseEvent& event) const;
    void setDropTab(int index);
    std::optional<FileDrop> dropAt(const QDropEvent& event) const;

    std::function<std::optional<URL>(int)> folderOf_;
    int room_ = 0;
    int middlePressed_ = -1;
    bool isHeld_ = false;  ///< A tab, by the left button.
    int dropTab_ = -1;
    QTimer switchTimer_;
};

}  // namespace tarn
