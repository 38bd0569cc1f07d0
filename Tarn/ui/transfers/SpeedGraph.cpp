#include "Tarn/ui/transfers/SpeedGraph.h"

#include <algorithm>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// Of the accent over the ground; faint enough for text to be read on it.
constexpr double areaTint = 0.14;
constexpr double lineTint = 0.45;

}  // namespace

SpeedGraph::SpeedGraph(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SpeedGraph::add(double fraction, double bytesPerSecond) {
    if (bytesPerSecond <= 0) return;
    const int step = std::clamp(static_cast<int>(fraction * steps), 0, steps - 1);
    // A transfer may find more to do and so fall back; what it was there before is past.
    if (step > reached_) {
        const double before = reached_ < 0 ? bytesPerSecond : speedAt(reached_);
        // A fast one skips steps: they lie on the way between the two speeds that are known.
        for (int i = reached_ + 1; i <= step; ++i) {
            const double part = static_cast<double>(i - reached_) / (step - reached_);
            speeds_[static_cast<std::size_t>(i)] = before + (bytesPerSecond - before) * part;
        }
    } else {
        speeds_[static_cast<std::size_t>(step)] = bytesPerSecond;
    }
    reached_ = step;
    fastest_ = *std::max_element(speeds_.begin(), speeds_.begin() + reached_ + 1);
    update();
}

void SpeedGraph::paintEvent(QPaintEvent*) {
    if (reached_ < 0) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (layoutDirection() == Qt::RightToLeft) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    const double wide = static_cast<double>(width()) / steps;
    const double room = height() - Metrics::space4;
    QPolygonF line;
    for (int i = 0; i <= reached_; ++i)
        line << QPointF((i + 1) * wide, height() - room * speedAt(i) / fastest_);
    line.prepend(QPointF(0, line.front().y()));
    QPolygonF area = line;
    area << QPointF(line.back().x(), height()) << QPointF(0, height());
    const Colors& colors = Colors::current();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::mixed(colors.raised, colors.accent, areaTint));
    painter.drawPolygon(area);
    painter.setPen(Colors::mixed(colors.raised, colors.accent, lineTint));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(line);
}

}  // namespace tarn
