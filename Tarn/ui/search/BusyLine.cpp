#include "Tarn/ui/search/BusyLine.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int oneRun = 1400;     // milliseconds from end to end
constexpr double segment = 0.3;  // of the width

}  // namespace

BusyLine::BusyLine(QWidget* parent) : QWidget(parent) {
    setFixedHeight(Metrics::busyLineHeight);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Searching"));
    run_.setDuration(oneRun);
    run_.setStartValue(-segment);
    run_.setEndValue(1.0);
    run_.setLoopCount(-1);
    run_.setEasingCurve(QEasingCurve::InOutSine);
    connect(&run_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&gate_, &LoadingGate::shownChanged, this, &BusyLine::follow);
}

void BusyLine::setBusy(bool busy) {
    busy_ = busy;
    gate_.setLoading(busy);
}

void BusyLine::follow() {
    const bool moves = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (gate_.isShown() && isVisible() && moves)
        run_.start();
    else
        run_.stop();
    update();
}

void BusyLine::showEvent(QShowEvent*) { follow(); }

void BusyLine::hideEvent(QHideEvent*) { run_.stop(); }

void BusyLine::paintEvent(QPaintEvent*) {
    if (!gate_.isShown()) return;
    QPainter painter(this);
    QRectF line = rect();
    if (run_.state() == QAbstractAnimation::Running) {
        double at = run_.currentValue().toDouble();
        if (isRightToLeft()) at = 1.0 - segment - at;
        line = QRectF(at * width(), 0, segment * width(), height());
    }
    Paint::fill(painter, line, height() / 2.0, Colors::current().accent);
}

}  // namespace tarn
