#pragma once

#include <string>
#include <string_view>

/// Bytes as text (RFC 4648, section 4).
namespace tarn::Base64 {

/// Never fails: characters outside of the alphabet are skipped, as mail and property lists break
/// lines and indent them, and a last character that makes no byte is dropped.
std::string decode(std::string_view text);

}  // namespace tarn::Base64
