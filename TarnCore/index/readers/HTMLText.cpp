#include "TarnCore/index/readers/HTMLText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>

#include <libxml/HTMLparser.h>

#include "TarnCore/base/Charset.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/readers/TextBuilder.h"

namespace tarn::HTMLText {
namespace {

/// In the order of the alphabet.
constexpr std::string_view blocks[] = {
    "address",  "article",    "aside",    "blockquote", "body",  "br",      "button",   "caption",
    "center",   "dd",         "details",  "dialog",     "dir",   "div",     "dl",       "dt",
    "fieldset", "figcaption", "figure",   "footer",     "form",  "frame",   "frameset", "h1",
    "h2",       "h3",         "h4",       "h5",         "h6",    "head",    "header",   "hr",
    "html",     "iframe",     "legend",   "li",         "main",  "menu",    "nav",      "noscript",
    "ol",       "optgroup",   "option",   "p",          "pre",   "section", "select",   "summary",
    "table",    "tbody",      "textarea", "tfoot",      "thead", "title",   "tr",       "ul"};
static_assert(std::ranges::is_sorted(blocks));

/// Where the names with each first letter begin in `blocks`: most tags need one comparison or none.
constexpr std::array<std::uint8_t, 27> firstBlocks = [] {
    std::array<std::uint8_t, 27> first{};
    for (std::size_t letter = 0; letter < first.size(); ++letter) {
        while (first[letter] < std::size(blocks) &&
               blocks[first[letter]][0] < static_cast<char>('a' + letter)) {
            ++first[letter];
        }
    }
    return first;
}();

/// `name` begins with a small letter.
bool isBlock(std::string_view name) {
    const auto letter = static_cast<std::size_t>(name[0] - 'a');
    return std::find(blocks + firstBlocks[letter], blocks + firstBlocks[letter + 1], name) !=
           blocks + firstBlocks[letter + 1];
}

bool isLetter(char byte) { return (byte | 0x20) >= 'a' && (byte | 0x20) <= 'z'; }
bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// What Windows-1252 has in the place of control characters; pages mean those.
constexpr std::array<std::uint16_t, 32> windowsCharacters = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

/// Of "&name;"; 0 when there is none. The library compares with one name after the other, so it is
/// asked only once for all.
char32_t namedCharacter(std::string_view name) {
    static const std::map<std::string, char32_t, std::less<>> characters = [] {
        std::map<std::string, char32_t, std::less<>> all = {{"apos", '\''}};
        constexpr unsigned highest = 9830;  // "diams"
        for (unsigned value = 1; value <= highest; ++value) {
            if (const auto* entity = htmlEntityValueLookup(value)) all.emplace(entity->name, value);
        }
        return all;
    }();
    const auto found = characters.find(name);
    return found == characters.end() ? 0 : found->second;
}

/// Finds the next of a few things that begin with the same text. Once there is none, it does not
/// look again, so that a million openings without an end cost one look.
class Finder {
public:
    explicit Finder(std::string_view wanted) : wanted_(wanted) {}
    std::size_t find(std::string_view text, std::size_t from) {
        if (isGone_) return text.npos;
        const std::size_t found = text.find(wanted_, from);
        isGone_ = found == text.npos;
        return found;
    }

private:
    std::string_view wanted_;
    bool isGone_ = false;
};

/// One way through the markup, from its beginning to its end.
class Stripper {
public:
    explicit Stripper(std::string_view markup)
        : text_(markup),
          nextTag_(std::min(text_.find('<'), text_.size())),
          nextReference_(std::min(text_.find('&'), text_.size())) {}

    std::string strip() {
        while (at_ < text_.size() && !out_.isFull()) {
            if (nextTag_ < at_) nextTag_ = std::min(text_.find('<', at_), text_.size());
            if (nextReference_ < at_) nextReference_ = std::min(text_.find('&', at_), text_.size());
            const std::size_t mark = std::min(nextTag_, nextReference_);
            addText(text_.substr(at_, mark - at_));
            at_ = mark;
            if (at_ == text_.size()) break;
            if (text_[at_] == '&') {
                reference();
            } else {
                markup();
            }
        }
        return out_.take().value_or("");
    }

private:
    void addText(std::string_view text) {
        if (preformatted_ > 0) {
            out_.addLines(text);
        } else {
            out_.add(text);
        }
    }

    /// "&name;", "&#65;" or "&#x41;"; anything else is text.
    void reference() {
        constexpr std::size_t longest = 12;
        const std::string_view rest = text_.substr(at_ + 1, longest);
        const std::size_t end = rest.find(';');
        char32_t character = 0;
        if (end != rest.npos && end > 0) {
            const std::string_view name = rest.substr(0, end);
            character = name[0] == '#' ? numbered(name.substr(1)) : namedCharacter(name);
        }
        if (character == 0) {
            out_.add("&");
            ++at_;
            return;
        }
        std::string utf8;
        Text::append(utf8, character);
        out_.add(utf8);
        at_ += end + 2;
    }

    static char32_t numbered(std::string_view digits) {
        const bool isHex = !digits.empty() && (digits[0] == 'x' || digits[0] == 'X');
        if (isHex) digits.remove_prefix(1);
        std::uint32_t number = 0;
        const char* const end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, number, isHex ? 16 : 10);
        if (error != std::errc() || stop != end) return 0;
        if (number >= 0x80 && number < 0xA0) return windowsCharacters[number - 0x80];
        const bool isCharacter =
            number != 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
        return isCharacter ? number : 0xFFFD;
    }

    void markup() {
        const std::string_view rest = text_.substr(at_);
        if (rest.size() > 1 && isLetter(rest[1])) {
            tag(1);
        } else if (rest.size() > 2 && rest[1] == '/' && isLetter(rest[2])) {
            tag(2);
        } else if (rest.starts_with("<!--")) {
            skipTo(commentEnd_, 4, 3);
        } else if (rest.starts_with("<![CDATA[")) {
            const std::size_t end = cdataEnd_.find(text_, at_);
            if (end == text_.npos) {
                at_ += 9;
            } else {
                addText(text_.substr(at_ + 9, end - at_ - 9));
                at_ = end + 3;
            }
        } else if (rest.size() > 1 && (rest[1] == '!' || rest[1] == '?')) {
            skipTo(tagEnd_, 2, 1);
        } else {
            out_.add("<");
            ++at_;
        }
    }

    /// Behind the end of what begins here; where it has none, behind its beginning.
    void skipTo(Finder& end, std::size_t beginning, std::size_t ending) {
        const std::size_t found = end.find(text_, at_ + beginning);
        at_ = found == text_.npos ? at_ + beginning : found + ending;
    }

    void tag(std::size_t nameOffset) {
        const std::size_t begin = at_ + nameOffset;
        std::size_t end = begin;
        while (end < text_.size() && (isLetter(text_[end]) || isDigit(text_[end]))) ++end;
        constexpr std::size_t longestName = 16;
        const bool isEnd = nameOffset == 2;
        const std::string name =
            Text::lowercasedASCII(text_.substr(begin, std::min(end - begin, longestName)));
        const std::size_t close = closing(end);
        if (close == text_.npos) {
            // A tag that the end of the page tore.
            at_ = text_.size();
            return;
        }
        at_ = close + 1;
        if (!isEnd && name == "script") return skipElement(scripts_, "script");
        if (!isEnd && name == "style") return skipElement(styles_, "style");
        if (name == "td" || name == "th") return out_.tab();
        if (name == "pre" || name == "textarea") {
            preformatted_ = std::max(0, preformatted_ + (isEnd ? -1 : 1));
        }
        if (isBlock(name)) out_.lineBreak();
    }

    /// The '>' that ends a tag; one between quotes does not, unless the quotes never close.
    std::size_t closing(std::size_t from) {
        for (std::size_t at = from; quotesCount_;) {
            while (at < text_.size() && text_[at] != '>' && text_[at] != '"' && text_[at] != '\'')
                ++at;
            // With every end in quotes, they are not what they look like; and one look was enough.
            if (at == text_.size()) break;
            if (text_[at] == '>') return at;
            // Only behind an equals sign is it more than a stray mark.
            const bool opens = text_.substr(from, at - from).ends_with('=') ||
                               text_.substr(from, at - from).ends_with("= ");
            const std::size_t other =
                opens ? (text_[at] == '"' ? doubles_ : singles_).find(text_, at + 1) : at;
            at = other == text_.npos ? at + 1 : other + 1;
        }
        quotesCount_ = false;
        return tagEnd_.find(text_, from);
    }

    struct Ending {
        bool isGone = false;
    };

    /// Behind "</name>", in whatever case and with space in it.
    void skipElement(Ending& ending, std::string_view name) {
        if (ending.isGone) return;
        for (std::size_t at = at_; (at = text_.find("</", at)) != text_.npos; at += 2) {
            if (Text::lowercasedASCII(text_.substr(at + 2, name.size())) != name) continue;
            std::size_t close = at + 2 + name.size();
            if (close < text_.size() && (isLetter(text_[close]) || isDigit(text_[close]))) continue;
            close = tagEnd_.find(text_, close);
            if (close == text_.npos) break;
            at_ = close + 1;
            return;
        }
        ending.isGone = true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t nextTag_;  ///< The '<' at `at_` or behind it; may be out of date when before it.
    std::size_t nextReference_;  ///< The '&' likewise.
    bool quotesCount_ = true;
    TextBuilder out_;
    int preformatted_ = 0;
    Finder commentEnd_{"-->"};
    Finder cdataEnd_{"]]>"};
    Finder tagEnd_{">"};
    Finder doubles_{"\""};
    Finder singles_{"'"};
    Ending scripts_;
    Ending styles_;
};

/// The encoding that the page says it has: in a meta element or in the declaration of XML.
std::string namedCharset(std::string_view bytes) {
    constexpr std::size_t lookedAt = 4096;  // browsers look at 1024
    const std::string head = Text::lowercasedASCII(bytes.substr(0, lookedAt));
    for (const std::string_view key : {"charset", "encoding"}) {
        for (std::size_t at = 0; (at = head.find(key, at)) != head.npos;) {
            at += key.size();
            std::size_t value = std::min(head.find_first_not_of(" \t\r\n", at), head.size());
            if (value == head.size() || head[value] != '=') continue;
            value = head.find_first_not_of(" \t\r\n\"'", value + 1);
            if (value == head.npos) break;
            const std::size_t end =
                std::min(head.find_first_of(" \t\r\n\"'/>;?", value), head.size());
            return head.substr(value, end - value);
        }
    }
    return {};
}

}  // namespace

std::optional<std::string> read(std::string_view bytes, const std::string& charset) {
    std::string storage;
    const std::string wanted =
        charset.empty() ? namedCharset(bytes) : Text::lowercasedASCII(charset);
    const bool isUnicode = wanted.starts_with("utf-");
    // UTF-8 cannot be anything else by chance, whatever the page says; encodings of seven bits can.
    const bool isSevenBit = wanted.starts_with("iso-2022") || wanted.starts_with("hz-");
    const bool isMarked = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    std::optional<std::string_view> text;
    if (!wanted.empty() && !isUnicode && !isMarked && (isSevenBit || !Text::isValidUTF8(bytes)) &&
        bytes.find('\0') == bytes.npos && Charset::append(storage, bytes, wanted)) {
        text = storage;
    } else {
        text = PlainText::decode(bytes, storage);
    }
    if (!text) return std::nullopt;
    std::string stripped = stripMarkup(*text);
    if (stripped.empty()) return std::nullopt;
    return stripped;
}

std::string stripMarkup(std::string_view markup) { return Stripper(markup).strip(); }

}  // namespace tarn::HTMLText
