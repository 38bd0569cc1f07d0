#include "Tarn/ui/quicksearch/QuickSearchDelegate.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/pane/SnippetLine.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn {

using namespace Metrics;

QuickSearchDelegate::QuickSearchDelegate(PaneModel& pane, QObject* parent)
    : QStyledItemDelegate(parent), pane_(pane) {}

QSize QuickSearchDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int lines = option.fontMetrics.height() + QFontMetrics(Fonts::small()).height();
    return {0, std::max(rowTwoLines, lines + space12)};
}

void QuickSearchDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    const FileItem& item = pane_.items().item(index.row());
    const Colors& colors = Colors::current();
    const auto placed = [&option](const QRect& logical) {
        return QStyle::visualRect(option.direction, option.rect, logical);
    };
    const auto side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    const bool isSelected = option.state & QStyle::State_Selected;
    painter->save();
    const QRect rect = option.rect.adjusted(space8, 0, -space8, 0);
    Paint::row(*painter, QRectF(rect).adjusted(0, hairline, 0, -hairline), isSelected,
               option.state & QStyle::State_MouseOver);
    const QRect icon(rect.left() + space8, rect.top() + (rect.height() - iconLarge) / 2, iconLarge,
                     iconLarge);
    Icons::forItem(item).paint(painter, placed(icon));

    const QFont small = Fonts::small();
    const QFontMetrics metrics(option.font);
    const QFontMetrics smallMetrics(small);
    QRect room = rect.adjusted(space8 + iconLarge + space12, 0, -space12, 0);
    const int height = metrics.height() + smallMetrics.height();
    const int top = rect.top() + (rect.height() - height) / 2;
    const QRect second(room.left(), top + metrics.height(), room.width(), smallMetrics.height());
    QRect first(room.left(), top, room.width(), metrics.height());

    const QString date = tarn::displayText(Format::date(item.modified));
    painter->setFont(small);
    painter->setPen(isSelected ? colors.text : colors.secondary);
    const int dateWidth = static_cast<int>(Fonts::tabularWidth(small, date)) + 1;
    Fonts::drawTabular(
        *painter,
        placed(QRect(first.right() + 1 - dateWidth, first.top(), dateWidth, first.height())),
        option.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight, date);
    first.adjust(0, 0, -dateWidth - space16, 0);

    painter->setFont(option.font);
    painter->setPen(colors.text);
    painter->drawText(
        placed(first), side | Qt::AlignVCenter | Qt::TextSingleLine,
        metrics.elidedText(PaneItems::displayName(item), Qt::ElideMiddle, first.width()));
    painter->setFont(small);
    if (const TextMatch* match = pane_.snippet(item)) {
        SnippetLine::paint(*painter, placed(second), *match, option.palette, isSelected);
    } else {
        painter->setPen(isSelected ? colors.text : colors.secondary);
        painter->drawText(
            placed(second), side | Qt::AlignVCenter | Qt::TextSingleLine,
            smallMetrics.elidedText(tarn::displayText(Paths::abbreviate(item.url.parent())),
                                    Qt::ElideMiddle, second.width()));
    }
    painter->restore();
}

}  // namespace tarn
