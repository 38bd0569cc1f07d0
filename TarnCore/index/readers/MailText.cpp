#include "TarnCore/index/readers/MailText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

#include "TarnCore/base/Base64.h"
#include "TarnCore/base/Charset.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/readers/HTMLText.h"
#include "TarnCore/index/readers/TextBuilder.h"

namespace tarn::MailText {
namespace {

/// Parts within parts; mail programs give up at about as many.
constexpr int deepest = 16;
constexpr std::size_t mostParts = 10'000;        // of one part
constexpr std::size_t longestBoundary = 200;     // bytes; 70 are allowed
constexpr std::size_t longestHeader = 1 << 20;   // bytes of all fields together
constexpr std::size_t longestValue = 64 * 1024;  // bytes of one

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Quoted-printable, or the like of it in headers, where "_" is a space.
std::string decodedQuoted(std::string_view text, bool isHeader) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (isHeader && c == '_') {
            out += ' ';
        } else if (c != '=') {
            out += c;
        } else if (at + 2 < text.size() && hexDigit(text[at + 1]) >= 0 &&
                   hexDigit(text[at + 2]) >= 0) {
            out += static_cast<char>(hexDigit(text[at + 1]) * 16 + hexDigit(text[at + 2]));
            at += 2;
        } else {
            // A line that goes on, perhaps with spaces that were added on the way.
            const std::size_t end = text.find_first_not_of(" \t\r", at + 1);
            if (end == text.npos) break;
            if (text[end] == '\n') {
                at = end;
            } else {
                out += c;
            }
        }
    }
    return out;
}

std::string toUTF8(std::string_view bytes, const std::string& charset) {
    std::string out;
    const bool isUTF8 = Text::lowercasedASCII(charset) == "utf-8" || charset.empty();
    if (!isUTF8 && Charset::append(out, bytes, charset)) return out;
    const auto decoded = PlainText::decode(bytes, out);
    return decoded ? std::string(*decoded) : std::string();
}

/// "=?charset?B?…?="; `length` is all of it.
struct EncodedWord {
    std::string charset;
    std::string bytes;
    std::size_t length = 0;
};

std::optional<EncodedWord> encodedWord(std::string_view text) {
    if (!text.starts_with("=?")) return std::nullopt;
    // Longer than the 75 characters of the standard, since not all keep to it.
    const std::string_view near = text.substr(0, 4096);
    const std::size_t kind = near.find('?', 2);
    if (kind == near.npos || kind + 2 >= near.size() || near[kind + 2] != '?') return std::nullopt;
    const std::size_t end = near.find("?=", kind + 3);
    if (end == near.npos) return std::nullopt;
    EncodedWord word;
    word.charset = Text::lowercasedASCII(near.substr(2, kind - 2));
    // A language may follow the charset (RFC 2231).
    word.charset.resize(std::min(word.charset.find('*'), word.charset.size()));
    const std::string_view content = near.substr(kind + 3, end - kind - 3);
    const char how = near[kind + 1];
    if (how == 'B' || how == 'b') {
        word.bytes = Base64::decode(content);
    } else if (how == 'Q' || how == 'q') {
        word.bytes = decodedQuoted(content, true);
    } else {
        return std::nullopt;
    }
    word.length = end + 2;
    return word;
}

struct Header {
    std::string subject, from, to, cc, date;
    std::string type = "text/plain";
    std::string encoding, disposition;
    std::string_view body;
    bool isMail = false;  ///< It has a field that every mail has.
};

/// The lines of a field without their ends.
std::string unfolded(std::string_view lines) {
    std::string out;
    for (const std::string_view line : Text::split(lines.substr(0, longestValue), '\n')) {
        if (!out.empty()) out += ' ';
        out += Text::trimmed(line);
    }
    return out;
}

void setField(Header& header, std::string_view name, std::string_view lines) {
    const std::string key = Text::lowercasedASCII(name);
    const struct {
        std::string_view name;
        std::string Header::*value;
    } fields[] = {
        {"subject", &Header::subject},
        {"from", &Header::from},
        {"to", &Header::to},
        {"cc", &Header::cc},
        {"date", &Header::date},
        {"content-type", &Header::type},
        {"content-transfer-encoding", &Header::encoding},
        {"content-disposition", &Header::disposition},
    };
    for (const auto& field : fields)
        if (key == field.name) header.*field.value = unfolded(lines);
    for (const std::string_view sign : {"from", "date", "subject", "received", "return-path",
                                        "message-id", "mime-version", "x-mozilla-status"}) {
        if (key == sign) header.isMail = true;
    }
}

/// The fields up to the empty line, and what follows it.
Header parsedHeader(std::string_view part) {
    Header header;
    std::size_t at = 0;
    if (part.starts_with("From ")) {  // the line that mailboxes begin a mail with
        at = std::min(part.find('\n'), part.size() - 1) + 1;
    }
    while (at < part.size()) {
        std::size_t end = at;
        do {  // lines that begin with white space belong to the one before
            end = std::min(part.find('\n', end), part.size() - 1) + 1;
        } while (end < part.size() && (part[end] == ' ' || part[end] == '\t'));
        const std::string_view field = part.substr(at, end - at);
        at = end;
        if (Text::trimmed(field).empty()) break;
        const std::size_t colon = field.find(':');
        const bool isField = colon != field.npos && colon > 0 &&
                             field.substr(0, colon).find_first_of(" \t\r\n") == field.npos;
        if (isField && at < longestHeader)
            setField(header, field.substr(0, colon), field.substr(colon + 1));
    }
    header.body = part.substr(std::min(at, part.size()));
    return header;
}

/// The value of "; name=value" or "; name="value"" of a field.
std::string parameter(std::string_view field, std::string_view name) {
    const std::string lower = Text::lowercasedASCII(field);
    for (std::size_t at = 0; (at = lower.find(name, at)) != lower.npos; at += name.size()) {
        const bool begins =
            at > 0 && (lower[at - 1] == ';' || lower[at - 1] == ' ' || lower[at - 1] == '\t');
        std::size_t value = lower.find_first_not_of(" \t", at + name.size());
        if (!begins || value == lower.npos || lower[value] != '=') continue;
        value = lower.find_first_not_of(" \t", value + 1);
        if (value == lower.npos) return {};
        const bool isQuoted = lower[value] == '"';
        if (isQuoted) ++value;
        const std::size_t end = lower.find_first_of(isQuoted ? "\"" : "; \t\r\n", value);
        return std::string(field.substr(value, std::min(end, field.size()) - value));
    }
    return {};
}

/// The parts between lines that begin with two dashes and the boundary. The last may lack its end.
std::vector<std::string_view> parts(std::string_view body, const std::string& boundary) {
    std::vector<std::string_view> found;
    const std::string mark = "--" + boundary;
    std::optional<std::size_t> begin;
    for (std::size_t at = 0; at < body.size();) {
        const std::size_t mine = body.find(mark, at);
        if (mine == body.npos) break;
        at = mine + mark.size();
        if (mine > 0 && body[mine - 1] != '\n') continue;
        // A longer boundary of a part within may begin like this one.
        const bool isLast = body.substr(at).starts_with("--");
        const std::size_t lineEnd = std::min(body.find('\n', at), body.size());
        if (!isLast && !Text::trimmed(body.substr(at, lineEnd - at)).empty()) continue;
        if (begin) found.push_back(body.substr(*begin, mine - *begin));
        begin.reset();
        if (isLast || found.size() >= mostParts) break;
        begin = std::min(lineEnd + 1, body.size());
        at = *begin;
    }
    if (begin) found.push_back(body.substr(*begin));
    return found;
}

class MailReader {
public:
    explicit MailReader(TextBuilder& out) : out_(out) {}

    void message(const Header& header, int depth) {
        field("Subject", header.subject);
        field("From", header.from);
        field("To", header.to);
        field("Cc", header.cc);
        field("Date", header.date);
        part(header, depth);
    }

private:
    void field(const char* name, const std::string& value) {
        if (value.empty()) return;
        out_.add(name);
        out_.add(": ");
        out_.add(decodedHeader(value));
        out_.lineBreak();
    }

    static std::string mediaType(const Header& header) {
        const std::string_view type = header.type;
        return Text::lowercasedASCII(Text::trimmed(type.substr(0, type.find(';'))));
    }

    void part(const Header& header, int depth) {
        if (depth > deepest || out_.isFull()) return;
        if (Text::lowercasedASCII(header.disposition).starts_with("attachment")) return;
        const std::string type = mediaType(header);
        if (type.starts_with("multipart/")) return multipart(header, type, depth);
        if (type == "message/rfc822") {
            std::string storage;
            return message(parsedHeader(decoded(header, storage)), depth + 1);
        }
        const bool isText = type.starts_with("text/") || type == "message/delivery-status";
        if ((!isText && !type.empty()) || type == "text/rtf" || type == "text/css") return;
        const std::string charset = parameter(header.type, "charset");
        std::string storage;
        const std::string_view bytes = decoded(header, storage);
        if (type == "text/html") {
            out_.addLines(HTMLText::read(bytes, charset).value_or(""));
        } else {
            std::string text = toUTF8(bytes, charset);
            PlainText::tidy(text);
            out_.addLines(text);
        }
        out_.lineBreak();
    }

    void multipart(const Header& header, const std::string& type, int depth) {
        const std::string boundary = parameter(header.type, "boundary");
        if (boundary.empty() || boundary.size() > longestBoundary) return;
        std::vector<Header> inside;
        for (const std::string_view one : parts(header.body, boundary))
            inside.push_back(parsedHeader(one));
        const bool isChoice = type == "multipart/alternative";
        if (isChoice) {
            std::ranges::stable_partition(
                inside, [](const Header& one) { return mediaType(one) == "text/plain"; });
        }
        for (const Header& one : inside) {
            const std::size_t before = out_.length();
            part(one, depth + 1);
            if (isChoice && out_.length() > before) break;
        }
    }

    /// A view of the mail, or of `storage`.
    static std::string_view decoded(const Header& header, std::string& storage) {
        const std::string how = Text::lowercasedASCII(Text::trimmed(header.encoding));
        if (how == "base64") return storage = Base64::decode(header.body);
        if (how == "quoted-printable") return storage = decodedQuoted(header.body, false);
        return header.body;
    }

    TextBuilder& out_;
};

}  // namespace

std::string decodedHeader(std::string_view value) {
    std::string out, plain, pending, charset;
    const auto flush = [&](bool wordFollows) {
        // Words may tear a character, so those of one encoding are decoded together.
        if (!pending.empty()) out += toUTF8(pending, charset);
        pending.clear();
        // White space between two of them is only there to break the line.
        if (!wordFollows || !Text::trimmed(plain).empty() || charset.empty())
            out += toUTF8(plain, "");
        plain.clear();
    };
    for (std::size_t at = 0; at < value.size();) {
        const auto word = value[at] == '=' ? encodedWord(value.substr(at)) : std::nullopt;
        if (!word) {
            plain += value[at++];
            continue;
        }
        const bool continues =
            !pending.empty() && word->charset == charset && Text::trimmed(plain).empty();
        if (continues) {
            plain.clear();
        } else {
            flush(true);
        }
        pending += word->bytes;
        charset = word->charset;
        at += word->length;
    }
    flush(false);
    return out;
}

std::optional<std::string> read(std::string_view bytes) {
    const Header header = parsedHeader(bytes);
    if (!header.isMail) {
        auto text = PlainText::text(std::string(bytes));
        return text && !text->empty() ? std::move(text) : std::nullopt;
    }
    TextBuilder out;
    MailReader(out).message(header, 0);
    return out.take();
}

std::optional<std::string> readWithLength(std::string_view bytes) {
    const std::size_t feed = bytes.find('\n');
    const std::string_view line = Text::trimmed(bytes.substr(0, feed));
    std::size_t length = 0;
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), length);
    if (feed == bytes.npos || error != std::errc() || stop != line.data() + line.size())
        return read(bytes);
    return read(bytes.substr(feed + 1, length));
}

}  // namespace tarn::MailText
