#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Pages saved with what belongs to them: a property list, binary or XML, whose "WebMainResource"
/// holds the page as "WebResourceData". Callable from any thread.
namespace tarn::WebArchiveText {

/// The text of the page itself. Absent when the bytes are none, are damaged, or say nothing.
std::optional<std::string> read(std::string_view bytes);

}  // namespace tarn::WebArchiveText
