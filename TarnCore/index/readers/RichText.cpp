#include "TarnCore/index/readers/RichText.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "TarnCore/base/Charset.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/readers/TextBuilder.h"

namespace tarn::RichText {
namespace {

constexpr std::string_view signature = "{\\rtf";
constexpr int westernPage = 1252;
/// Deeper groups are counted and otherwise take on what the deepest has.
constexpr std::size_t deepest = 1000;
constexpr std::size_t mostFonts = 10'000;

/// Groups that hold no text of the document, besides those that begin with "\*".
constexpr std::string_view hidden[] = {
    "colortbl",   "datafield", "fldinst", "fontemb", "fontfile", "info", "listtext",
    "nonshppict", "objdata",   "pict",    "pntext",  "shprslt",  "sn",   "sp",
    "stylesheet", "sv",        "tc",      "tcn",     "txe",      "xe"};
static_assert(std::ranges::is_sorted(hidden));

/// Marked with "\*", and yet what a person reads.
constexpr std::string_view shown[] = {"shpinst"};

struct Mark {
    std::string_view word;
    char32_t character;
};
constexpr Mark marks[] = {
    {"bullet", U'•'},    {"emdash", U'—'},    {"emspace", U' '}, {"endash", U'–'},
    {"enspace", U' '},   {"ldblquote", U'“'}, {"lquote", U'‘'},  {"qmspace", U' '},
    {"rdblquote", U'”'}, {"rquote", U'’'},
};

/// The code page of a "\fcharset".
int pageOfFontCharset(int charset) {
    switch (charset) {
        case 77:
            return 10000;
        case 128:
            return 932;
        case 129:
            return 949;
        case 130:
            return 1361;
        case 134:
            return 936;
        case 136:
            return 950;
        case 161:
            return 1253;
        case 162:
            return 1254;
        case 163:
            return 1258;
        case 177:
            return 1255;
        case 178:
            return 1256;
        case 186:
            return 1257;
        case 204:
            return 1251;
        case 222:
            return 874;
        case 238:
            return 1250;
        case 254:
            return 437;
        case 255:
            return 850;
        default:
            return 0;  // that of the document
    }
}

bool isLetter(char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexDigit(char c) {
    if (isDigit(c)) return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

class Reader {
public:
    explicit Reader(std::string_view bytes) : text_(bytes) {}

    std::optional<std::string> read() {
        while (at_ < text_.size() && !isOver_ && !out_.isFull()) step();
        flush();
        if (!isOver_ && !out_.isFull()) return std::nullopt;
        return out_.take();
    }

private:
    /// What a group inherits from the one around it.
    struct Group {
        int page = 0;      ///< Of the font; 0: that of the document.
        int fallback = 1;  ///< Characters that stand behind each "\u" for old readers.
        bool isHidden = false;
        bool isFontTable = false;
        bool isIgnorable = false;  ///< Begins with "\*", and its word has not come yet.
    };

    void step() {
        const char c = text_[at_++];
        switch (c) {
            case '{':
                open();
                break;
            case '}':
                close();
                break;
            case '\\':
                control();
                break;
            case '\r':
            case '\n':
                break;
            default:
                byte(c);
        }
    }

    void open() {
        toSkip_ = 0;
        if (groups_.size() < deepest) {
            groups_.push_back(group());
        } else {
            ++deeper_;
        }
    }

    void close() {
        toSkip_ = 0;
        if (deeper_ > 0) {
            --deeper_;
        } else if (groups_.size() > 1) {
            if (group().page != groups_[groups_.size() - 2].page) flush();
            groups_.pop_back();
        }
        if (groups_.size() == 1) isOver_ = true;
    }

    Group& group() { return groups_.back(); }

    void control() {
        if (at_ == text_.size()) return;
        const char c = text_[at_];
        if (isLetter(c)) return word();
        ++at_;
        switch (c) {
            case '\'':
                return hexByte();
            case '*':
                group().isIgnorable = true;
                return;
            case '\\':
            case '{':
            case '}':
                return byte(c);
            case '~':
                return character(U' ');
            case '_':
                return character(U'-');
            case '\r':
            case '\n':
                return lineBreak();
            default:  // an optional hyphen, marks of the index
                return;
        }
    }

    void hexByte() {
        if (at_ + 2 > text_.size()) return;
        const int high = hexDigit(text_[at_]), low = hexDigit(text_[at_ + 1]);
        if (high < 0 || low < 0) return;
        at_ += 2;
        byte(static_cast<char>(high * 16 + low));
    }

    void word() {
        const std::size_t begin = at_;
        while (at_ < text_.size() && isLetter(text_[at_])) ++at_;
        const std::string_view name = text_.substr(begin, at_ - begin);
        std::optional<int> number;
        const bool isNegative =
            at_ + 1 < text_.size() && text_[at_] == '-' && isDigit(text_[at_ + 1]);
        if (isNegative) ++at_;
        while (at_ < text_.size() && isDigit(text_[at_])) {
            constexpr int largest = 100'000'000;
            number = std::min(number.value_or(0) * 10 + (text_[at_++] - '0'), largest);
        }
        if (isNegative && number) number = -*number;
        if (at_ < text_.size() && text_[at_] == ' ') ++at_;
        handle(name, number);
    }

    void handle(std::string_view name, std::optional<int> number) {
        if (std::exchange(group().isIgnorable, false) &&
            std::ranges::find(shown, name) == std::end(shown)) {
            group().isHidden = true;
        }
        if (name == "bin") {
            // Bytes as they are, braces among them.
            const auto length = static_cast<std::size_t>(std::max(number.value_or(0), 0));
            at_ += std::min(length, text_.size() - at_);
            return;
        }
        if (std::ranges::binary_search(hidden, name)) {
            group().isHidden = true;
        } else if (name == "fonttbl") {
            group().isFontTable = true;
        } else if (name == "u" && number) {
            unicode(*number);
        } else if (name == "uc" && number) {
            group().fallback = std::clamp(*number, 0, 100);
        } else if (!setPage(name, number)) {
            addMark(name);
        }
    }

    bool setPage(std::string_view name, std::optional<int> number) {
        if (name == "ansicpg") {
            if (number && *number > 0) documentPage_ = *number;
        } else if (name == "mac") {
            documentPage_ = 10000;
        } else if (name == "pc") {
            documentPage_ = 437;
        } else if (name == "pca") {
            documentPage_ = 850;
        } else if (name == "deff") {
            defaultFont_ = number.value_or(0);
        } else if (name == "f" && number) {
            font_ = *number;
            if (!group().isFontTable) setFont(*number);
        } else if (name == "plain") {
            setFont(defaultFont_);
        } else if (name == "fcharset" || name == "cpg") {
            if (!group().isFontTable || !number || fonts_.size() >= mostFonts) return true;
            const int page = name == "cpg" ? *number : pageOfFontCharset(*number);
            if (page != 0) fonts_[font_] = page;
        } else {
            return false;
        }
        return true;
    }

    void setFont(int font) {
        const auto found = fonts_.find(font);
        const int page = found == fonts_.end() ? 0 : found->second;
        if (page == group().page) return;
        flush();
        group().page = page;
    }

    void addMark(std::string_view name) {
        static constexpr std::string_view breaks[] = {"par", "line",    "sect",  "page",
                                                      "row", "nestrow", "column"};
        if (std::ranges::find(breaks, name) != std::end(breaks)) return lineBreak();
        if (name == "tab" || name == "cell" || name == "nestcell") {
            if (!isShown()) return;
            flush();
            return out_.tab();
        }
        const auto mark = std::ranges::find(marks, name, &Mark::word);
        if (mark == std::end(marks)) return;
        if (toSkip_ > 0) {  // what stands for a "\u" in old readers
            --toSkip_;
        } else {
            character(mark->character);
        }
    }

    bool isShown() { return !group().isHidden && !group().isFontTable; }

    void lineBreak() {
        if (!isShown()) return;
        flush();
        out_.lineBreak();
    }

    /// A character in the code page of the font, or a part of one.
    void byte(char c) {
        if (toSkip_ > 0) {
            --toSkip_;
            return;
        }
        group().isIgnorable = false;
        lead_ = 0;
        if (isShown()) pending_ += c;
    }

    void unicode(int number) {
        const auto unit = static_cast<char32_t>(number < 0 ? number + 0x10000 : number);
        if (unit >= 0xD800 && unit < 0xDC00) {
            lead_ = unit;
        } else if (unit >= 0xDC00 && unit < 0xE000) {
            if (lead_ != 0) character(0x10000 + ((lead_ - 0xD800) << 10) + (unit - 0xDC00));
            lead_ = 0;
        } else if (unit > 0 && unit <= 0x10FFFF) {
            character(unit);
            lead_ = 0;
        }
        toSkip_ = group().fallback;
    }

    void character(char32_t value) {
        if (!isShown()) return;
        flush();
        std::string utf8;
        Text::append(utf8, value);
        out_.add(utf8);
    }

    /// Hands on the bytes that were gathered, all of them in the current code page.
    void flush() {
        if (pending_.empty()) return;
        if (Text::isASCII(pending_)) {
            out_.add(pending_);
        } else {
            const int page = group().page != 0 ? group().page : documentPage_;
            std::string text;
            if (!Charset::append(text, pending_, Charset::codePage(page)))
                Charset::append(text, pending_, Charset::codePage(westernPage));
            out_.add(text);
        }
        pending_.clear();
    }

    std::string_view text_;
    std::size_t at_ = 0;
    TextBuilder out_;
    std::string pending_;
    std::vector<Group> groups_ = {Group()};  // the first is around the document
    std::size_t deeper_ = 0;
    bool isOver_ = false;
    int toSkip_ = 0;
    char32_t lead_ = 0;  ///< The first half of a pair of "\u".
    int documentPage_ = westernPage;
    int defaultFont_ = 0;
    int font_ = 0;                        ///< That the font table is about.
    std::unordered_map<int, int> fonts_;  ///< Code pages, where they are not the document's.
};

}  // namespace

bool isRichText(std::string_view bytes) {
    return Text::trimmed(bytes.substr(0, 64)).starts_with(signature);
}

std::optional<std::string> read(std::string_view bytes) {
    if (!isRichText(bytes)) return std::nullopt;
    return Reader(bytes).read();
}

}  // namespace tarn::RichText
