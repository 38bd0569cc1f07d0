#include "TarnCore/preview/CodeTokens.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

#include "TarnCore/base/Text.h"

namespace tarn::CodeTokens {
namespace {

using Form = CodeLanguage::Form;
using Words = std::unordered_map<std::string_view, CodeToken>;

/// What a line begins in, the low byte of a state; the rest of it is a number of the mode's own.
enum class Mode : std::uint8_t {
    plain,
    comment,  ///< How deep.
    string,   ///< Which of the language's strings.
    tag,      ///< The quote that is open, or 0.
    fence,    ///< Code in Markdown.
};

constexpr std::uint32_t deepestComment = 1000;
constexpr std::size_t longestWord = 32;

State stateOf(Mode mode, std::uint32_t number) {
    return static_cast<std::uint32_t>(mode) | number << 8;
}

Words wordsOf(const CodeLanguage& language) {
    Words words;
    for (const std::string_view word : Text::split(language.values, ' '))
        if (!word.empty()) words.emplace(word, CodeToken::value);
    for (const std::string_view word : Text::split(language.keywords, ' '))
        if (!word.empty()) words.insert_or_assign(word, CodeToken::keyword);
    return words;
}

const Words& words(const CodeLanguage& language) {
    static const auto tables = [] {
        std::unordered_map<const CodeLanguage*, Words> all;
        for (const CodeLanguage& one : CodeLanguage::all()) all.emplace(&one, wordsOf(one));
        return all;
    }();
    static const Words none;
    const auto found = tables.find(&language);
    return found == tables.end() ? none : found->second;
}

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isHexDigit(char16_t c) {
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
bool isLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c > 0x7F;
}
bool isWord(char16_t c) { return isLetter(c) || isDigit(c); }
bool isBlank(char16_t c) { return c == u' ' || c == u'\t'; }

class Line {
public:
    Line(const CodeLanguage& language, std::u16string_view text, std::vector<CodeSpan>& spans)
        : language_(language), words_(words(language)), text_(text), spans_(spans) {}

    State read(State state) {
        switch (language_.form) {
            case Form::markdown:
                return markdown(state);
            case Form::patch:
                patch();
                return 0;
            default:
                break;
        }
        resume(state);
        first_ = at_;
        while (first_ < text_.size() && isBlank(text_[first_])) ++first_;
        if (language_.form == Form::keyed && state == 0) keyedStart();
        while (at_ < text_.size()) step();
        return left_;
    }

private:
    char16_t peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
    }
    char16_t before() const { return at_ > 0 ? text_[at_ - 1] : u'\0'; }
    bool startsWith(std::string_view ascii) const {
        if (ascii.empty() || text_.size() - at_ < ascii.size()) return false;
        return std::equal(ascii.begin(), ascii.end(), text_.begin() + static_cast<long>(at_),
                          [](char a, char16_t b) { return static_cast<char16_t>(a) == b; });
    }
    void add(std::size_t start, std::size_t end, CodeToken token) {
        if (end <= start) return;
        spans_.push_back(
            {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start), token});
    }

    void resume(State state) {
        const std::uint32_t number = state >> 8;
        switch (static_cast<Mode>(state & 0xFF)) {
            case Mode::comment:
                if (!language_.blockClose.empty()) comment(0, number);
                break;
            case Mode::string:
                if (number < language_.strings.size()) string(0, number);
                break;
            case Mode::tag:
                tag(static_cast<char16_t>(number));
                break;
            case Mode::plain:
            case Mode::fence:
                break;
        }
    }

    void step() {
        if (blockComment() || lineComment()) return;
        if (language_.form == Form::markup) {
            markup();
            return;
        }
        for (std::size_t i = 0; i < language_.strings.size(); ++i) {
            const std::string_view open = language_.strings[i].open;
            if (!startsWith(open)) continue;
            const std::size_t start = at_;
            at_ += open.size();
            string(start, i);
            return;
        }
        if (directive()) return;
        if (isDigit(peek())) {
            number();
        } else if (isLetter(peek()) || peek() == u'$') {
            word();
        } else if (language_.form == Form::style && peek() == u'#') {
            colour();
        } else {
            ++at_;
        }
    }

    bool blockComment() {
        if (!startsWith(language_.blockOpen)) return false;
        const std::size_t start = at_;
        at_ += language_.blockOpen.size();
        comment(start, 1);
        return true;
    }

    /// From inside a comment `depth` deep to its end, or that of the line.
    void comment(std::size_t start, std::uint32_t depth) {
        while (at_ < text_.size() && depth > 0) {
            if (startsWith(language_.blockClose)) {
                at_ += language_.blockClose.size();
                --depth;
            } else if (language_.nestsComments && depth < deepestComment &&
                       startsWith(language_.blockOpen)) {
                at_ += language_.blockOpen.size();
                ++depth;
            } else {
                ++at_;
            }
        }
        add(start, at_, CodeToken::comment);
        if (depth > 0) left_ = stateOf(Mode::comment, depth);
    }

    bool lineComment() {
        for (const std::string_view mark : language_.lineComments) {
            if (!startsWith(mark)) continue;
            const char16_t previous = before();
            // Settings have marks in their values; shells in "$#", TeX in "\%", URLs in "http://".
            if (language_.form == Form::keyed && language_.strings.empty() && at_ != first_)
                continue;
            if (mark.size() == 1 && (isWord(previous) || previous == u'$' || previous == u'{' ||
                                     previous == u'\\' || previous == u'&'))
                continue;
            if (mark == "//" && previous == u':') continue;
            add(at_, text_.size(), CodeToken::comment);
            at_ = text_.size();
            return true;
        }
        return false;
    }

    /// From inside one of the language's strings, which began at `start`.
    void string(std::size_t start, std::size_t which) {
        const CodeLanguage::String& kind = language_.strings[which];
        bool isClosed = false;
        while (at_ < text_.size() && !isClosed) {
            if (kind.escapes && peek() == u'\\') {
                at_ += 2;
            } else if (startsWith(kind.close)) {
                at_ += kind.close.size();
                isClosed = true;
            } else {
                ++at_;
            }
        }
        at_ = std::min(at_, text_.size());
        std::size_t after = at_;
        while (after < text_.size() && isBlank(text_[after])) ++after;
        const bool isKey =
            language_.form == Form::json && after < text_.size() && text_[after] == u':';
        add(start, at_, isKey ? CodeToken::key : CodeToken::string);
        if (!isClosed && kind.isLong)
            left_ = stateOf(Mode::string, static_cast<std::uint32_t>(which));
    }

    bool directive() {
        if (language_.directive == 0 || peek() != static_cast<char16_t>(language_.directive))
            return false;
        const std::size_t start = at_;
        if (language_.directive == '#' && at_ != first_) return false;
        ++at_;
        if (language_.directive == '#') {
            if (peek() == u'[' || (peek() == u'!' && peek(1) == u'[')) {  // Rust's attributes
                while (at_ < text_.size() && peek() != u']') ++at_;
                at_ = std::min(at_ + 1, text_.size());
                add(start, at_, CodeToken::directive);
                return true;
            }
            while (isBlank(peek())) ++at_;
        }
        while (isWord(peek()) || (language_.directive != '\\' && peek() == u'.')) ++at_;
        add(start, at_, language_.directive == '\\' ? CodeToken::keyword : CodeToken::directive);
        header();
        return true;
    }
    /// The name in "#include <name>".
    void header() {
        std::size_t open = at_;
        while (open < text_.size() && isBlank(text_[open])) ++open;
        if (language_.directive != '#' || open >= text_.size() || text_[open] != u'<') return;
        const std::size_t close = text_.find(u'>', open);
        if (close == text_.npos) return;
        add(open, close + 1, CodeToken::string);
        at_ = close + 1;
    }

    void number() {
        const std::size_t start = at_;
        const bool isHex = peek() == u'0' && (peek(1) == u'x' || peek(1) == u'X');
        while (at_ < text_.size()) {
            const char16_t c = peek();
            const bool isSign = (c == u'+' || c == u'-') && !isHex && at_ > start &&
                                (before() == u'e' || before() == u'E') && isDigit(peek(1));
            const bool isPoint = c == u'.' && isDigit(peek(1));
            if (!isWord(c) && !isPoint && !isSign) break;
            ++at_;
        }
        if (language_.form == Form::style && peek() == u'%') ++at_;
        add(start, at_, CodeToken::number);
    }

    void word() {
        const std::size_t start = at_;
        const bool isStyle = language_.form == Form::style;
        while (isWord(peek()) || peek() == u'$' || (isStyle && peek() == u'-')) ++at_;
        if (at_ == start) {
            ++at_;
            return;
        }
        std::size_t after = at_;
        while (after < text_.size() && isBlank(text_[after])) ++after;
        if (isStyle && after < text_.size() && text_[after] == u':' && isProperty(start)) {
            add(start, at_, CodeToken::key);
            return;
        }
        if (at_ - start > longestWord) return;
        std::string ascii;
        for (std::size_t i = start; i < at_; ++i) {
            if (text_[i] > 0x7F) return;
            ascii += static_cast<char>(text_[i]);
        }
        if (language_.ignoresCase) ascii = Text::lowercasedASCII(ascii);
        const auto found = words_.find(ascii);
        if (found != words_.end()) add(start, at_, found->second);
    }
    /// A selector has a colon too ("a:hover").
    bool isProperty(std::size_t start) const {
        std::size_t i = start;
        while (i > 0 && isBlank(text_[i - 1])) --i;
        const bool begins = i == 0 || text_[i - 1] == u';' || text_[i - 1] == u'{';
        return begins && (lastBrace_ == text_.npos || lastBrace_ < at_);
    }
    void colour() {
        const std::size_t start = at_++;
        while (isHexDigit(peek())) ++at_;
        if (firstColon_ < start) add(start, at_, CodeToken::number);
    }

    void keyedStart() {
        std::size_t at = first_;
        if (at < text_.size() && text_[at] == u'[' && language_.name != "YAML") {
            add(at, text_.size(), CodeToken::heading);
            at_ = text_.size();
            return;
        }
        while (at + 1 < text_.size() && text_[at] == u'-' && isBlank(text_[at + 1])) {
            ++at;
            while (at < text_.size() && isBlank(text_[at])) ++at;
        }
        const std::size_t start = at;
        for (; at < text_.size(); ++at) {
            const char16_t c = text_[at];
            const bool endsKey =
                c == u'=' || (c == u':' && (at + 1 == text_.size() || isBlank(text_[at + 1])));
            if (endsKey) {
                add(start, at, CodeToken::key);
                at_ = at + 1;
                return;
            }
            constexpr std::u16string_view others = u"-./\"' *@+";
            if (!isWord(c) && others.find(c) == others.npos) return;
        }
    }

    void markup() {
        const bool isTag = peek() == u'<' && (isLetter(peek(1)) || peek(1) == u'/' ||
                                              peek(1) == u'?' || peek(1) == u'!');
        if (isTag) {
            const std::size_t start = at_;
            at_ += 2;
            while (isWord(peek()) || peek() == u':' || peek() == u'-' || peek() == u'.') ++at_;
            add(start, at_, CodeToken::tag);
            tag(0);
        } else if (peek() == u'&') {
            const std::size_t start = at_++;
            while (isWord(peek()) || peek() == u'#') ++at_;
            if (peek() == u';') add(start, ++at_, CodeToken::value);
        } else {
            ++at_;
        }
    }
    /// From inside a tag, with that quote open, to its end or that of the line.
    void tag(char16_t quote) {
        while (at_ < text_.size()) {
            const std::size_t start = at_;
            if (quote != 0) {
                while (at_ < text_.size() && peek() != quote) ++at_;
                const bool isClosed = at_ < text_.size();
                if (isClosed) ++at_;
                const bool opened = start > 0 && text_[start - 1] == quote;
                add(start - (opened ? 1 : 0), at_, CodeToken::string);
                if (isClosed) quote = 0;
            } else if (peek() == u'"' || peek() == u'\'') {
                quote = peek();
                ++at_;
                if (at_ == text_.size()) add(start, at_, CodeToken::string);
            } else if (peek() == u'>') {
                const bool isEmpty = before() == u'/' || before() == u'?';
                ++at_;
                const std::size_t from = isEmpty && canReach(start - 1) ? start - 1 : start;
                add(from, at_, CodeToken::tag);
                return;
            } else if (isLetter(peek())) {
                while (isWord(peek()) || peek() == u':' || peek() == u'-' || peek() == u'.') ++at_;
                add(start, at_, CodeToken::key);
            } else {
                ++at_;
            }
        }
        left_ = stateOf(Mode::tag, quote);
    }
    /// No span covers the place yet.
    bool canReach(std::size_t place) const {
        return spans_.empty() || spans_.back().start + spans_.back().length <= place;
    }

    State markdown(State state) {
        while (first_ < text_.size() && isBlank(text_[first_])) ++first_;
        at_ = first_;
        const bool isFence = startsWith("```") || startsWith("~~~");
        const bool inFence = static_cast<Mode>(state & 0xFF) == Mode::fence;
        if (isFence || inFence) {
            add(first_, text_.size(), isFence ? CodeToken::comment : CodeToken::string);
            return isFence != inFence ? stateOf(Mode::fence, 0) : 0;
        }
        if (peek() == u'#' || startsWith("====") || startsWith("----")) {
            add(first_, text_.size(), CodeToken::heading);
            return 0;
        }
        if (peek() == u'>') {
            add(first_, text_.size(), CodeToken::comment);
            return 0;
        }
        std::size_t mark = at_;
        while (mark < text_.size() && isDigit(text_[mark])) ++mark;
        const bool isNumbered = mark > at_ && mark < text_.size() && text_[mark] == u'.';
        if (isNumbered ||
            ((peek() == u'-' || peek() == u'*' || peek() == u'+') && isBlank(peek(1)))) {
            const std::size_t end = isNumbered ? mark + 1 : at_ + 1;
            add(at_, end, CodeToken::keyword);
            at_ = end;
        }
        std::size_t lastTick = text_.rfind(u'`');
        while (at_ < text_.size()) {
            if (peek() == u'`' && lastTick != text_.npos && lastTick > at_) {
                const std::size_t close = text_.find(u'`', at_ + 1);
                add(at_, close + 1, CodeToken::string);
                at_ = close + 1;
            } else if (peek() == u']' && peek(1) == u'(') {
                const std::size_t start = at_ + 2;
                at_ = std::min(text_.find(u')', start), text_.size());
                add(start, at_, CodeToken::value);
            } else {
                ++at_;
            }
        }
        return 0;
    }

    void patch() {
        const auto whole = [this](CodeToken token) { add(0, text_.size(), token); };
        if (startsWith("+++") || startsWith("---") || startsWith("diff ") || startsWith("index "))
            whole(CodeToken::heading);
        else if (startsWith("@@"))
            whole(CodeToken::directive);
        else if (peek() == u'+')
            whole(CodeToken::added);
        else if (peek() == u'-')
            whole(CodeToken::removed);
    }

    const CodeLanguage& language_;
    const Words& words_;
    std::u16string_view text_;
    std::vector<CodeSpan>& spans_;
    std::size_t at_ = 0;
    std::size_t first_ = 0;  ///< The first character that is no space.
    std::size_t firstColon_ = text_.find(u':');
    std::size_t lastBrace_ = text_.rfind(u'{');
    State left_ = 0;
};

}  // namespace

State tokenize(const CodeLanguage& language, std::u16string_view line, State state,
               std::vector<CodeSpan>& spans) {
    return Line(language, line, spans).read(state);
}

}  // namespace tarn::CodeTokens
