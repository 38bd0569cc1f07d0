#pragma once

#include <string_view>

#include <QtCore/QRect>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

class QPainter;

/// The faces of single controls, as TarnStyle draws them from their options.
namespace tarn::StyleControls {

/// Filled with the accent: the button that Enter presses.
bool isProminent(const QStyleOptionButton& button);
void pushButton(QPainter& painter, const QStyleOption& option);
void toolButton(QPainter& painter, const QStyleOption& option);
void field(QPainter& painter, const QStyleOption& option);
void comboBox(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow);
/// Of a button with a menu, which looks like a list of choices.
void menuButtonLabel(QPainter& painter, const QStyleOptionButton& button, const QStyle& style);
void checkBox(QPainter& painter, const QStyleOption& option);
void radioButton(QPainter& painter, const QStyleOption& option);
void slider(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle);
void progressBar(QPainter& painter, const QStyleOptionProgressBar& option, bool contents);

void tabShape(QPainter& painter, const QStyleOptionTab& option);
void tabLabel(QPainter& painter, const QStyleOptionTab& option);

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part);
void scrollBar(QPainter& painter, const QStyleOptionSlider& option);

void popup(QPainter& painter, const QRect& rect);
QSize menuItemSize(const QStyleOption* option, const QSize& size);
void menuItem(QPainter& painter, const QStyleOptionMenuItem& item, const QStyle& style);

void headerSection(QPainter& painter, const QStyleOption& option);
/// A heading with its label and, beside it, the mark of the order.
void header(QPainter& painter, const QStyleOptionHeader& option);
/// The part of a selected or hovered row that one cell shows.
void itemRow(QPainter& painter, const QStyleOption& option);
void branch(QPainter& painter, const QStyleOption& option);
void arrow(QPainter& painter, const QStyleOption& option, std::string_view symbol);
void rubberBand(QPainter& painter, const QRect& rect);

}  // namespace tarn::StyleControls
