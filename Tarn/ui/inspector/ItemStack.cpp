#include "Tarn/ui/inspector/ItemStack.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr std::size_t mostDrawn = 3;
constexpr int side = 96;
constexpr int step = Metrics::space24;
/// Degrees that the items behind the first one are turned.
constexpr double turns[mostDrawn] = {0, 7, -7};

}  // namespace

ItemStack::ItemStack(QWidget* parent) : QWidget(parent) { setFixedHeight(height); }

void ItemStack::setItems(const std::vector<FileItem>& items) {
    items_.assign(items.begin(),
                  items.begin() + static_cast<std::ptrdiff_t>(std::min(items.size(), mostDrawn)));
    update();
}

void ItemStack::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    // The first item lies on top, in the middle; the others look out at its sides.
    for (std::size_t i = items_.size(); i-- > 0;) {
        painter.save();
        const double offset = i == 0 ? 0 : (i == 1 ? step : -step);
        painter.translate(width() / 2.0 + offset, height / 2.0);
        painter.rotate(turns[i]);
        Icons::forItem(items_[i]).paint(&painter, QRect(-side / 2, -side / 2, side, side));
        painter.restore();
    }
}

}  // namespace tarn
