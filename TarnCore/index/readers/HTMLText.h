#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Web pages. Callable from any thread. Time grows with the length of the page alone, whatever is
/// in it.
namespace tarn::HTMLText {

/// The page in the encoding that its byte order mark, `charset` (of mail and web archives) or it
/// itself names, unless it is UTF-8, which nothing is by chance. Absent when the bytes are no text
/// or say nothing.
std::optional<std::string> read(std::string_view bytes, const std::string& charset = {});

/// What a person reads of markup in UTF-8: without script and style elements and their content, and
/// without every other tag and comment. Elements that begin on a line of their own do, the cells of
/// a table are a tab apart, references to characters are resolved. A script that does not end is
/// taken for a stray tag.
std::string stripMarkup(std::string_view markup);

}  // namespace tarn::HTMLText
