#include "Tarn/ui/places/OverviewPage.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyledItemDelegate>

#include "Tarn/ui/tags/TagDots.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

class Delegate final : public QStyledItemDelegate {
public:
    Delegate(const OverviewPage& page, const PlaceOverview& overview, QObject* parent)
        : QStyledItemDelegate(parent), page_(page), overview_(overview) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {0, std::max(rowRoomy, option.fontMetrics.height() + space16)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const OverviewRow& row = overview_.row(index.row());
        const Colors& colors = Colors::current();
        const bool mirrored = option.direction == Qt::RightToLeft;
        const QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
        const auto placed = [&](int left, int width) {
            return QStyle::visualRect(option.direction, rect,
                                      QRect(rect.left() + left, rect.top(), width, rect.height()));
        };
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF face = QRectF(rect).adjusted(0, 0.5, 0, -0.5);
        const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
        const bool current = page_.hasFocus() && page_.currentIndex() == index;
        Paint::row(*painter, face, false, hovered);
        if (current) Paint::focusRing(*painter, face.adjusted(1, 1, -1, -1), radiusRow);
        QRect mark = placed(space12, iconRow);
        mark.setTop(rect.center().y() - iconRow / 2 + 1);
        mark.setHeight(iconRow);
        if (row.location.which == Location::Case::tag) {
            QRectF dot(0, 0, tagDot + space2, tagDot + space2);
            dot.moveCenter(QRectF(mark).center());
            Paint::fill(*painter, dot, dot.width() / 2, colors.tag(row.color));
        } else {
            Icons::symbol(row.isApp ? "app" : "network", Icons::Tint::secondary)
                .paint(painter, mark);
        }
        const QString detail = overview_.detail(row);
        const int left = space12 + iconRow + space12;
        const qreal wanted = Fonts::tabularWidth(Fonts::body(), detail);
        const int detailWidth = std::min(static_cast<int>(wanted) + 1, rect.width() / 2);
        const QRect words = placed(left, rect.width() - left - detailWidth - 2 * space12);
        painter->setFont(Fonts::body());
        painter->setPen(colors.text);
        painter->drawText(
            words,
            Qt::AlignVCenter | Qt::TextSingleLine | (mirrored ? Qt::AlignRight : Qt::AlignLeft),
            QFontMetrics(Fonts::body())
                .elidedText(index.data().toString(), Qt::ElideMiddle, words.width()));
        painter->setPen(colors.secondary);
        Fonts::drawTabular(*painter, placed(rect.width() - detailWidth - space12, detailWidth),
                           mirrored ? Qt::AlignLeft : Qt::AlignRight, detail);
        painter->restore();
    }

private:
    const OverviewPage& page_;
    const PlaceOverview& overview_;
};

}  // namespace

OverviewPage::OverviewPage(PlaceOverview& overview, QWidget* parent)
    : QListView(parent), overview_(overview) {
    setObjectName(QStringLiteral("overview"));
    setAccessibleName(tr("Tags and sources"));
    setModel(&overview);
    setItemDelegate(new Delegate(*this, overview, this));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(0, space8, 0, 0);
}

void OverviewPage::enter() {
    setFocus(Qt::OtherFocusReason);
    if (!currentIndex().isValid()) setCurrentIndex(model()->index(0, 0));
    viewport()->update();
}

void OverviewPage::choose(const QModelIndex& index) {
    if (!index.isValid()) return;
    const Location place = overview_.row(index.row()).location;
    emit chosen(place);
}

void OverviewPage::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->button() == Qt::LeftButton ? indexAt(event->pos()) : QModelIndex();
    QListView::mousePressEvent(event);
}

void OverviewPage::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QModelIndex pressed = pressed_;
    pressed_ = QModelIndex();
    if (event->button() == Qt::LeftButton && pressed.isValid() && indexAt(event->pos()) == pressed)
        choose(pressed);
}

void OverviewPage::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            choose(currentIndex());
            return;
        default:
            QListView::keyPressEvent(event);
    }
    viewport()->update();
}

}  // namespace tarn
