#include <cstdint>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <gtest/gtest.h>

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

QImage resized(QImage picture, const QSize& pixels) {
    picture.setDevicePixelRatio(1);
    return picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
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
}

}  // namespace
}  // namespace tarn
