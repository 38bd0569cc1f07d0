#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

#include "TarnCore/platform/DrawnPicture.h"

/// Pictures that another process drew, as Qt has them. Callable from any thread.
namespace tarn::DrawnImage {

/// Of a picture in colours: a copy of its pixels. Null when their number does not fit.
QImage image(const DrawnPicture& picture);

/// Of coverage: the same, for being drawn in a colour.
QImage mask(const DrawnPicture& picture);
/// The mask in that colour, see-through where nothing is covered.
QImage tinted(const QImage& mask, const QColor& color);

}  // namespace tarn::DrawnImage
