#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Rich text (RTF 1.9.1). Callable from any thread. Groups may nest as deeply as they like; time
/// and memory grow with the length of the document alone.
namespace tarn::RichText {

bool isRichText(std::string_view bytes);

/// The text as it is read: paragraphs, rows and lines end in a line break, cells are a tab apart,
/// characters are resolved in the code pages of their fonts. Tables of fonts and styles, pictures,
/// embedded objects, field instructions and every destination marked as ignorable are left out,
/// except for text boxes. Absent when the bytes are none, end before their last group does, or say
/// nothing.
std::optional<std::string> read(std::string_view bytes);

}  // namespace tarn::RichText
