#pragma once

#include <array>

#include "Tarn/model/PaneItems.h"
#include "Tarn/ui/pane/PaneView.h"

class QHeaderView;

namespace tarn {

struct FileItem;

/// A pane as rows with columns: name, dates, size, kind, and in search results the folder.
class PaneListView final : public PaneView {
    Q_OBJECT
public:
    PaneListView(PaneModel& pane, QWidget* parent);

    QHeaderView* header() const { return header_; }

protected:
    QRect rowRect(int row) const override;
    int contentHeight() const override;
    std::optional<Rows> rowsIn(const QRect& content) const override;
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
    QRect nameRect(const QRect& row, const FileItem& item) const;

    QHeaderView* header_;
    std::array<int, paneColumnCount> widths_{};  ///< As measured, or as the user dragged them.
    bool isLayingOut_ = false;
};

}  // namespace tarn
