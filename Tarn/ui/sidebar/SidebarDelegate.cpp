#include "Tarn/ui/sidebar/SidebarDelegate.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

/// A volume that is fuller than this asks for attention.
constexpr double nearlyFull = 0.95;
constexpr double quietBar = 0.45;

const SidebarRow& rowOf(const QModelIndex& index) {
    return static_cast<const SidebarModel*>(index.model())->row(index.row());
}

void drawLine(QPainter& painter, const QRect& rect, Qt::LayoutDirection direction,
              const QString& text) {
    painter.drawText(rect,
                     Qt::AlignVCenter | Qt::TextSingleLine |
                         (direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft),
                     painter.fontMetrics().elidedText(text, Qt::ElideMiddle, rect.width()));
}

void drawFullness(QPainter& painter, const QRect& room, const SidebarRow& row, bool mirrored) {
    const Colors& colors = Colors::current();
    const double used = std::clamp(
        1.0 - static_cast<double>(row.available) / static_cast<double>(row.total), 0.0, 1.0);
    QColor ground = colors.text;
    ground.setAlphaF(static_cast<float>(checkedHoverTint));
    Paint::fill(painter, room, room.height() / 2.0, ground);
    QRectF filled = room;
    filled.setWidth(std::max<qreal>(room.height(), room.width() * used));
    if (mirrored) filled.moveRight(room.right() + 1);
    Paint::fill(
        painter, filled, room.height() / 2.0,
        used > nearlyFull ? colors.danger : Colors::mixed(colors.window, colors.text, quietBar));
}

}  // namespace

SidebarDelegate::SidebarDelegate(Sidebar& sidebar)
    : QStyledItemDelegate(&sidebar), sidebar_(sidebar) {}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    const int line = option.fontMetrics.height();
    switch (rowOf(index).kind) {
        case SidebarRow::Kind::heading:
            // The first heading stands close to the top, later ones apart from what is above.
            return {0, line + space8 + (index.row() == 0 ? 0 : space12)};
        case SidebarRow::Kind::volume:
            return {0, std::max(rowRoomy, line * 2 + space6)};
        case SidebarRow::Kind::place:
            break;
    }
    return {0, std::max(rowDefault, line + space8)};
}

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const SidebarRow& row = rowOf(index);
    const Colors& colors = Colors::current();
    const auto direction = option.direction;
    const auto placed = [&](const QRect& logical) {
        return QStyle::visualRect(direction, option.rect, logical);
    };
    painter->save();
    const QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
    if (row.kind == SidebarRow::Kind::heading) {
        painter->setFont(Fonts::semibold(Fonts::small()));
        painter->setPen(colors.secondary);
        QRect words = rect.adjusted(space8, 0, -space8, -space4);
        words.setTop(words.bottom() - option.fontMetrics.height());
        drawLine(*painter, words, direction, row.title);
        painter->restore();
        return;
    }
    const bool shown = row.location.canonical() == sidebar_.current().canonical();
    const QRectF face = QRectF(rect).adjusted(0, hairline, 0, -hairline);
    Paint::row(*painter, face, shown, option.state & QStyle::State_MouseOver);
    if (sidebar_.hasFocus() && sidebar_.currentIndex() == index)
        Paint::focusRing(*painter, face, radiusRow);

    const bool silent = row.answer == SidebarRow::Answer::silent;
    const QRect icon = placed(QRect(
        rect.left() + space8, rect.top() + (rect.height() - iconSmall) / 2, iconSmall, iconSmall));
    Icons::symbol(silent ? "externaldrive.badge.xmark" : std::string_view(row.symbol),
                  shown ? Icons::Tint::accent : Icons::Tint::secondary)
        .paint(painter, icon);

    painter->setFont(shown ? Fonts::semibold(option.font) : option.font);
    painter->setPen(silent ? colors.secondary : colors.text);
    QRect words = rect.adjusted(space8 + iconSmall + space8, 0, -space8, 0);
    const bool hasBar = row.answer == SidebarRow::Answer::ready && row.total > 0;
    if (!hasBar && !silent) {
        drawLine(*painter, placed(words), direction, row.title);
        painter->restore();
        return;
    }
    const int line = option.fontMetrics.height();
    const int second = hasBar ? space4 : option.fontMetrics.height();
    const int gap = hasBar ? space4 : 0;
    words.setTop(rect.top() + (rect.height() - line - gap - second) / 2);
    words.setHeight(line);
    drawLine(*painter, placed(words), direction, row.title);
    const QRect below(words.left(), words.top() + line + gap, words.width(), second);
    if (hasBar) {
        drawFullness(*painter, placed(below), row, direction == Qt::RightToLeft);
    } else {
        painter->setFont(Fonts::small());
        drawLine(*painter, placed(below), direction, spaceSentence(row));
    }
    painter->restore();
}

}  // namespace tarn
