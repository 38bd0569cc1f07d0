#pragma once

#include <string_view>

#include "TarnCore/preview/TableSheet.h"

/// Tables as text: values with a mark between them (RFC 4180 and what is written instead of it).
namespace tarn::DelimitedText {

/// The mark that most lines agree on: a comma, a semicolon, a tab or a bar.
char separator(std::string_view text);

/// The rows of the text, which is UTF-8, in any lines; never fails. Quotes take marks and lines
/// into a value, and two of them mean one. A quote that never ends takes the rest of the text.
TableSheet parse(std::string_view text, char separator);

}  // namespace tarn::DelimitedText
