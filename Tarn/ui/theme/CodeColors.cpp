#include "Tarn/ui/theme/CodeColors.h"

#include "Tarn/ui/theme/Colors.h"

namespace tarn::CodeColors {

QColor of(CodeToken token) {
    const Colors& colors = Colors::current();
    // With high contrast colours say less than brightness does.
    if (colors.isHighContrast) return token == CodeToken::comment ? colors.secondary : colors.text;
    const bool isDark = colors.isDark;
    switch (token) {
        case CodeToken::keyword:
            return isDark ? QColor(0xD79BEA) : QColor(0x8A2AA8);
        case CodeToken::value:
            return isDark ? QColor(0x6CC4D8) : QColor(0x0B6A80);
        case CodeToken::string:
            return isDark ? QColor(0x98C979) : QColor(0x2F7A1F);
        case CodeToken::number:
            return isDark ? QColor(0xE0A36B) : QColor(0x9A5200);
        case CodeToken::comment:
            return isDark ? QColor(0x8E979F) : QColor(0x67707A);
        case CodeToken::directive:
            return isDark ? QColor(0xE0A36B) : QColor(0x93560A);
        case CodeToken::key:
            return isDark ? QColor(0x7DB4F2) : QColor(0x1C5FB0);
        case CodeToken::tag:
            return isDark ? QColor(0xEB8A8A) : QColor(0xB3282B);
        case CodeToken::heading:
            return isDark ? QColor(0x7DB4F2) : QColor(0x1C5FB0);
        case CodeToken::added:
            return isDark ? QColor(0x7FCB8A) : QColor(0x1E7A34);
        case CodeToken::removed:
            return isDark ? QColor(0xF0908A) : QColor(0xB3261E);
    }
    return colors.text;
}

}  // namespace tarn::CodeColors
