#pragma once

#include <functional>
#include <unordered_map>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>

#include "Tarn/ui/pane/PaneView.h"
#include "TarnCore/base/URL.h"

namespace tarn {

struct FileItem;

/// A pane as a grid of icons, with names of up to two lines below them.
class PaneGridView final : public PaneView {
    Q_OBJECT
public:
    PaneGridView(PaneModel& pane, QWidget* parent);

    /// The picture to draw for an item instead of its icon, about `pixels` physical pixels wide or
    /// high; null for none, or none yet. Called while painting, so it must not wait.
    using Thumbnail = std::function<QPixmap(const FileItem& item, int pixels)>;
    void setThumbnails(Thumbnail thumbnail) { thumbnail_ = std::move(thumbnail); }
    /// The picture of a file is there now: its cell fades over to it.
    void showThumbnail(const URL& file);

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
    bool centresNames() const override { return true; }
    QString elidedName(int row, const QPoint& content) const override;

private:
    struct Cells {
        int columns = 1;
        int pitch = 1;  ///< From the left edge of a cell to that of the next.
        QSize size;
        int left = 0;      ///< Of the first column.
        int vertical = 1;  ///< From the top of a cell to that of the one below.
    };
    Cells cells() const;
    int iconSize() const;
    void paintName(QPainter& painter, int row, const QRect& rect) const;
    void paintPicture(QPainter& painter, const FileItem& item, const QRect& place) const;

    /// How far the picture of a file has come in, 0 to 1.
    double fadedIn(const URL& file) const;
    void stepFades();

    Thumbnail thumbnail_;
    std::unordered_map<URL, QElapsedTimer> fades_;  ///< Since when; only those still running.
    QTimer fadeTimer_;
};

}  // namespace tarn
