#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Mail as programs save it (RFC 5322, MIME). Callable from any thread.
namespace tarn::MailText {

/// Subject, From, To, Cc and Date, a line each, and the text of the parts: of alternatives the
/// plain one, HTML without its markup, messages within the message; no attachments. What does not
/// begin like a mail is read as plain text. Absent when it is none either.
std::optional<std::string> read(std::string_view bytes);

/// "emlx": a line with the number of bytes of the mail, the mail, and a property list about it.
std::optional<std::string> readWithLength(std::string_view bytes);

/// Text of a header with its encoded words (RFC 2047) resolved.
std::string decodedHeader(std::string_view value);

}  // namespace tarn::MailText
