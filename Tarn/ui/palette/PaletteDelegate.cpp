#include "Tarn/ui/palette/PaletteDelegate.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/palette/PaletteModel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

const PaletteRow& rowOf(const QModelIndex& index) {
    return static_cast<const PaletteModel*>(index.model())->row(index.row());
}

/// One line of a title, what was typed in it in bold.
class Title {
public:
    Title(const PaletteRow& row, const QFont& font, int room, Qt::LayoutDirection direction)
        : layout_(QFontMetrics(font).elidedText(row.entry->title, Qt::ElideMiddle, room), font) {
        QTextOption option;
        option.setWrapMode(QTextOption::NoWrap);
        option.setTextDirection(direction);
        layout_.setTextOption(option);
        QList<QTextLayout::FormatRange> formats;
        // A title that is cut off has other positions.
        if (layout_.text() == row.entry->title) {
            for (const auto& [begin, end] : row.ranges) {
                QTextCharFormat bold;
                bold.setFontWeight(QFont::Bold);
                formats.append({begin, end - begin, bold});
            }
        }
        layout_.setFormats(formats);
        layout_.beginLayout();
        QTextLine line = layout_.createLine();
        line.setLineWidth(room);
        width_ = static_cast<int>(std::ceil(line.naturalTextWidth()));
        // No wider than its text, so that it begins at either end of the room.
        line.setLineWidth(width_);
        layout_.endLayout();
        height_ = line.height();
    }
    int width() const { return width_; }
    void draw(QPainter& painter, const QRect& room) const {
        const bool mirrored = layout_.textOption().textDirection() == Qt::RightToLeft;
        const int left = mirrored ? room.right() + 1 - width_ : room.left();
        layout_.draw(&painter, QPointF(left, room.top() + (room.height() - height_) / 2));
    }

private:
    QTextLayout layout_;
    int width_ = 0;
    qreal height_ = 0;
};

}  // namespace

QSize PaletteDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    const int line = option.fontMetrics.height();
    if (!rowOf(index).entry) return {0, line + space8 + (index.row() == 0 ? 0 : space8)};
    return {0, std::max(rowDefault, line + space12)};
}

void PaletteDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const PaletteRow& row = rowOf(index);
    const Colors& colors = Colors::current();
    const auto placed = [&option](const QRect& logical) {
        return QStyle::visualRect(option.direction, option.rect, logical);
    };
    const auto side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter->save();
    const QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
    if (!row.entry) {
        painter->setFont(Fonts::semibold(Fonts::small()));
        painter->setPen(colors.secondary);
        QRect words = rect.adjusted(space8, 0, -space8, -space4);
        words.setTop(words.bottom() - option.fontMetrics.height());
        painter->drawText(placed(words), side | Qt::AlignVCenter | Qt::TextSingleLine, row.heading);
        painter->restore();
        return;
    }
    const PaletteEntry& entry = *row.entry;
    Paint::row(*painter, QRectF(rect).adjusted(0, hairline, 0, -hairline),
               option.state & QStyle::State_Selected, option.state & QStyle::State_MouseOver);
    const QRect icon(rect.left() + space8, rect.top() + (rect.height() - iconSmall) / 2, iconSmall,
                     iconSmall);
    Icons::symbol(entry.symbol, Icons::Tint::secondary).paint(painter, placed(icon));

    QRect room = rect.adjusted(space8 + iconSmall + space12, 0, -space12, 0);
    painter->setPen(colors.secondary);
    if (!entry.keys.empty()) {
        painter->setFont(option.font);
        const QString keys = KeyText::shown(entry.keys);
        const int width = Fonts::textWidth(option.font, keys);
        painter->drawText(placed(QRect(room.right() + 1 - width, room.top(), width, room.height())),
                          Qt::AlignCenter | Qt::TextSingleLine, keys);
        room.adjust(0, 0, -width - space16, 0);
    }
    const Title title(row, option.font, room.width(), option.direction);
    painter->setPen(entry.isEnabled ? colors.text : colors.secondary);
    title.draw(*painter, placed(room));
    room.adjust(title.width() + space12, 0, 0, 0);
    const QFont small = Fonts::small();
    // A word that is cut off after two letters tells nothing.
    if (!entry.detail.isEmpty() && room.width() >= space24 * 2) {
        painter->setFont(small);
        painter->setPen(colors.secondary);
        painter->drawText(
            placed(room), side | Qt::AlignVCenter | Qt::TextSingleLine,
            QFontMetrics(small).elidedText(entry.detail, Qt::ElideRight, room.width()));
    }
    painter->restore();
}

}  // namespace tarn
