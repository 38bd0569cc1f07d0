#pragma once

#include <optional>

#include <QtWidgets/QListView>

#include "Tarn/model/SidebarModel.h"

namespace tarn {

struct FileDrop;

/// The places one goes to, by a click or by the arrows and Enter.
class Sidebar final : public QListView {
    Q_OBJECT
public:
    explicit Sidebar(QWidget* parent = nullptr);

    void setModel(SidebarModel* model);
    /// Marks the row of what the window shows; none when the sidebar has no such row.
    void setCurrent(const Location& location);
    const Location& current() const { return current_; }

    QSize sizeHint() const override;

signals:
    void chosen(const tarn::Location& location);
    /// Files were let go over a place.
    void dropped(const tarn::FileDrop& drop);
    /// The menu of a place is wanted.
    void menuRequested(const tarn::Location& location, const QPoint& globalPosition);

protected:
    /// Headings are passed over.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    using QListView::setModel;
    void choose(const QModelIndex& index);
    std::optional<FileDrop> dropAt(const QDropEvent& event) const;
    void showDropTarget(const QModelIndex& index);

    SidebarModel* model_ = nullptr;
    Location current_;
    QPersistentModelIndex dropTarget_;
};

}  // namespace tarn
