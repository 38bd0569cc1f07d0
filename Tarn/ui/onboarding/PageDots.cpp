#include "Tarn/ui/onboarding/PageDots.h"

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int side = Metrics::space6;
constexpr int step = side + Metrics::space8;

}  // namespace

PageDots::PageDots(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PageDots::setPage(int page, int count) {
    page_ = page;
    count_ = count;
    updateGeometry();
    update();
}

QSize PageDots::sizeHint() const { return {count_ * step - Metrics::space8, side}; }

void PageDots::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Colors& colors = Colors::current();
    for (int i = 0; i < count_; ++i) {
        const int place = isRightToLeft() ? count_ - 1 - i : i;
        Paint::fill(painter, QRectF(place * step, 0, side, side), side / 2.0,
                    i == page_ ? colors.accent : colors.border);
    }
}

}  // namespace tarn
