#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "TarnCore/preview/CodeLanguage.h"

namespace tarn {

/// What a stretch of code is, for its colour.
enum class CodeToken : std::uint8_t {
    keyword,
    value,  ///< A constant or type that comes with the language.
    string,
    number,
    comment,
    directive,  ///< For the preprocessor, or an annotation.
    key,        ///< A key of settings, an attribute, a property.
    tag,
    heading,
    added,
    removed,
};

struct CodeSpan {
    std::uint32_t start = 0;  ///< UTF-16 units from the beginning of the line.
    std::uint32_t length = 0;
    CodeToken token = CodeToken::keyword;
    bool operator==(const CodeSpan&) const = default;
};

/// Finds the parts of code that have a colour, line by line. A value; callable from any thread.
///
/// The time for a line grows with its length alone, whatever it holds.
namespace CodeTokens {

/// What goes on from one line to the next; 0 at the beginning of a text.
using State = std::uint32_t;

/// Appends the spans of one line, in order and apart from each other, and returns the state for
/// the next one. `line` has no line end.
State tokenize(const CodeLanguage& language, std::u16string_view line, State state,
               std::vector<CodeSpan>& spans);

}  // namespace CodeTokens

}  // namespace tarn
