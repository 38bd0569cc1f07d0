#include "TarnCore/rename/NamePattern.h"

#include <unicode/regex.h>

#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/rename/NameText.h"
#include "TarnCore/rename/PreparedRule.h"

namespace tarn {
namespace {

/// ICU counts this many steps between two calls of a match callback.
constexpr std::size_t stepsBetweenCalls = 10'000;

/// Text that ICU takes for itself in a replacement.
icu::UnicodeString literal(const icu::UnicodeString& text) {
    icu::UnicodeString out;
    for (std::int32_t i = 0; i < text.length(); ++i) {
        if (text[i] == u'\\' || text[i] == u'$') out.append(u'\\');
        out.append(text[i]);
    }
    return out;
}

/// The same with every $ that begins no group escaped; ICU would refuse it.
icu::UnicodeString leniently(const icu::UnicodeString& text) {
    icu::UnicodeString out;
    for (std::int32_t i = 0; i < text.length(); ++i) {
        if (text[i] == u'\\') {
            out.append(text[i]);
            // One at the end stands for itself.
            out.append(i + 1 < text.length() ? text[++i] : u'\\');
            continue;
        }
        const char16_t next = i + 1 < text.length() ? text[i + 1] : u'\0';
        const bool beginsGroup = next == u'{' || (next >= u'0' && next <= u'9');
        if (text[i] == u'$' && !beginsGroup) out.append(u'\\');
        out.append(text[i]);
    }
    return out;
}

/// Text that is looked for as it stands. UTF-8 is found in any bytes by its bytes; without regard
/// to case only ASCII in ASCII is, since there are letters elsewhere that fold to those of ASCII.
class Literal {
public:
    explicit Literal(const RenameRule::Replace& rule)
        : find_(rule.caseSensitive ? rule.find : Text::lowercasedASCII(rule.find)),
          with_(rule.with),
          ignoresCase_(!rule.caseSensitive),
          isUsable_(!rule.regex && Text::isValidUTF8(rule.with) &&
                    (ignoresCase_ ? Text::isASCII(rule.find) : Text::isValidUTF8(rule.find))) {}

    bool canLookThrough(std::string_view name) const {
        return isUsable_ && (!ignoresCase_ || Text::isASCII(name));
    }

    /// Absent when the outcome is longer than names may be.
    std::optional<std::string> replaceAll(std::string_view name) const {
        const std::string lowered = ignoresCase_ ? Text::lowercasedASCII(name) : std::string();
        const std::string_view searched = ignoresCase_ ? std::string_view(lowered) : name;
        std::string out;
        std::size_t begin = 0;
        for (std::size_t at = searched.find(find_); at != searched.npos;
             at = searched.find(find_, begin)) {
            out.append(name, begin, at - begin).append(with_);
            if (out.size() > PreparedRule::longestName) return std::nullopt;
            begin = at + find_.size();
        }
        return out.append(name, begin);
    }

private:
    std::string find_;
    std::string with_;
    bool ignoresCase_;
    bool isUsable_;
};

}  // namespace

struct NamePattern::State {
    explicit State(const RenameRule::Replace& rule) : find(rule.find), literal(rule) {}

    std::string find;
    Literal literal;
    std::unique_ptr<icu::RegexMatcher> matcher;
    icu::UnicodeString replacement;
    std::size_t stepsForName = 0;
    std::size_t steps = 0;

    static UBool U_CALLCONV mayGoOn(const void* context, std::int32_t) {
        // ICU hands the context through as it was given, which is not constant.
        auto& state = *static_cast<State*>(const_cast<void*>(context));
        state.stepsForName += stepsBetweenCalls;
        state.steps += stepsBetweenCalls;
        return state.stepsForName < mostStepsForName && state.steps < mostSteps;
    }
};

NamePattern::NamePattern(const RenameRule::Replace& rule) : state_(std::make_unique<State>(rule)) {
    if (rule.find.empty()) return;
    std::uint32_t flags = rule.caseSensitive ? 0 : UREGEX_CASE_INSENSITIVE;
    if (!rule.regex) flags |= UREGEX_LITERAL;
    const icu::UnicodeString with = ICU::text(rule.with);
    state_->replacement = rule.regex ? leniently(with) : literal(with);
    UErrorCode status = U_ZERO_ERROR;
    auto matcher = std::make_unique<icu::RegexMatcher>(ICU::text(rule.find), flags, status);
    matcher->setMatchCallback(State::mayGoOn, state_.get(), status);
    if (U_SUCCESS(status)) state_->matcher = std::move(matcher);
}

NamePattern::~NamePattern() = default;

std::optional<std::string> NamePattern::replaceAll(std::string_view name, std::string& problem) {
    if (state_->find.empty()) return std::string(name);
    if (state_->literal.canLookThrough(name)) {
        auto replaced = state_->literal.replaceAll(name);
        if (!replaced) problem = PreparedRule::tooLong;
        return replaced;
    }
    if (!state_->matcher) {
        problem = "“" + state_->find + "” isn’t a valid regular expression";
        return std::nullopt;
    }
    // A replacement can name the longest group many times over.
    constexpr auto longest = static_cast<std::int32_t>(PreparedRule::longestName);
    const icu::UnicodeString text = NameText::fromBytes(name);
    icu::UnicodeString out;
    UErrorCode status = U_ZERO_ERROR;
    if (state_->steps < mostSteps) {
        state_->stepsForName = 0;
        state_->matcher->reset(text);
        while (U_SUCCESS(status) && out.length() <= longest && state_->matcher->find(status)) {
            if (state_->replacement.length() > longest) {
                out = state_->replacement;
            } else {
                state_->matcher->appendReplacement(out, state_->replacement, status);
            }
        }
    } else {
        status = U_REGEX_STOPPED_BY_CALLER;
    }
    if (U_SUCCESS(status)) {
        if (out.length() > longest) {
            problem = PreparedRule::tooLong;
            return std::nullopt;
        }
        state_->matcher->appendTail(out);
        return NameText::toBytes(out);
    }
    const bool isSlow = status == U_REGEX_STOPPED_BY_CALLER || status == U_REGEX_STACK_OVERFLOW ||
                        status == U_REGEX_TIME_OUT;
    problem = isSlow ? "Looking for “" + state_->find + "” takes too long"
                     : "The replacement names a group that isn’t in “" + state_->find + "”";
    return std::nullopt;
}

}  // namespace tarn
