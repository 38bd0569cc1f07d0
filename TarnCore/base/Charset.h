#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Texts in encodings other than UTF-8, by ICU's converters. Callable from any thread.
namespace tarn::Charset {

/// Appends `bytes` as UTF-8, what means nothing in the encoding as U+FFFD. `name` is any name that
/// ICU, mail or the web know ("ISO-8859-1", "cp1251", "x-sjis"); the names of encodings that
/// everybody sends a superset of stand for the superset, as in the Encoding Standard of the web.
/// Returns false, and appends nothing, when there is no such encoding. Stops when `out` has become
/// longer than `most` bytes.
bool append(std::string& out, std::string_view bytes, const std::string& name,
            std::size_t most = static_cast<std::size_t>(-1));

/// The same into a new string; absent when there is no such encoding.
std::optional<std::string> toUTF8(std::string_view bytes, const std::string& name);

/// The encoding that the bytes look most like, from statistics of languages; absent when nothing
/// fits. For bytes that are not UTF-8.
std::optional<std::string> detect(std::string_view bytes);

/// Of a Windows code page ("windows-1252"); empty for numbers that are none.
std::string codePage(int number);

}  // namespace tarn::Charset
