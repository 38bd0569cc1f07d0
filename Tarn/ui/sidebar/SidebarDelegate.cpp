#include "Tarn/ui/sidebar/SidebarDelegate.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/model/Counts.h"
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

void paintTag(QPainter& painter, const QRectF& dot, TagColor color) {
    const Colors& colors = Colors::current();
    if (color == TagColor::none)
        Paint::outline(painter, dot, dot.height() / 2, colors.secondary, hairline);
    else
        Paint::fill(painter, dot, dot.height() / 2, colors.tag(color));
}

/// What there is room for beside a volume.
QString shortNote(const SidebarRow& row) {
    const bool hasSpace = row.answer == SidebarRow::Answer::ready && row.total > 0;
    if (!hasSpace || row.isEjecting) return row.note();
    return SidebarDelegate::tr("%1 available").arg(Counts::bytes(row.available));
}

/// Where the parts of a row stand, before it is mirrored.
struct Parts {
    QRect icon;
    QRect words;
};

Parts partsOf(const QRect& rect, int sideRoom) {
    const QRect icon(rect.left() + space8, rect.top() + (rect.height() - iconSmall) / 2, iconSmall,
                     iconSmall);
    return {icon, rect.adjusted(space8 + iconSmall + space8, 0, -space8 - sideRoom, 0)};
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
            return {0, std::max(smallestTarget, line + space8) + (index.row() == 0 ? 0 : space8)};
        case SidebarRow::Kind::volume:
            return {0, std::max(rowTwoLines, line * 2 + space16)};
        case SidebarRow::Kind::trash:
            return {0, std::max(rowTwoLines, line * 2 + space12) + space16};
        default:
            return {0, std::max(rowCompact, line + space8)};
    }
}

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (rowOf(index).kind) {
        case SidebarRow::Kind::heading:
            paintHeading(*painter, option, index);
            break;
        case SidebarRow::Kind::trash:
            paintTrash(*painter, option, index);
            break;
        default:
            paintPlace(*painter, option, index);
    }
    painter->restore();
}

void SidebarDelegate::paintHeading(QPainter& painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    const SidebarRow& row = rowOf(index);
    const auto placed = [&option](const QRect& logical) {
        return QStyle::visualRect(option.direction, option.rect, logical);
    };
    QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
    rect.setTop(rect.bottom() + 1 - std::max(smallestTarget, option.fontMetrics.height() + space8));
    const bool hasKeyboard = sidebar_.hasFocus() && sidebar_.currentIndex() == index;
    const bool isPointed = option.state & QStyle::State_MouseOver;
    if (hasKeyboard) Paint::focusRing(painter, rect, radiusRow);
    painter.setFont(Fonts::semibold(Fonts::small()));
    painter.setPen(Colors::current().secondary);
    const QRect words = rect.adjusted(space8, 0, -space8 - iconSmall - space4, 0);
    drawLine(painter, placed(words), option.direction, row.title);
    if (!hasKeyboard && !isPointed && !row.isFolded) return;
    const QRect mark(rect.right() - space8 - space12 + 1,
                     rect.top() + (rect.height() - space12) / 2, space12, space12);
    const bool isMirrored = option.direction == Qt::RightToLeft;
    const char* folded = isMirrored ? "chevron.left" : "chevron.right";
    Icons::symbol(row.isFolded ? folded : "chevron.down", Icons::Tint::secondary)
        .paint(&painter, placed(mark));
}

void SidebarDelegate::paintPlace(QPainter& painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    const SidebarRow& row = rowOf(index);
    const Colors& colors = Colors::current();
    const auto direction = option.direction;
    const auto placed = [&](const QRect& logical) {
        return QStyle::visualRect(direction, option.rect, logical);
    };
    const QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
    const bool isShown =
        row.isPlace() && row.location.canonical() == sidebar_.current().canonical();
    const QRectF face = QRectF(rect).adjusted(0, hairline, 0, -hairline);
    Paint::row(painter, face, isShown, option.state & QStyle::State_MouseOver);
    if (sidebar_.hasFocus() && sidebar_.currentIndex() == index)
        Paint::focusRing(painter, face, radiusRow);

    const bool isSilent = row.answer == SidebarRow::Answer::silent;
    const bool isQuiet = isSilent || !row.isPlace() || row.isEjecting;
    const QRect button = sidebar_.ejectButton(index);
    const Parts parts = partsOf(rect, button.isEmpty() ? 0 : smallestTarget);
    if (row.kind == SidebarRow::Kind::tag) {
        QRectF dot(0, 0, tagDot, tagDot);
        dot.moveCenter(QRectF(placed(parts.icon)).center());
        paintTag(painter, dot, row.tag.color);
    } else {
        Icons::symbol(isSilent ? "externaldrive.badge.xmark" : std::string_view(row.symbol),
                      isShown ? Icons::Tint::accent : Icons::Tint::secondary)
            .paint(&painter, placed(parts.icon));
    }
    if (!button.isEmpty()) {
        if (sidebar_.isEjectPointed(index))
            Paint::fill(painter, button, radiusControl, colors.tinted(colors.window, checkedTint));
        QRect icon(0, 0, iconSmall, iconSmall);
        icon.moveCenter(button.center());
        Icons::symbol("eject", Icons::Tint::secondary).paint(&painter, icon);
    }

    painter.setFont(isShown ? Fonts::semibold(option.font) : option.font);
    painter.setPen(isQuiet ? colors.secondary : colors.text);
    QRect words = parts.words;
    const bool hasBar = row.answer == SidebarRow::Answer::ready && row.total > 0 && !row.isEjecting;
    const QString note = row.kind == SidebarRow::Kind::volume ? shortNote(row) : QString();
    if (note.isEmpty()) return drawLine(painter, placed(words), direction, row.title);
    const int line = option.fontMetrics.height();
    const int second = QFontMetrics(Fonts::small()).height();
    const int bar = hasBar ? space2 + space4 : 0;
    words.setTop(rect.top() + (rect.height() - line - second - bar) / 2);
    words.setHeight(line);
    drawLine(painter, placed(words), direction, row.title);
    const QRect below(words.left(), words.bottom() + 1, words.width(), second);
    painter.setFont(Fonts::small());
    painter.setPen(colors.secondary);
    drawLine(painter, placed(below), direction, note);
    const QRect fullness(below.left(), below.bottom() + 1 + space2, below.width(), space4);
    if (hasBar) drawFullness(painter, placed(fullness), row, direction == Qt::RightToLeft);
}

void SidebarDelegate::paintTrash(QPainter& painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    const SidebarRow& row = rowOf(index);
    const Colors& colors = Colors::current();
    const auto placed = [&option](const QRect& logical) {
        return QStyle::visualRect(option.direction, option.rect, logical);
    };
    const QRect card = option.rect.adjusted(space12, space12, -space12, -space4);
    const bool isShown = row.location.canonical() == sidebar_.current().canonical();
    const bool isPointed = option.state & QStyle::State_MouseOver;
    const double tint = isShown ? checkedHoverTint : isPointed ? checkedTint : hoverTint / 2;
    Paint::fill(painter, card, radiusCard,
                isShown ? colors.selection : colors.tinted(colors.window, tint));
    Paint::outline(painter, card, radiusCard, colors.separator, hairline);
    if (sidebar_.hasFocus() && sidebar_.currentIndex() == index)
        Paint::focusRing(painter, card, radiusCard);
    const Parts parts = partsOf(card.adjusted(-space4, 0, -space4, 0), 0);
    QRect icon = parts.icon.translated(space4, 0);
    icon = QRect(icon.left() - space2, icon.center().y() - iconRow / 2 + 1, iconRow, iconRow);
    Icons::symbol(row.symbol, isShown ? Icons::Tint::accent : Icons::Tint::secondary)
        .paint(&painter, placed(icon));
    QRect words = parts.words.adjusted(space8, 0, 0, 0);
    painter.setFont(isShown ? Fonts::semibold(option.font) : option.font);
    painter.setPen(colors.text);
    if (row.detail.isEmpty()) return drawLine(painter, placed(words), option.direction, row.title);
    const int line = option.fontMetrics.height();
    const int second = QFontMetrics(Fonts::small()).height();
    words.setTop(card.top() + (card.height() - line - second) / 2);
    words.setHeight(line);
    drawLine(painter, placed(words), option.direction, row.title);
    painter.setFont(Fonts::small());
    painter.setPen(colors.secondary);
    drawLine(painter, placed(QRect(words.left(), words.bottom() + 1, words.width(), second)),
             option.direction, row.detail);
}

}  // namespace tarn
