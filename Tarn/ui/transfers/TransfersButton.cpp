#include "Tarn/ui/transfers/TransfersButton.h"

#include <algorithm>

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionToolButton>
#include <QtWidgets/QStylePainter>

#include "Tarn/model/ActivityList.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int ringSide = 24;
constexpr double ringWidth = 2.5;
constexpr int fullCircle = 360 * 16;  // as QPainter counts angles
constexpr int quarter = 90 * 16;
constexpr int steps = 100;

}  // namespace

TransfersButton::TransfersButton(TransferList& list, ActivityList& activities, QWidget* parent)
    : QToolButton(parent), list_(list), activities_(activities) {
    setAutoRaise(true);
    setCheckable(true);
    setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    setToolTip(tr("Transfers"));
    setAccessibleName(tr("Transfers"));
    connect(&list, &TransferList::listChanged, this, &TransfersButton::follow);
    connect(&list, &TransferList::transferChanged, this, &TransfersButton::follow);
    connect(&activities, &ActivityList::listChanged, this, &TransfersButton::follow);
    connect(&activities, &ActivityList::progressChanged, this, &TransfersButton::follow);
    connect(&gate_, &LoadingGate::shownChanged, this, &TransfersButton::follow);
    follow();
}

bool TransfersButton::isEmpty() const { return list_.isEmpty() && activities_.isEmpty(); }

std::optional<double> TransfersButton::fraction() const {
    const auto moved = list_.fraction();
    if (activities_.isEmpty()) return moved;
    return moved ? (*moved + activities_.fraction()) / 2 : activities_.fraction();
}

void TransfersButton::setHeld(bool held) {
    isHeld_ = held;
    setChecked(held);
    follow();
}

void TransfersButton::follow() {
    gate_.setLoading(!isEmpty());
    const bool isShown = gate_.isShown() || isHeld_;
    if (isShown == isHidden()) {
        setVisible(isShown);
        emit shownChanged();
    }
    const auto fraction = this->fraction();
    const int step = fraction ? static_cast<int>(*fraction * steps) : -1;
    const QString state = isEmpty()  ? tr("None")
                          : fraction ? tr("%1 %").arg(step)
                                     : tr("Ended with failures");
    setAccessibleDescription(state);
    if (step == shownStep_) return;
    shownStep_ = step;
    update();
}

void TransfersButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    painter.drawPrimitive(QStyle::PE_PanelButtonTool, option);
    const Colors& colors = Colors::current();
    const auto fraction = this->fraction();
    const auto icon = [&](const char* symbol, Icons::Tint tint, int side) {
        Icons::symbol(symbol, tint)
            .paint(&painter, QRect((width() - side) / 2, (height() - side) / 2, side, side));
    };
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
    if (!fraction) {
        if (isEmpty())
            icon("arrow.up.arrow.down", Icons::Tint::text, Metrics::iconToolbar);
        else
            icon("exclamationmark.triangle", Icons::Tint::danger, Metrics::iconToolbar);
        return;
    }
    icon("arrow.up.arrow.down", Icons::Tint::text, Metrics::space12);
    QRectF ring(0, 0, ringSide, ringSide);
    ring.moveCenter(QRectF(rect()).center());
    ring.adjust(ringWidth / 2, ringWidth / 2, -ringWidth / 2, -ringWidth / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.tinted(colors.window, Metrics::checkedHoverTint), ringWidth));
    painter.drawEllipse(ring);
    painter.setPen(QPen(colors.accent, ringWidth, Qt::SolidLine, Qt::RoundCap));
    const int span = static_cast<int>(std::clamp(*fraction, 0.0, 1.0) * fullCircle);
    if (span > 0) painter.drawArc(ring, quarter, -span);
}

}  // namespace tarn
