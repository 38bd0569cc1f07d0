#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QtGui/QImage>
#include <QtWidgets/QWidget>

namespace tarn::Looks {

/// The widget and everything below it that can be seen, as far as nothing that scrolls hides it.
std::vector<QWidget*> seen(QWidget& root);

/// What a widget says on its face; empty when it shows no text of its own.
QString textOf(const QWidget& widget);
/// Its text has all the room that it needs, or is cut off on purpose with the whole in the tooltip.
bool fits(const QWidget& widget);

/// Can be clicked or typed into.
bool isControl(const QWidget& widget);

/// "QToolButton “Close” in PaneHeader", for messages.
std::string nameOf(const QWidget& widget);

/// The colours that a part of a picture is made of: the one that covers most of it, and the one
/// that stands out most from that. Absent when it has one colour only.
struct Ink {
    QColor ground;
    QColor ink;
    double contrast = 1;
};
std::optional<Ink> inkIn(const QImage& picture, const QRect& part);

/// What two pictures of one size differ in lies in this part of them; null when they are equal.
QRect differenceOf(const QImage& one, const QImage& other);

/// A part of a picture in the pixels it has, where `rect` is in logical ones.
QRect inPixels(const QImage& picture, const QRect& rect);

}  // namespace tarn::Looks
