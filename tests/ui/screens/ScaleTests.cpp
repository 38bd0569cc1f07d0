#include <cstdint>
#include <optional>
#include <vector>

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <gtest/gtest.h>

#include "Tarn/ui/pane/PaneListView.h"
#include "Tarn/ui/theme/Metrics.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// The energy of the differences between neighbours: how sharp a picture is.
double edges(const QImage& image) {
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    std::int64_t sum = 0;
    for (int y = 1; y < gray.height(); ++y) {
        const uchar* above = gray.constScanLine(y - 1);
        const uchar* line = gray.constScanLine(y);
        for (int x = 1; x < gray.width(); ++x) {
            const int left = line[x] - line[x - 1];
            const int up = line[x] - above[x];
            sum += left * left + up * up;
        }
    }
    return static_cast<double>(sum);
}

/// The symbols of buttons and of rows, which are small beside all the text.
std::vector<QRect> symbolsOf(Stage& stage) {
    std::vector<QRect> found;
    for (QWidget* widget : Looks::seen(stage.front())) {
        const QPoint corner = widget->mapTo(&stage.window(), QPoint());
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        if (button && !button->icon().isNull() && Looks::textOf(*button).isEmpty())
            found.emplace_back(corner, widget->size());
        auto* view = qobject_cast<PaneListView*>(widget);
        const auto rows = view ? view->visibleRows() : std::nullopt;
        for (int row = rows ? rows->first : 0; rows && row < rows->last; ++row) {
            const QRect rect = view->visualRect(view->model()->index(row, 0));
            found.emplace_back(view->viewport()->mapTo(&stage.window(), rect.topLeft()),
                               QSize(Metrics::iconRow + Metrics::space16, rect.height()));
        }
    }
    return found;
}

QImage resized(QImage picture, const QSize& pixels) {
    picture.setDevicePixelRatio(1);
    return picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// How much sharper a part is than in a picture that has gone through a coarse one; absent where
/// there is nothing to see.
std::optional<double> gain(const QImage& fine, const QImage& blurred, const QRect& part) {
    const QRect pixels = Looks::inPixels(fine, part);
    const double before = edges(blurred.copy(pixels));
    if (before < 1000) return std::nullopt;
    return edges(fine.copy(pixels)) / before;
}

TEST_P(EachScreen, isAsSharpAsTheDisplay) {
    Stage stage(GetParam());
    for (QLabel* label : stage.window().findChildren<QLabel*>()) {
        const QPixmap picture = label->pixmap(Qt::ReturnByValue);
        if (picture.isNull() || !label->isVisible()) continue;
        EXPECT_EQ(picture.devicePixelRatio(), stage.window().devicePixelRatio())
            << Looks::nameOf(*label);
    }
    const QImage coarse = stage.grab(1);
    const QImage fine = stage.grab(2);
    EXPECT_GE(edges(fine), 1.6 * edges(resized(coarse, fine.size())));
    // A button takes its symbol for the display that it is on.
    const double ratio = stage.window().devicePixelRatio();
    if (ratio < 2) return;
    const QImage seen = stage.grab();
    const QImage blurred = resized(resized(seen, seen.size() / ratio), seen.size());
    for (const QRect& symbol : symbolsOf(stage))
        EXPECT_GE(gain(seen, blurred, symbol).value_or(2), 1.3)
            << "the symbol at " << symbol.x() << ", " << symbol.y();
}

}  // namespace
}  // namespace tarn
