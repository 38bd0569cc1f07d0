#pragma once

#include <string>
#include <string_view>

#include <unicode/unistr.h>

/// File names as ICU's text and back, byte for byte; included by sources only.
///
/// A byte that is not part of UTF-8 becomes a lone surrogate, U+DC00 + byte, which no UTF-8 can
/// hold; cases, matches and character breaks leave such a unit alone.
namespace tarn::NameText {

icu::UnicodeString fromBytes(std::string_view name);
/// Other lone surrogates, which a replacement may have brought in, become U+FFFD.
std::string toBytes(const icu::UnicodeString& text);

}  // namespace tarn::NameText
