#include "Tarn/ui/theme/StyleControls.h"

#include <algorithm>
#include <utility>

#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn::StyleControls {
namespace {

using namespace Metrics;

constexpr QStyle::State pressedOrOn = QStyle::State_Sunken | QStyle::State_On;

QColor translucent(QColor color, double part) {
    color.setAlphaF(static_cast<float>(part));
    return color;
}

/// The tint of a control in this state; 0 at rest.
double tint(QStyle::State state) {
    if (!(state & QStyle::State_Enabled)) return (state & QStyle::State_On) ? hoverTint : 0;
    const bool over = state & QStyle::State_MouseOver;
    if (state & QStyle::State_Sunken) return checkedHoverTint;
    if (state & QStyle::State_On) return over ? checkedHoverTint : checkedTint;
    return over ? hoverTint : 0;
}

QColor markColor(const QStyleOption& option) {
    const Colors& colors = Colors::current();
    return option.state & QStyle::State_Enabled ? colors.accent : colors.disabled;
}

void paintSymbol(QPainter& painter, const QRect& rect, std::string_view name, Icons::Tint tint,
                 bool enabled = true) {
    const int side = std::min({rect.width(), rect.height(), iconSmall});
    const QRect square(rect.center().x() - side / 2 + 1, rect.center().y() - side / 2 + 1, side,
                       side);
    Icons::symbol(name, tint)
        .paint(&painter, square, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
}

}  // namespace

bool isProminent(const QStyleOptionButton& button) {
    return (button.features & QStyleOptionButton::DefaultButton) &&
           (button.state & QStyle::State_Enabled) && !(button.features & QStyleOptionButton::Flat);
}

void pushButton(QPainter& painter, const QStyleOption& option) {
    const Colors& colors = Colors::current();
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    if (button && isProminent(*button)) {
        QColor face = colors.accent;
        const bool over = option.state & QStyle::State_MouseOver;
        if (option.state & QStyle::State_Sunken)
            face = Colors::mixed(face, colors.text, checkedHoverTint);
        else if (over)
            face = Colors::mixed(face, colors.base, hoverTint);
        Paint::fill(painter, option.rect, radiusControl, face);
        // A ring of the accent would drown in the face.
        if (option.state & QStyle::State_HasFocus)
            Paint::outline(painter, QRectF(option.rect).adjusted(space2, space2, -space2, -space2),
                           radiusSmall, colors.onAccent, Metrics::focusRing);
        return;
    }
    const bool flat = button && (button->features & QStyleOptionButton::Flat);
    const double rest = flat ? 0 : hoverTint;
    double part = rest + (flat ? tint(option.state) : tint(option.state) / 2);
    if (!flat && (option.state & pressedOrOn)) part = checkedHoverTint;
    if (part > 0) Paint::fill(painter, option.rect, radiusControl, translucent(colors.text, part));
    if (!flat && colors.isHighContrast)
        Paint::outline(painter, option.rect, radiusControl, colors.border, hairline);
    if (option.state & QStyle::State_HasFocus)
        Paint::focusRing(painter, option.rect, radiusControl);
}

void toolButton(QPainter& painter, const QStyleOption& option) {
    const double part = tint(option.state);
    const Colors& colors = Colors::current();
    if (part > 0) Paint::fill(painter, option.rect, radiusControl, translucent(colors.text, part));
    if ((option.state & QStyle::State_On) && colors.isHighContrast)
        Paint::outline(painter, option.rect, radiusControl, colors.border, hairline);
}

void field(QPainter& painter, const QStyleOption& option) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (!frame || frame->lineWidth <= 0) return;
    Paint::field(painter, option.rect, option.state & QStyle::State_HasFocus);
}

void comboBox(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow) {
    const Colors& colors = Colors::current();
    if (option.editable) {
        Paint::fill(painter, option.rect, radiusControl, colors.base);
        Paint::outline(painter, option.rect, radiusControl, colors.border, hairline);
    } else {
        const double part = std::max(hoverTint, hoverTint + tint(option.state) / 2);
        Paint::fill(painter, option.rect, radiusControl, translucent(colors.text, part));
        if (colors.isHighContrast)
            Paint::outline(painter, option.rect, radiusControl, colors.border, hairline);
    }
    if (option.state & QStyle::State_HasFocus)
        Paint::focusRing(painter, option.rect, radiusControl);
    paintSymbol(painter, arrow, "chevron.down", Icons::Tint::secondary,
                option.state & QStyle::State_Enabled);
}

void menuButtonLabel(QPainter& painter, const QStyleOptionButton& button, const QStyle& style) {
    QStyleOptionComboBox box;
    box.rect = button.rect;
    box.direction = button.direction;
    box.fontMetrics = button.fontMetrics;
    const bool isEnabled = button.state & QStyle::State_Enabled;
    const auto part = [&](QStyle::SubControl which) {
        return style.subControlRect(QStyle::CC_ComboBox, &box, which, nullptr);
    };
    const Qt::Alignment leading = QStyle::visualAlignment(button.direction, Qt::AlignLeft);
    style.drawItemText(&painter, part(QStyle::SC_ComboBoxEditField),
                       static_cast<int>(leading | Qt::AlignVCenter) | Qt::TextSingleLine,
                       button.palette, isEnabled, button.text, QPalette::ButtonText);
    paintSymbol(painter, part(QStyle::SC_ComboBoxArrow), "chevron.down", Icons::Tint::secondary,
                isEnabled);
}

void checkBox(QPainter& painter, const QStyleOption& option) {
    const Colors& colors = Colors::current();
    const bool on = option.state & (QStyle::State_On | QStyle::State_NoChange);
    if (!on) {
        Paint::fill(painter, option.rect, radiusSmall,
                    option.state & QStyle::State_MouseOver ? colors.tinted(colors.base, hoverTint)
                                                           : colors.base);
        Paint::outline(painter, option.rect, radiusSmall, colors.secondary, hairline);
        return;
    }
    Paint::fill(painter, option.rect, radiusSmall, markColor(option));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.onAccent, focusRing, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QRectF box = option.rect;
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    if (option.state & QStyle::State_NoChange)
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
    else
        painter.drawPolyline(QPolygonF({at(0.26, 0.52), at(0.43, 0.69), at(0.75, 0.32)}));
    painter.restore();
}

void radioButton(QPainter& painter, const QStyleOption& option) {
    const Colors& colors = Colors::current();
    const QRectF box = option.rect;
    const qreal radius = box.width() / 2;
    if (option.state & QStyle::State_On) {
        Paint::fill(painter, box, radius, markColor(option));
        const qreal inset = box.width() * 0.32;
        const QRectF dot = box.adjusted(inset, inset, -inset, -inset);
        Paint::fill(painter, dot, dot.width() / 2, colors.onAccent);
    } else {
        Paint::fill(painter, box, radius, colors.base);
        Paint::outline(painter, box, radius, colors.secondary, hairline);
    }
}

void slider(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle) {
    const Colors& colors = Colors::current();
    const bool across = option.orientation == Qt::Horizontal;
    QRectF groove = option.rect;
    QRectF done;
    if (across) {
        groove = QRectF(groove.left(), groove.center().y() - space2, groove.width(), space4);
        done = groove;
        if (option.upsideDown)
            done.setLeft(handle.center().x());
        else
            done.setRight(handle.center().x());
    } else {
        groove = QRectF(groove.center().x() - space2, groove.top(), space4, groove.height());
        done = groove;
        done.setTop(handle.center().y());
    }
    Paint::fill(painter, groove, space2, translucent(colors.text, checkedHoverTint));
    Paint::fill(painter, done, space2, markColor(option));
    const QRectF knob = QRectF(handle).adjusted(hairline, hairline, -hairline, -hairline);
    Paint::fill(painter, knob, knob.width() / 2, colors.raised);
    Paint::outline(painter, knob, knob.width() / 2,
                   option.state & QStyle::State_HasFocus ? colors.accent : colors.secondary,
                   option.state & QStyle::State_HasFocus ? Metrics::focusRing : hairline);
}

void progressBar(QPainter& painter, const QStyleOptionProgressBar& option, bool contents) {
    const Colors& colors = Colors::current();
    QRectF groove = option.rect;
    groove = QRectF(groove.left(), groove.center().y() - space2, groove.width(), space4);
    if (!contents) {
        Paint::fill(painter, groove, space2, translucent(colors.text, checkedHoverTint));
        return;
    }
    const double range = option.maximum - option.minimum;
    if (range <= 0) return;
    groove.setWidth(groove.width() * (option.progress - option.minimum) / range);
    Paint::fill(painter, groove, space2, colors.accent);
}

void tabShape(QPainter& painter, const QStyleOptionTab& option) {
    const Colors& colors = Colors::current();
    const QRectF rect = QRectF(option.rect).adjusted(space2, 0, -space2, 0);
    const bool isCurrent = option.state & QStyle::State_Selected;
    if (isCurrent) {
        Paint::fill(painter, rect, radiusControl, colors.base);
        Paint::outline(painter, rect, radiusControl,
                       colors.isHighContrast ? colors.border : colors.separator, hairline);
    } else if (option.state & QStyle::State_MouseOver) {
        Paint::fill(painter, rect, radiusControl, colors.tinted(colors.window, hoverTint));
    }
    if (option.state & QStyle::State_HasFocus) Paint::focusRing(painter, rect, radiusControl);
}

void tabLabel(QPainter& painter, const QStyleOptionTab& option) {
    const Colors& colors = Colors::current();
    const QRect room =
        option.rect.adjusted(space12, 0, -(option.rightButtonSize.width() + space8), 0);
    const QRect text = QStyle::visualRect(option.direction, option.rect, room);
    painter.setPen(option.state & QStyle::State_Selected ? colors.text : colors.secondary);
    const auto leading = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(
        text,
        Qt::AlignVCenter | leading | Qt::AlignAbsolute | Qt::TextSingleLine | Qt::TextHideMnemonic,
        option.fontMetrics.elidedText(option.text, Qt::ElideRight, text.width(),
                                      Qt::TextHideMnemonic));
}

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
    const QRect bar = option.rect;
    const bool across = option.orientation == Qt::Horizontal;
    const int room = across ? bar.width() : bar.height();
    const int range = option.maximum - option.minimum;
    int length = room;
    if (range > 0) {
        const auto share = static_cast<qint64>(option.pageStep) * room /
                           (static_cast<qint64>(range) + std::max(1, option.pageStep));
        length = std::clamp(static_cast<int>(share), std::min(scrollHandleLength, room), room);
    }
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, room - length, option.upsideDown);
    const auto along = [&](int from, int size) {
        return across ? QRect(bar.left() + from, bar.top(), size, bar.height())
                      : QRect(bar.left(), bar.top() + from, bar.width(), size);
    };
    switch (part) {
        case QStyle::SC_ScrollBarSlider:
            return along(start, length);
        case QStyle::SC_ScrollBarGroove:
            return bar;
        case QStyle::SC_ScrollBarSubPage:
            return along(0, start);
        case QStyle::SC_ScrollBarAddPage:
            return along(start + length, room - start - length);
        default:
            return {};
    }
}

void scrollBar(QPainter& painter, const QStyleOptionSlider& option) {
    const Colors& colors = Colors::current();
    if (option.maximum <= option.minimum) return;
    QRectF handle = scrollBarPart(option, QStyle::SC_ScrollBarSlider);
    const bool active = (option.state & QStyle::State_MouseOver) ||
                        (option.activeSubControls & QStyle::SC_ScrollBarSlider &&
                         option.state & QStyle::State_Sunken);
    // Slim until the pointer comes near, then easy to hit.
    const qreal inset = active ? space2 : space4;
    const bool across = option.orientation == Qt::Horizontal;
    if (across)
        handle.adjust(space2, inset, -space2, -space2);
    else if (option.direction == Qt::RightToLeft)
        handle.adjust(space2, space2, -inset, -space2);
    else
        handle.adjust(inset, space2, -space2, -space2);
    const double part = colors.isHighContrast ? 1.0 : active ? 0.45 : 0.25;
    Paint::fill(painter, handle, std::min(handle.width(), handle.height()) / 2,
                translucent(colors.text, part));
}

void popup(QPainter& painter, const QRect& rect) {
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect, radiusCard, colors.raised);
    Paint::outline(painter, rect, radiusCard, colors.border, hairline);
}

namespace {

constexpr int menuIconColumn = space8 + iconSmall + space8;
constexpr int submenuColumn = space24;

}  // namespace

QSize menuItemSize(const QStyleOption* option, const QSize& size) {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (!item) return size;
    if (item->menuItemType == QStyleOptionMenuItem::Separator) return {size.width(), space8 + 1};
    const auto pieces = item->text.split(u'\t');
    int width = menuIconColumn + item->fontMetrics.horizontalAdvance(pieces.value(0)) + space24;
    if (pieces.size() > 1) width += space24 + item->reservedShortcutWidth;
    width += submenuColumn;
    return {std::max(width, menuMinimumWidth),
            std::max(item->fontMetrics.height() + space8, rowCompact)};
}

void menuItem(QPainter& painter, const QStyleOptionMenuItem& item, const QStyle& style) {
    const Colors& colors = Colors::current();
    const QRect rect = item.rect;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(
            QRect(rect.left() + space8, rect.center().y(), rect.width() - 2 * space8, hairline),
            colors.separator);
        return;
    }
    const bool enabled = item.state & QStyle::State_Enabled;
    if ((item.state & QStyle::State_Selected) && enabled)
        Paint::fill(painter, rect, radiusControl, translucent(colors.text, checkedTint));

    const auto placed = [&](const QRect& logical) {
        return QStyle::visualRect(item.direction, rect, logical);
    };
    const QRect mark = placed(
        QRect(rect.left() + space8, rect.center().y() - iconSmall / 2 + 1, iconSmall, iconSmall));
    if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.icon.isNull()) {
        if (item.checked) paintSymbol(painter, mark, "checkmark", Icons::Tint::text, enabled);
    } else if (!item.icon.isNull()) {
        item.icon.paint(&painter, mark, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
    }
    const auto pieces = item.text.split(u'\t');
    const int flags =
        Qt::AlignVCenter | Qt::TextShowMnemonic | Qt::TextHideMnemonic | Qt::TextSingleLine;
    const int align = item.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    const int otherEnd = item.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
    painter.save();
    painter.setFont(item.font);
    const QRect words = placed(rect.adjusted(menuIconColumn, 0, -space12, 0));
    style.drawItemText(&painter, words, flags | align, item.palette, enabled, pieces.value(0),
                       QPalette::Text);
    if (pieces.size() > 1) {
        painter.setPen(enabled ? colors.secondary : colors.disabled);
        painter.drawText(words, Qt::AlignVCenter | Qt::TextSingleLine | otherEnd, pieces[1]);
    }
    painter.restore();
    if (item.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QRect side =
            placed(QRect(rect.right() - submenuColumn, rect.top(), submenuColumn, rect.height()));
        paintSymbol(painter, side,
                    item.direction == Qt::RightToLeft ? "chevron.left" : "chevron.right",
                    Icons::Tint::secondary, enabled);
    }
}

void headerSection(QPainter& painter, const QStyleOption& option) {
    const Colors& colors = Colors::current();
    const bool over =
        option.state & QStyle::State_MouseOver && option.state & QStyle::State_Enabled;
    painter.fillRect(option.rect, over ? colors.tinted(colors.base, hoverTint / 2) : colors.base);
    const QRect r = option.rect;
    painter.fillRect(QRect(r.left(), r.bottom(), r.width(), hairline), colors.separator);
}

void header(QPainter& painter, const QStyleOptionHeader& option) {
    const Colors& colors = Colors::current();
    headerSection(painter, option);
    painter.save();
    painter.setPen(option.state & QStyle::State_Enabled ? colors.secondary : colors.disabled);
    const bool sorted = option.sortIndicator != QStyleOptionHeader::None;
    const int mark = sorted ? space12 + space4 : 0;
    const QRect room = option.rect.adjusted(space8, 0, -space8, 0);
    const Qt::Alignment align =
        QStyle::visualAlignment(option.direction, option.textAlignment | Qt::AlignVCenter);
    const QString text = option.fontMetrics.elidedText(option.text, Qt::ElideRight,
                                                       std::max(0, room.width() - mark));
    const QSize size(option.fontMetrics.horizontalAdvance(text) + mark, room.height());
    const QRect words = QStyle::alignedRect(Qt::LeftToRight, align, size, room);
    const bool mirrored = option.direction == Qt::RightToLeft;
    painter.drawText(mirrored ? words.adjusted(mark, 0, 0, 0) : words.adjusted(0, 0, -mark, 0),
                     Qt::AlignCenter | Qt::TextSingleLine, text);
    if (sorted) {
        // Qt calls the indicator of an ascending order "sort down".
        const bool ascending = option.sortIndicator == QStyleOptionHeader::SortDown;
        const int x = mirrored ? words.left() : words.right() + 1 - space12;
        Icons::symbol(ascending ? "chevron.up" : "chevron.down", Icons::Tint::secondary)
            .paint(&painter, QRect(x, words.center().y() - space12 / 2 + 1, space12, space12));
    }
    painter.restore();
}

void itemRow(QPainter& painter, const QStyleOption& option) {
    using Item = QStyleOptionViewItem;
    const auto* item = qstyleoption_cast<const Item*>(&option);
    auto position = item ? item->viewItemPosition : Item::OnlyOne;
    if (position == Item::Invalid) position = Item::OnlyOne;
    bool left = position == Item::OnlyOne || position == Item::Beginning;
    bool right = position == Item::OnlyOne || position == Item::End;
    if (option.direction == Qt::RightToLeft) std::swap(left, right);
    const QRectF rect =
        QRectF(option.rect).adjusted(left ? space4 : 0, hairline, right ? -space4 : 0, -hairline);
    Paint::row(painter, rect, option.state & QStyle::State_Selected,
               option.state & QStyle::State_MouseOver, left, right);
}

void branch(QPainter& painter, const QStyleOption& option) {
    if (!(option.state & QStyle::State_Children)) return;
    const bool open = option.state & QStyle::State_Open;
    const bool mirrored = option.direction == Qt::RightToLeft;
    const int side = space12;
    const QRect square(option.rect.center().x() - side / 2, option.rect.center().y() - side / 2,
                       side, side);
    Icons::symbol(open       ? "chevron.down"
                  : mirrored ? "chevron.left"
                             : "chevron.right",
                  Icons::Tint::secondary)
        .paint(&painter, square);
}

void arrow(QPainter& painter, const QStyleOption& option, std::string_view symbol) {
    paintSymbol(painter, option.rect, symbol, Icons::Tint::secondary,
                option.state & QStyle::State_Enabled);
}

void rubberBand(QPainter& painter, const QRect& rect) {
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect, radiusSmall, translucent(colors.accent, checkedHoverTint));
    Paint::outline(painter, rect, radiusSmall, colors.accent, hairline);
}

}  // namespace tarn::StyleControls
