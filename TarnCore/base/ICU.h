#pragma once

#include <string>
#include <string_view>

#include <unicode/unistr.h>

/// The seam between our UTF-8 and ICU's UTF-16; included by sources only.
namespace tarn::ICU {

inline icu::UnicodeString text(std::string_view utf8) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
}

inline std::string utf8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

}  // namespace tarn::ICU
