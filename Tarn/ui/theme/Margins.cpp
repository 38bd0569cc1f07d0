#include "Tarn/ui/theme/Margins.h"

#include <QtGui/QGuiApplication>

namespace tarn::Margins {

QMargins directed(int leading, int top, int trailing, int bottom) {
    if (QGuiApplication::isRightToLeft()) return {trailing, top, leading, bottom};
    return {leading, top, trailing, bottom};
}

}  // namespace tarn::Margins
