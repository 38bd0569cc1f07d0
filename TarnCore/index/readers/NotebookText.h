#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Notebooks of programs and their results (Jupyter, nbformat 3 and 4). Callable from any thread.
namespace tarn::NotebookText {

/// The sources of the cells and the text they printed; no pictures. Absent when the bytes are no
/// notebook or say nothing.
std::optional<std::string> read(std::string_view bytes);

}  // namespace tarn::NotebookText
