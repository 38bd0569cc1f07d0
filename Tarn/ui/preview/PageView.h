#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <QtCore/QCache>
#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractScrollArea>

#include "TarnCore/platform/PageDrawing.h"

namespace tarn {

/// The pages of a document below each other, each as wide as the view allows, drawn by whoever
/// answers `wanted`. Text can be selected on a page. Main thread only.
class PageView final : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit PageView(QWidget* parent = nullptr);

    /// The first sizes may be given, and the rest later by setSizes().
    void setPages(int count, std::vector<PageSize> sizes);
    void setSizes(const std::vector<PageSize>& sizes, int first);
    void clear();
    /// A view that only shows the first page: it takes no keys or clicks.
    void setStill(bool isStill);

    int pageCount() const { return count_; }
    /// 0 for the first; the one in the middle of the view.
    int currentPage() const;
    PageSize sizeOf(int page) const;

    /// The next page to be drawn and how large; absent while all that is seen is there.
    struct Wish {
        int page = 0;
        QSize pixels;
        bool operator==(const Wish&) const = default;
    };
    std::optional<Wish> wish() const;
    void setPicture(const Wish& wish, const QImage& image);
    /// A page that is seen and whose text is not known; absent for none.
    std::optional<int> textWish() const;
    void setText(int page, PageText text);

    double zoom() const { return zoom_; }
    void setZoom(double zoom);
    QString selectedText() const;

signals:
    /// wish() or textWish() has something new.
    void wanted();
    void currentPageChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void layOut(bool keepsPlace);
    QSize room() const;
    double scale() const;            ///< Logical pixels for a point.
    QRect pageRect(int page) const;  ///< In the viewport.
    QSize pixels(int page) const;
    std::pair<int, int> seen() const;  ///< First and behind the last.
    int pageAt(int y) const;           ///< In the viewport.
    int characterAt(int page, QPoint point) const;

    int count_ = 0;
    std::vector<PageSize> sizes_;
    std::vector<int> tops_;  ///< Of each page, from the top of the first.
    int height_ = 0;
    double widest_ = 1;  ///< Points.
    double zoom_ = 1;
    bool isStill_ = false;
    struct Kept {
        QSize pixels;
        QPixmap picture;
    };
    QCache<int, Kept> pictures_;  ///< Costs in bytes.
    std::map<int, PageText> texts_;
    int selectedPage_ = -1;
    int selectionFrom_ = 0;
    int selectionTo_ = 0;  ///< Behind the last, or before the first.
    int shownPage_ = -1;
};

}  // namespace tarn
