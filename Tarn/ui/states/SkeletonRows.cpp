#include "Tarn/ui/states/SkeletonRows.h"

#include <algorithm>
#include <array>

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// Widths of the names, as parts of the room, so that the rows look like a list and not a table.
constexpr std::array nameWidths = {0.34, 0.22, 0.41, 0.28, 0.37, 0.25, 0.31, 0.19};
constexpr int longestSkeleton = 14;  // rows; they fade out towards the last

}  // namespace

SkeletonRows::SkeletonRows(QWidget* parent) : QWidget(parent), rowHeight_(Metrics::rowDefault) {
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setAccessibleName(tr("Loading…"));
}

void SkeletonRows::setRowHeight(int height) {
    rowHeight_ = std::max(Metrics::rowCompact, height);
    update();
}

void SkeletonRows::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    for (int row = 0; row < longestSkeleton && row * rowHeight_ < height(); ++row) {
        const double strength =
            Metrics::checkedTint * (1.0 - static_cast<double>(row) / longestSkeleton);
        const QColor color = colors.tinted(colors.base, strength);
        const qreal middle = (row + 0.5) * rowHeight_;
        const auto bar = [&](qreal x, qreal width, qreal height, qreal radius) {
            QRectF rect(x, middle - height / 2, width, height);
            if (isRightToLeft()) rect.moveRight(this->width() - x);
            Paint::fill(painter, rect, radius, color);
        };
        const qreal name = Metrics::space16 + Metrics::iconRow + Metrics::space8;
        bar(Metrics::space16, Metrics::iconRow, Metrics::iconRow, Metrics::radiusSmall);
        bar(name, nameWidths[static_cast<std::size_t>(row) % nameWidths.size()] * width(),
            Metrics::space12, Metrics::radiusSmall);
        if (width() > Metrics::contentMinimum)
            bar(width() * 0.72, width() * 0.14, Metrics::space12, Metrics::radiusSmall);
    }
}

}  // namespace tarn
