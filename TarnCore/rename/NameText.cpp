#include "TarnCore/rename/NameText.h"

#include <algorithm>
#include <string_view>

#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Text.h"

namespace tarn::NameText {

constexpr char16_t escape = 0xDC00;
constexpr char16_t firstEscaped = 0xDC80;
constexpr char16_t lastEscaped = 0xDCFF;

icu::UnicodeString fromBytes(std::string_view name) {
    if (Text::isValidUTF8(name)) return ICU::text(name);
    icu::UnicodeString text;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t begin = at;
        const char32_t character = Text::nextCharacter(name, at);
        // The replacement character itself takes three bytes.
        const bool isBroken = character == 0xFFFD && at == begin + 1;
        text.append(isBroken
                        ? static_cast<UChar32>(escape | static_cast<unsigned char>(name[begin]))
                        : static_cast<UChar32>(character));
    }
    return text;
}

std::string toBytes(const icu::UnicodeString& text) {
    std::string name;
    const std::u16string_view units(text.getBuffer(), static_cast<std::size_t>(text.length()));
    if (std::ranges::none_of(units, [](char16_t unit) { return U16_IS_SURROGATE(unit); })) {
        text.toUTF8String(name);
        return name;
    }
    for (std::int32_t at = 0; at < text.length();) {
        const UChar32 character = text.char32At(at);
        at += U16_LENGTH(character);
        if (character >= firstEscaped && character <= lastEscaped) {
            name += static_cast<char>(character - escape);
        } else {
            Text::append(name,
                         U_IS_SURROGATE(character) ? 0xFFFD : static_cast<char32_t>(character));
        }
    }
    return name;
}

}  // namespace tarn::NameText
