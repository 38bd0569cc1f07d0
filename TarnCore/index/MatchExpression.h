#pragma once

#include <string>
#include <vector>

namespace tarn {

/// Words a person typed, as an expression of SQLite's FTS5 (https://sqlite.org/fts5.html, section
/// 3) that means nothing but those words.
namespace MatchExpression {

/// Every phrase is required, in any order; inside a phrase its words stand side by side. Whatever
/// has a meaning in expressions is only text here, and phrases without a letter or a digit ask for
/// nothing. With `lastWordIsPrefix` the last word of the last phrase may go on. Matches nothing
/// when nothing is asked for.
///
/// FTS5's tokenizer keeps “ß” apart from “ss”, which are the same to whoever searches: the first
/// few of them are asked for in both spellings.
std::string of(const std::vector<std::string>& phrases, bool lastWordIsPrefix);

}  // namespace MatchExpression

}  // namespace tarn
