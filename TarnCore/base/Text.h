#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text as people see it: UTF-8 that may be broken, since file names are only bytes. Every function
/// takes any bytes, never fails, and has a fast path for ASCII. All are callable from any thread.
namespace tarn::Text {

bool isASCII(std::string_view text);
bool isValidUTF8(std::string_view text);

/// The same text with every broken sequence replaced by U+FFFD: for showing and for JSON.
std::string sanitized(std::string_view text);

/// Characters (code points; a broken byte counts as one).
std::size_t length(std::string_view text);

/// Without white space (Unicode's, line feeds included) at both ends.
std::string_view trimmed(std::string_view text);

/// Lower case of the root locale, whatever the user's language.
std::string lowercased(std::string_view text);
/// A to Z only; everything else byte for byte.
std::string lowercasedASCII(std::string_view text);

/// Case and diacritics folded away, so that "Résumé", "RESUME" and "resume" are equal: full case
/// folding, canonical decomposition, combining marks dropped. Broken bytes stay as they are.
std::string folded(std::string_view text);

/// folded() into a buffer that keeps its capacity, for loops over many names.
void foldInto(std::string& out, std::string_view text);

/// The pieces between separators; empty pieces are kept.
std::vector<std::string_view> split(std::string_view text, char separator);

std::string join(const std::vector<std::string>& pieces, std::string_view separator);

/// `text` with every `from` replaced by `to`; `from` is not empty.
std::string replacing(std::string_view text, std::string_view from, std::string_view to);

/// The text with its first character in lower or upper case.
std::string withFirstLowered(std::string_view text);
std::string withFirstRaised(std::string_view text);

/// "“" + text + "”".
std::string quoted(std::string_view text);

/// Reads one character at `index` and moves `index` past it. A broken byte gives 0xFFFD and moves
/// by one byte.
char32_t nextCharacter(std::string_view text, std::size_t& index);
void append(std::string& out, char32_t character);
bool isSpace(char32_t character);

}  // namespace tarn::Text
