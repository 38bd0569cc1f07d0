#include "Tarn/model/DisplayText.h"

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr char16_t controlPictures = 0x2400;  // SYMBOL FOR NULL and the 31 after it
constexpr char16_t deletePicture = 0x2421;

}  // namespace

QString displayText(std::string_view bytes) {
    const std::string clean = Text::sanitized(bytes);
    QString text = QString::fromUtf8(clean.data(), static_cast<qsizetype>(clean.size()));
    for (QChar& c : text) {
        const char16_t unit = c.unicode();
        if (unit < 0x20)
            c = QChar(static_cast<char16_t>(controlPictures + unit));
        else if (unit == 0x7F)
            c = QChar(deletePicture);
        else if (c.category() == QChar::Separator_Line ||
                 c.category() == QChar::Separator_Paragraph)
            c = QChar(controlPictures + u'\n');
    }
    return text;
}

}  // namespace tarn
