#include "Tarn/ui/theme/TarnStyle.h"

#include <algorithm>

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyleOption>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "Tarn/ui/theme/StyleControls.h"

namespace tarn {

using namespace Metrics;

namespace {

/// Menus and the lists of combo boxes: cards with rounded corners.
bool isPopupCard(const QWidget* widget) {
    return qobject_cast<const QMenu*>(widget) || widget->inherits("QComboBoxPrivateContainer");
}

}  // namespace

TarnStyle::TarnStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void TarnStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
        qobject_cast<QScrollBar*>(widget) || qobject_cast<QSlider*>(widget) ||
        qobject_cast<QHeaderView*>(widget))
        widget->setAttribute(Qt::WA_Hover);
    // Rounded corners need a window that can be seen through. Set before the native window exists.
    if (isPopupCard(widget)) widget->setAttribute(Qt::WA_TranslucentBackground);
}

void TarnStyle::unpolish(QWidget* widget) {
    if (isPopupCard(widget)) widget->setAttribute(Qt::WA_TranslucentBackground, false);
    QProxyStyle::unpolish(widget);
}

QPalette TarnStyle::standardPalette() const { return Colors::current().palette(); }

int TarnStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
        case PM_ScrollBarExtent:
            return scrollBarWidth;
        case PM_ScrollBarSliderMin:
            return scrollHandleLength;
        case PM_ScrollView_ScrollBarSpacing:
        case PM_ScrollView_ScrollBarOverlap:
            return 0;
        case PM_SplitterWidth:
            return hairline;
        case PM_SmallIconSize:
        case PM_ButtonIconSize:
        case PM_ToolBarIconSize:
        case PM_TabBarIconSize:
            return iconSmall;
        case PM_ListViewIconSize:
            return iconRow;
        case PM_MenuPanelWidth:
            return hairline;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return space4;
        case PM_SubMenuOverlap:
            return -space2;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        case PM_ButtonMargin:
            return space12;
        case PM_DefaultFrameWidth:
            return widget && widget->inherits("QAbstractScrollArea") ? 0 : hairline;
        // Views add one more, so that the text of cells stands below that of their heading.
        case PM_FocusFrameHMargin:
            return space8 - 1;
        case PM_FocusFrameVMargin:
            return space2;
        case PM_TabBarTabHSpace:
            return space12;
        case PM_TabBarTabShiftVertical:
        case PM_TabBarTabShiftHorizontal:
        case PM_TabBarTabOverlap:
        case PM_TabBarBaseOverlap:
            return 0;
        case PM_TabBarScrollButtonWidth:
            return smallestTarget;
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return space12;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return space8;
        case PM_HeaderMargin:
            return space8;
        case PM_HeaderMarkSize:
            return space8;
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return iconSmall;
        case PM_CheckBoxLabelSpacing:
        case PM_RadioButtonLabelSpacing:
            return space8;
        case PM_SliderThickness:
        case PM_SliderControlThickness:
        case PM_SliderLength:
            return iconSmall;
        case PM_ToolTipLabelFrameWidth:
            return space4;
        case PM_TextCursorWidth:
            return hairline;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int TarnStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
    switch (hint) {
        case SH_Widget_Animation_Duration:
            return motion_;
        case SH_Widget_Animate:
            return motion_ > 0;
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
        case SH_UnderlineShortcut:
        case SH_ScrollView_FrameOnlyAroundContents:
        case SH_ItemView_ShowDecorationSelected:
        case SH_ItemView_PaintAlternatingRowColorsForEmptyArea:
        case SH_DialogButtonBox_ButtonsHaveIcons:
        case SH_Menu_AllowActiveAndDisabled:
            return 0;
        case SH_ScrollBar_LeftClickAbsolutePosition:
        case SH_Slider_AbsoluteSetButtons:
        case SH_Menu_MouseTracking:
        // On a small screen a second column would stand beside it.
        case SH_Menu_Scrollable:
        case SH_ComboBox_ListMouseTracking:
        case SH_ToolTip_WakeUpDelay:
            if (hint == SH_ToolTip_WakeUpDelay) return 600;
            if (hint == SH_Slider_AbsoluteSetButtons) return Qt::LeftButton;
            return 1;
        case SH_Menu_SloppySubMenus:
        case SH_ComboBox_Popup:
            return 1;
        default:
            return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize TarnStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
        case CT_PushButton:
            size.setHeight(std::max(size.height(), controlHeight));
            size.setWidth(std::max(size.width() + space8, controlHeight));
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
                button && button->features & QStyleOptionButton::HasMenu)
                size.rwidth() += space8;
            break;
        case CT_ToolButton:
            size = size.expandedTo({smallestTarget, smallestTarget});
            break;
        case CT_LineEdit:
        case CT_ComboBox:
        case CT_SpinBox:
            size.setHeight(std::max(size.height(), controlHeight));
            break;
        case CT_HeaderSection:
            size.setHeight(std::max(size.height(), rowDefault));
            break;
        case CT_MenuItem:
            size = StyleControls::menuItemSize(option, size);
            break;
        case CT_ItemViewItem:
            size.setHeight(std::max(size.height(), rowCompact));
            break;
        case CT_CheckBox:
        case CT_RadioButton:
            size.setHeight(std::max(size.height(), smallestTarget));
            break;
        default:
            break;
    }
    return size;
}

QRect TarnStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
    switch (element) {
        case SE_LineEditContents: {
            const QRect inner = QProxyStyle::subElementRect(element, option, widget);
            return inner.adjusted(space4, 0, -space4, 0);
        }
        case SE_PushButtonFocusRect:
        case SE_ToolButtonLayoutItem:
            return option->rect;
        case SE_CheckBoxFocusRect:
        case SE_RadioButtonFocusRect:
            return option->rect;
        case SE_ItemViewItemFocusRect: {
            // Around the row of a list, not around its text; a table has a ring in its cell.
            using Item = QStyleOptionViewItem;
            const auto* item = qstyleoption_cast<const Item*>(option);
            if (item && (item->viewItemPosition == Item::OnlyOne ||
                         item->viewItemPosition == Item::Invalid))
                return option->rect.adjusted(space4, hairline, -space4, -hairline);
            return QProxyStyle::subElementRect(element, option, widget);
        }
        default:
            return QProxyStyle::subElementRect(element, option, widget);
    }
}

QRect TarnStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
    if (control == CC_ScrollBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return StyleControls::scrollBarPart(*bar, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

void TarnStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    const Colors& colors = Colors::current();
    switch (element) {
        case PE_IndicatorTabTear:
        case PE_IndicatorTabTearRight:
            return;
        case PE_FrameFocusRect:
            Paint::focusRing(*painter, option->rect, radiusControl);
            return;
        case PE_PanelButtonCommand:
            StyleControls::pushButton(*painter, *option);
            return;
        case PE_PanelButtonTool:
            StyleControls::toolButton(*painter, *option);
            return;
        case PE_FrameButtonTool:
        case PE_FrameStatusBarItem:
        case PE_FrameMenu:
        case PE_FrameTabBarBase:
        case PE_PanelStatusBar:
            return;
        case PE_FrameDefaultButton:
            return;
        case PE_PanelLineEdit:
        case PE_FrameLineEdit:
            StyleControls::field(*painter, *option);
            return;
        case PE_PanelMenu:
            StyleControls::popup(*painter, option->rect);
            return;
        case PE_PanelTipLabel:
            painter->fillRect(option->rect, colors.raised);
            Paint::outline(*painter, option->rect, 0, colors.border, hairline);
            return;
        case PE_Frame:
        case PE_FrameGroupBox:
            if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame && frame->lineWidth > 0)
                Paint::outline(*painter, option->rect, radiusControl, colors.border, hairline);
            return;
        case PE_PanelItemViewRow:
            return;
        case PE_PanelItemViewItem:
            StyleControls::itemRow(*painter, *option);
            return;
        case PE_IndicatorCheckBox:
            StyleControls::checkBox(*painter, *option);
            return;
        case PE_IndicatorRadioButton:
            StyleControls::radioButton(*painter, *option);
            return;
        case PE_IndicatorBranch:
            StyleControls::branch(*painter, *option);
            return;
        case PE_IndicatorArrowUp:
            StyleControls::arrow(*painter, *option, "chevron.up");
            return;
        case PE_IndicatorArrowDown:
            StyleControls::arrow(*painter, *option, "chevron.down");
            return;
        case PE_IndicatorArrowLeft:
            StyleControls::arrow(*painter, *option, "chevron.left");
            return;
        case PE_IndicatorArrowRight:
            StyleControls::arrow(*painter, *option, "chevron.right");
            return;
        case PE_IndicatorItemViewItemDrop:
            Paint::focusRing(*painter, option->rect, radiusRow);
            return;
        case PE_PanelScrollAreaCorner:
            painter->fillRect(option->rect, colors.base);
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void TarnStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    const Colors& colors = Colors::current();
    switch (element) {
        case CE_PushButtonBevel:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
                drawPrimitive(PE_PanelButtonCommand, button, painter, widget);
            return;
        case CE_PushButtonLabel:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
                if (button->features & QStyleOptionButton::HasMenu)
                    return StyleControls::menuButtonLabel(*painter, *button, *this);
                QStyleOptionButton label = *button;
                if (StyleControls::isProminent(*button))
                    label.palette.setColor(QPalette::ButtonText, colors.onAccent);
                QProxyStyle::drawControl(element, &label, painter, widget);
            }
            return;
        case CE_ToolButtonLabel:
            if (const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option)) {
                QStyleOptionToolButton label = *tool;
                if (tool->toolButtonStyle == Qt::ToolButtonTextBesideIcon && !tool->icon.isNull()) {
                    // Both of them in the middle; the toolkit begins at the edge.
                    const int text =
                        tool->fontMetrics.size(Qt::TextShowMnemonic, tool->text).width();
                    const int spare = tool->rect.width() - tool->iconSize.width() - space4 - text;
                    if (spare > 1) label.rect.adjust(spare / 2, 0, -(spare - spare / 2), 0);
                }
                QProxyStyle::drawControl(element, &label, painter, widget);
            }
            return;
        case CE_MenuItem:
            if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
                StyleControls::menuItem(*painter, *item, *this);
            return;
        case CE_MenuEmptyArea:
        case CE_MenuTearoff:
        case CE_MenuVMargin:
        case CE_MenuHMargin:
            return;
        case CE_HeaderSection:
            StyleControls::headerSection(*painter, *option);
            return;
        case CE_HeaderEmptyArea:
            StyleControls::headerSection(*painter, *option);
            return;
        case CE_Header:
            if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option))
                StyleControls::header(*painter, *header);
            return;
        case CE_TabBarTab:
            if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
                StyleControls::tabShape(*painter, *tab);
                StyleControls::tabLabel(*painter, *tab);
            }
            return;
        case CE_Splitter:
            painter->fillRect(option->rect, colors.separator);
            return;
        case CE_RubberBand:
            StyleControls::rubberBand(*painter, option->rect);
            return;
        case CE_ProgressBarGroove:
        case CE_ProgressBarContents:
            if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option))
                StyleControls::progressBar(*painter, *bar, element == CE_ProgressBarContents);
            return;
        case CE_ScrollBarAddLine:
        case CE_ScrollBarSubLine:
        case CE_ScrollBarAddPage:
        case CE_ScrollBarSubPage:
            return;
        case CE_FocusFrame:
            return;
        default:
            QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void TarnStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    switch (control) {
        case CC_ScrollBar:
            if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
                StyleControls::scrollBar(*painter, *bar);
            return;
        case CC_ComboBox:
            if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
                StyleControls::comboBox(*painter, *box,
                                        subControlRect(control, option, SC_ComboBoxArrow, widget));
            }
            return;
        case CC_Slider:
            if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
                StyleControls::slider(*painter, *slider,
                                      subControlRect(control, option, SC_SliderHandle, widget));
            }
            return;
        default:
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

QIcon TarnStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                              const QWidget* widget) const {
    switch (icon) {
        case SP_LineEditClearButton:
            return Icons::symbol("xmark.circle.fill", Icons::Tint::secondary);
        case SP_DirIcon:
        case SP_DirClosedIcon:
        case SP_DirOpenIcon:
            return Icons::symbol("folder");
        case SP_FileIcon:
            return Icons::symbol("doc");
        case SP_DirHomeIcon:
            return Icons::symbol("house");
        case SP_ArrowBack:
        case SP_ArrowLeft:
            return Icons::symbol("chevron.left");
        case SP_ArrowForward:
        case SP_ArrowRight:
            return Icons::symbol("chevron.right");
        case SP_ArrowUp:
            return Icons::symbol("arrow.up");
        case SP_ArrowDown:
            return Icons::symbol("arrow.down");
        case SP_BrowserReload:
            return Icons::symbol("arrow.clockwise");
        case SP_TrashIcon:
            return Icons::symbol("trash");
        case SP_MessageBoxWarning:
            return Icons::symbol("exclamationmark.triangle");
        case SP_MessageBoxCritical:
            return Icons::symbol("exclamationmark.circle");
        case SP_MessageBoxInformation:
            return Icons::symbol("info.circle");
        case SP_MessageBoxQuestion:
            return Icons::symbol("questionmark.circle");
        case SP_ToolBarHorizontalExtensionButton:
            return Icons::symbol("ellipsis");
        default:
            return QProxyStyle::standardIcon(icon, option, widget);
    }
}

}  // namespace tarn
