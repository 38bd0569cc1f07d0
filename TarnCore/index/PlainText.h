#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Files that are text as they stand. Needs no library but ICU, and that only for bytes that are
/// not UTF-8, so it is for every process. Callable from any thread.
namespace tarn::PlainText {

/// The text of the file is its bytes: by its name it is read as `TextExtractor::Method::plain`, and
/// it is no mail, whose words stand in parts and in encodings of their own.
bool isPlain(std::string_view fileName);

/// The bytes as UTF-8: by the byte order mark, which is left out; as UTF-8 when they are; as UTF-16
/// or UTF-32 when their zeros lie as they do there; else in the encoding that they look like.
/// A few broken bytes in UTF-8 become U+FFFD. Absent when the bytes are no text: many zeros, many
/// control characters. The view is of `bytes` when nothing had to be converted, else of `storage`.
/// Nothing is decoded behind what can hold `TextExtractor::maxCharacters`.
std::optional<std::string_view> decode(std::string_view bytes, std::string& storage);

/// The decoded text as it is kept: tidied and cut.
std::optional<std::string> text(std::string bytes);

/// Ends lines with "\n" alone (also those that end in "\r", a form feed, a vertical tab, U+0085,
/// U+2028 or U+2029), drops the other control characters and soft hyphens, and writes ligatures
/// (“ﬁ”) as their letters, so that words are found whole. `text` is UTF-8; broken bytes in it
/// become U+FFFD. Then cuts it to `TextExtractor::maxCharacters` characters. White space alone
/// becomes nothing.
void tidy(std::string& text);

}  // namespace tarn::PlainText
