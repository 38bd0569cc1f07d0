#pragma once

#include <array>
#include <set>

#include <QtCore/QTimer>

#include "Tarn/model/PaneItems.h"
#include "Tarn/ui/pane/PaneView.h"

class QHeaderView;

namespace tarn {

struct FileItem;

/// A pane as rows with columns, which the user chooses, moves and widens. Folders
/// can be unfolded in place, with the arrow before them or the right and left keys.
class PaneListView final : public PaneView {
    Q_OBJECT
public:
    PaneListView(PaneModel& pane, QWidget* parent);

    QHeaderView* header() const { return header_; }

protected:
    QRect rowRect(int row) const override;
    RowPlaces::Measures measures() const override;
    int headingMargin() const override;
    int rowNearest(const QPoint& content) const override;
    int rowAt(const QPoint& content) const override;
    QItemSelection rowsTouching(const QRect& content) const override;
    void paintRow(QPainter& painter, int row, const QRect& rect) override;
    int rowAfter(int row, CursorAction action) const override;
    int stepHeight() const override;
    QRect nameRect(int row) const override;
    bool centresNames() const override { return false; }
    QString elidedName(int row, const QPoint& content) const override;
    void updateGeometries() override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int rowHeight() const;
    /// The part of a row that has the columns: all of it, or what is above the line of text.
    QRect columnsRect(const QRect& row) const;
    /// Widths for texts of the usual length, in the font of now.
    void measureColumns();
    /// Hides columns that leave the name too little room.
    void layOutColumns();
    void showSort();
    /// A column's part of a row, without the padding; empty when the column is hidden.
    QRect cellRect(const QRect& row, int column) const;
    /// What is left of a place when parts of it are taken, in the direction one reads.
    QRect without(const QRect& rect, int leading, int trailing) const;
    /// How far a row is moved on by the folders that it lies in.
    int indent(int row) const;
    /// The name's cell behind the arrow; of a row that is drawn in `rect`.
    QRect nameCell(int row, const QRect& rect) const;
    QRect nameRect(int row, const QRect& rect) const;
    /// Empty for what cannot be unfolded.
    QRect arrowRect(int row, const QRect& rect) const;
    void paintArrow(QPainter& painter, int row, const QRect& rect) const;
    void toggle(int row);

    QHeaderView* header_;
    std::array<int, paneColumnCount> widths_{};  ///< As measured, or as the user dragged them.
    bool isLayingOut_ = false;
    std::set<PaneColumn> dragged_;  ///< Whose widths are still to be kept.
    QTimer keepWidths_;
};

}  // namespace tarn
