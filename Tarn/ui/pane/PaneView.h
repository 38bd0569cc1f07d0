#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractItemView>

#include "Tarn/model/RowOrder.h"
#include "Tarn/ui/pane/RowPlaces.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class PaneModel;
struct FileDrop;
struct FileItem;
class RenameEditor;

/// What the list and the grid of a pane share: rows of one size, with headings between them where
/// they are grouped, so that every question about geometry is answered by arithmetic and 100,000
/// rows cost as much as ten. A click on a heading folds its group.
///
/// When rows come or go above what is on the screen, that stays where it is; at the very top one
/// sees what comes.
///
/// Content coordinates begin at the first row; viewport coordinates are those of the screen.
class PaneView : public QAbstractItemView {
    Q_OBJECT
public:
    PaneView(PaneModel& pane, QWidget* parent);

    PaneModel& pane() const { return pane_; }

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    /// Letters typed one after the other go to the first name that begins with them.
    void keyboardSearch(const QString& text) override;

    /// The rows that are on the screen, the last one included; absent when there are none.
    using Rows = RowPlaces::Rows;
    std::optional<Rows> visibleRows() const;

    /// The name that is being edited was refused, for this reason.
    void refuseName(const QString& sentence);
    /// The name was given: the field stays until the row shows it.
    void acceptName(const QString& name);

    /// Puts the focus here and selects the first row when none is.
    void enter();

    /// The picture that a dragged item shows instead of its icon; null for none.
    void setDragPictures(std::function<QPixmap(const FileItem&)> picture) {
        dragPicture_ = std::move(picture);
    }

signals:
    /// Files were let go over a folder of the rows, or over the pane's own.
    void dropped(const tarn::FileDrop& drop);
    /// These are to be opened in tabs of their own, as far as they can be looked into.
    void openedAside(const std::vector<tarn::FileItem>& items);
    /// Members of an archive are to be dragged, which needs files of their own first.
    void membersDragged(const QPixmap& image);
    /// Up was pressed on the first row.
    void leftAtTop();
    /// Return was pressed where it renames.
    void renamePressed();
    /// A new name was typed for an item; refuseName() or acceptName() answers.
    void nameEdited(const tarn::URL& item, const QString& name);

protected:
    /// Connects the view with its pane; the last thing that the constructor of a subclass does,
    /// since from here on its geometry is asked for.
    void begin();

    virtual RowPlaces::Measures measures() const = 0;
    /// Where the rows lie now.
    const RowPlaces& places() const;
    /// Of a row, in content coordinates.
    virtual QRect rowRect(int row) const = 0;
    /// Those that touch a rectangle of the content; absent when none does.
    std::optional<Rows> rowsIn(const QRect& content) const;
    /// The row whose place is nearest to a point of the content; -1 without rows.
    virtual int rowNearest(const QPoint& content) const = 0;
    /// The row under a point of the content, or -1.
    virtual int rowAt(const QPoint& content) const = 0;
    /// The rows inside a rubber band.
    virtual QItemSelection rowsTouching(const QRect& content) const = 0;
    virtual void paintRow(QPainter& painter, int row, const QRect& rect) = 0;
    /// Left and right end of headings, in pixels from the edges.
    virtual int headingMargin() const = 0;
    /// The row that a cursor or page key leads to from `row`; any number, it is kept in bounds.
    virtual int rowAfter(int row, CursorAction action) const = 0;
    virtual int stepHeight() const = 0;
    /// Where a row draws its name, in content coordinates, and whether it is centred there.
    virtual QRect nameRect(int row) const = 0;
    virtual bool centresNames() const = 0;
    /// The full name when it does not fit; else empty.
    virtual QString elidedName(int row, const QPoint& content) const = 0;

    bool isSelected(int row) const;
    /// The name of the row is being edited: the field draws it.
    bool isNamed(int row) const;
    bool isHovered(int row) const { return row == hovered_; }
    /// The folder that a row lies in, when that is a row itself: -1 where it is not.
    int parentRow(int row) const;
    /// The colour that lies below what a row draws.
    QColor rowGround(int row) const;
    /// The row has the keyboard, and the person uses it.
    bool hasCursor(int row) const;
    /// The press was for something that is no row: its release is nothing to the rows.
    void takePress() { pressIsTaken_ = true; }
    QItemSelection rowRange(int first, int last) const;
    int rowCount() const;
    QPoint toContent(const QPoint& viewportPoint) const;

    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// What was on the screen, and where, in viewport coordinates.
    struct Place {
        RowOrder order;
        bool isAtTop = false;
        int offset = 0;
        std::vector<std::pair<URL, int>> rows;  ///< With their tops; what must stay, first.
        std::optional<std::pair<std::string, int>> heading;  ///< The one above the rows.
    };
    /// A group that was clicked, until it is as it is to be.
    struct Folding {
        std::string title;
        bool isFolded = false;
    };
    /// Where a drop at a point of the viewport goes: the folder in that row, else the pane's own;
    /// the row is -1 for that one. Absent where nothing can be dropped.
    std::optional<std::pair<URL, int>> dropTarget(const QPoint& point) const;
    void showDropTarget(std::optional<int> row);
    /// Goes into the folder that something is held over, so that it can be dropped further down.
    void openDropTarget();
    /// Where nothing is selected, a key that moves selects what it would move from: the row that is
    /// marked, or the first one. False for other keys.
    bool selectFirst(const QKeyEvent& event);
    /// Before and after the rows are replaced.
    void notePlace();
    void restorePlace();
    int offsetFor(const Place& place) const;
    std::optional<int> headingTop(const std::string& title) const;
    /// With the place of what is dragged; absent when it has left.
    void scrollWhileDragging(std::optional<QPoint> point);
    void hover(int row);
    void hoverHeading(std::optional<int> heading);
    QRect headingRect(int group) const;
    void paintHeading(QPainter& painter, int group, const QRect& rect) const;
    void renamingChanged();
    void placeEditor();
    void closeEditor();
    /// The new name is shown by its row: goes on with the row that was asked for.
    void endNaming();
    /// The item that is edited after this one; absent for none.
    std::optional<URL> nextToName() const;
    void paintBand(QPainter& painter) const;
    bool isTyping() const;

    PaneModel& pane_;
    mutable RowPlaces places_;
    int hovered_ = -1;
    std::optional<int> hoveredHeading_;
    bool pressIsTaken_ = false;
    int asidePressed_ = -1;  ///< The row on which the middle button went down.
    QString typed_;
    QElapsedTimer sinceTyped_;
    std::optional<QPoint> bandStart_;  ///< Content coordinates; a rubber band is being drawn.
    QPoint bandEnd_;
    RenameEditor* editor_ = nullptr;
    std::optional<URL> named_;       ///< The item that the field is for.
    std::optional<URL> next_;        ///< Is edited once `awaited_` is listed.
    std::optional<URL> awaited_;     ///< The item under its new name, until it is listed.
    bool showsCursor_ = false;       ///< The keyboard was used last, not the pointer.
    std::optional<int> dropRow_;     ///< Would take the drop; -1 for the pane as a whole.
    std::optional<URL> dropFolder_;  ///< In that row.
    std::optional<Place> place_;     ///< While the rows are being replaced.
    std::optional<Folding> folding_;
    std::optional<Place> beforeResults_;  ///< The place, while what was found in it is shown.
    QElapsedTimer sincePointed_;          ///< Since the pointer was last used over the rows.
    std::function<QPixmap(const FileItem&)> dragPicture_;
    QTimer dragScroll_;
    QTimer spring_;           ///< Until the folder that something is held over opens.
    int dragScrollStep_ = 0;  ///< Pixels, downwards.
};

}  // namespace tarn
