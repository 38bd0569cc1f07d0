#pragma once

#include <QtGui/QImage>

#include "TarnCore/base/URL.h"

/// Pictures from files: Qt's readers where they can, the platform's for the rest.
namespace tarn::PictureDecoder {

/// Upright and at most `size` pixels wide and high; null when the file is no picture that can be
/// read. Takes as long as the picture is large; from any thread but the main one.
QImage decode(const URL& file, int size);

}  // namespace tarn::PictureDecoder
