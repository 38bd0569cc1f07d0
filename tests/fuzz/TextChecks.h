#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/TextExtractor.h"
#include "tests/fuzz/Require.h"

namespace tarn {

inline std::string_view view(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// What a reader gives is not empty; tidied, it is UTF-8 without zeros or returns, not too long, and
/// tidying it once more changes nothing.
inline void checkText(std::optional<std::string> text) {
    if (!text) return;
    require(!text->empty());
    PlainText::tidy(*text);
    require(Text::isValidUTF8(*text));
    require(text->find('\0') == text->npos && text->find('\r') == text->npos);
    require(Text::length(*text) <= TextExtractor::maxCharacters);
    const std::string once = *text;
    PlainText::tidy(*text);
    require(*text == once);
}

}  // namespace tarn
