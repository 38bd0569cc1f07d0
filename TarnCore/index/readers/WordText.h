#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The old word-processing format ("doc"), which `catdoc` reads. Callable from any thread.
namespace tarn::WordText {

/// The bytes begin as the container of those documents does. catdoc prints rubbish for others.
bool isWord(std::string_view bytes);

/// catdoc is installed; without it, no such document has text.
bool isAvailable();

/// catdoc prints the instructions of links in front of what a person sees of them; the text without
/// those.
std::string withoutLinks(std::string_view text);

/// `file` is an open descriptor, whose offset moves.
std::optional<std::string> read(int file);

}  // namespace tarn::WordText
