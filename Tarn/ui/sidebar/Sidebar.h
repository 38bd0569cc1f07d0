#pragma once

#include <optional>
#include <vector>

#include <QtCore/QPoint>
#include <QtWidgets/QListView>

#include "Tarn/model/SidebarModel.h"

class QMimeData;

namespace tarn {

struct FileDrop;
struct SidebarTarget;

/// What can be done with a row beside going there.
enum class SidebarAction { eject, rename, remove, moveUp, moveDown };

/// The places one goes to, by a click or by the arrows and Enter.
///
/// Headings fold their sections, by a click, Enter, or the arrows to the sides. Keys of a row: F2
/// renames, Delete removes, Alt with Up and Down moves, Ctrl+E ejects.
class Sidebar final : public QListView {
    Q_OBJECT
public:
    explicit Sidebar(QWidget* parent = nullptr);

    /// Before it is shown; the model outlives it.
    void setModel(SidebarModel* model);
    SidebarModel& model() const { return *model_; }
    /// Marks the row of what the window shows; none when the sidebar has no such row.
    void setCurrent(const Location& location);
    const Location& current() const { return current_; }
    /// The button that ejects the volume of a row, in the viewport; empty where there is none.
    QRect ejectButton(const QModelIndex& index) const;
    /// The pointer is over that button.
    bool isEjectPointed(const QModelIndex& index) const { return ejectPointed_ == index; }

    QSize sizeHint() const override;

signals:
    void chosen(const tarn::Location& location);
    /// In a tab of its own.
    void chosenAside(const tarn::Location& location);
    /// A server that is not connected; an empty address is the way to any.
    void serverChosen(const std::string& address);
    /// Files were let go over a place.
    void dropped(const tarn::FileDrop& drop);
    /// Files were let go over a tag.
    void tagged(const std::vector<tarn::URL>& files, const tarn::FinderTag& tag);
    /// Folders, or what may be such, are to be favourites in front of the one at `index`.
    void favoritesDropped(const std::vector<tarn::URL>& urls, std::size_t index);
    /// A row of the user's takes another place; `index` counts the other ones of its section.
    void moved(const tarn::SidebarRow& row, std::size_t index);
    void actionWanted(tarn::SidebarAction action, const tarn::SidebarRow& row);
    /// The menu of a row is wanted.
    void menuRequested(const tarn::SidebarRow& row, const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    using QListView::setModel;
    void choose(const QModelIndex& index);
    /// A row that leads somewhere.
    bool isPlace(const QModelIndex& index) const;
    /// What a key does with the row that has the keyboard; absent for any other key.
    std::optional<SidebarAction> actionOf(const QKeyEvent& event) const;
    void startRowDrag(const QModelIndex& index);
    void pointEject(const QModelIndex& index);
    void showTarget(const std::optional<SidebarTarget>& target, const QPoint& point);

    SidebarModel* model_ = nullptr;
    Location current_;
    std::optional<SidebarRow> before_;  ///< Had the keyboard before the rows changed.
    QPersistentModelIndex dropTarget_;
    int dropLine_ = -1;  ///< Between rows, y in the viewport; -1 for none.
    QPersistentModelIndex ejectPointed_;
    QPersistentModelIndex ejectPressed_;
    QPersistentModelIndex asidePressed_;  ///< Opens in a tab of its own when it is let go.
    QPersistentModelIndex dragPressed_;   ///< May be dragged once the pointer goes far enough.
    QPoint pressedAt_;
};

}  // namespace tarn
