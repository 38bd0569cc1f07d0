#include "TarnCore/rename/PreparedRule.h"

#include <algorithm>
#include <bitset>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include <unicode/brkiter.h>
#include <unicode/calendar.h>
#include <unicode/normalizer2.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/rename/NamePattern.h"
#include "TarnCore/rename/NameText.h"
#include "TarnCore/rename/SimpleNames.h"

namespace tarn {

class PreparedRule::Work {
public:
    virtual ~Work() = default;
    virtual std::optional<DateSource> dateSource() const { return std::nullopt; }
    virtual Outcome apply(std::string_view name, std::size_t index, std::optional<Date> date) = 0;
};

namespace {

using Outcome = PreparedRule::Outcome;

std::string joined(std::string_view first, std::string_view second, std::string_view third = {}) {
    std::string out;
    out.reserve(first.size() + second.size() + third.size());
    return out.append(first).append(second).append(third);
}

/// `text` and then the separator before the name, or the other way round.
std::string placed(std::string_view name, std::string_view text, std::string_view separator,
                   TextPosition position) {
    return position == TextPosition::before ? joined(text, separator, name)
                                            : joined(name, separator, text);
}

/// The characters people count. Bytes that are not UTF-8 are one each.
class Characters {
public:
    Characters() {
        UErrorCode status = U_ZERO_ERROR;
        breaks_.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status)) breaks_.reset();
    }

    /// Where the character with this number begins; the end of the text when it has fewer.
    std::int32_t begin(const icu::UnicodeString& text, std::int64_t number) {
        if (number <= 0) return 0;
        if (number >= text.length()) return text.length();
        if (!breaks_) return text.moveIndex32(0, static_cast<std::int32_t>(number));
        breaks_->setText(text);
        const std::int32_t at = breaks_->next(static_cast<std::int32_t>(number));
        return at == icu::BreakIterator::DONE ? text.length() : at;
    }

    /// Where the last `count` characters begin.
    std::int32_t beginOfLast(const icu::UnicodeString& text, std::int64_t count) {
        if (count <= 0) return text.length();
        if (count >= text.length()) return 0;
        if (!breaks_) return text.moveIndex32(text.length(), -static_cast<std::int32_t>(count));
        breaks_->setText(text);
        breaks_->last();
        const std::int32_t at = breaks_->next(-static_cast<std::int32_t>(count));
        return at == icu::BreakIterator::DONE ? 0 : at;
    }

    template <class Each>
    void forEach(const icu::UnicodeString& text, const Each& each) {
        if (breaks_) breaks_->setText(text);
        for (std::int32_t at = 0; at < text.length();) {
            std::int32_t end = breaks_ ? breaks_->next() : text.moveIndex32(at, 1);
            if (end <= at) end = text.length();
            each(text.tempSubStringBetween(at, end));
            at = end;
        }
    }

private:
    std::unique_ptr<icu::BreakIterator> breaks_;
};

class ReplaceWork final : public PreparedRule::Work {
public:
    explicit ReplaceWork(const RenameRule::Replace& rule) : pattern_(rule) {}
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        std::string problem;
        if (auto replaced = pattern_.replaceAll(name, problem)) return {std::move(*replaced), {}};
        return {std::string(name), std::move(problem)};
    }

private:
    NamePattern pattern_;
};

class AddTextWork final : public PreparedRule::Work {
public:
    explicit AddTextWork(const RenameRule::AddText& rule) : rule_(rule) {}
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        return {placed(name, rule_.text, {}, rule_.position), {}};
    }

private:
    RenameRule::AddText rule_;
};

class NumberWork final : public PreparedRule::Work {
public:
    explicit NumberWork(const RenameRule::Number& rule) : rule_(rule) {}
    Outcome apply(std::string_view name, std::size_t index, std::optional<Date>) override {
        std::int64_t value = 0;
        if (__builtin_mul_overflow(static_cast<std::int64_t>(index), rule_.step, &value) ||
            __builtin_add_overflow(value, rule_.start, &value)) {
            return {std::string(name), "The number is too large"};
        }
        std::string digits = std::to_string(value);
        const auto width = static_cast<std::size_t>(
            std::clamp<std::int64_t>(rule_.digits, 0, std::int64_t{PreparedRule::longestName} + 1));
        if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
        return {placed(name, digits, rule_.separator, rule_.position), {}};
    }

private:
    RenameRule::Number rule_;
};

class InsertDateWork final : public PreparedRule::Work {
public:
    explicit InsertDateWork(const RenameRule::InsertDate& rule) : rule_(rule) {
        const std::string pattern = rule.format.empty() ? "yyyy-MM-dd" : rule.format;
        const std::string zone = Calendar::current(Locale("en_US_POSIX")).timeZone();
        UErrorCode status = U_ZERO_ERROR;
        format_ = std::make_unique<icu::SimpleDateFormat>(ICU::text(pattern),
                                                          icu::Locale("en_US_POSIX"), status);
        if (U_FAILURE(status)) {
            format_.reset();
        } else {
            format_->adoptTimeZone(icu::TimeZone::createTimeZone(ICU::text(zone)));
            // Formatting a plain time would copy the calendar for every name.
            calendar_.reset(format_->getCalendar()->clone());
        }
        if (isSameAllDay(pattern)) days_.emplace(Calendar::current(Locale("en_US_POSIX")));
    }

    std::optional<DateSource> dateSource() const override { return rule_.source; }

    Outcome apply(std::string_view name, std::size_t, std::optional<Date> date) override {
        if (!date) return {std::string(name), std::string(missingDate())};
        const std::optional<std::string> text = days_ ? days_->text(*date, *this) : format(*date);
        if (!text)
            return {std::string(name), Text::quoted(rule_.format) + " isn’t a valid date format"};
        return {placed(name, *text, rule_.separator, rule_.position), {}};
    }

private:
    /// Names are made from the days of few years, and asking ICU costs more than all the rest.
    class Days {
    public:
        explicit Days(Calendar calendar) : calendar_(std::move(calendar)) {}
        std::optional<std::string> text(Date date, InsertDateWork& work) {
            auto known = texts_.upper_bound(date.seconds);
            if (known != texts_.begin() && date.seconds < (--known)->second.end)
                return known->second.text;
            auto text = work.format(date);
            const DateInterval day = calendar_.interval(CalendarUnit::day, date);
            if (text && day.start <= date && date < day.end)
                texts_.insert_or_assign(day.start.seconds, Text{day.end.seconds, *text});
            return text;
        }

    private:
        struct Text {
            double end;
            std::string text;
        };
        Calendar calendar_;
        std::map<double, Text> texts_;  ///< By the first instant of the day.
    };

    /// None of its fields is finer than a day.
    static bool isSameAllDay(std::string_view pattern) {
        bool isQuoted = false;
        for (const char letter : pattern) {
            if (letter == '\'') isQuoted = !isQuoted;
            const bool isField =
                !isQuoted && ((letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z'));
            if (isField && std::string_view("GyYuUrQqMLwWdDFgEec").find(letter) == pattern.npos)
                return false;
        }
        return true;
    }

    std::optional<std::string> format(Date date) {
        if (!format_) return std::nullopt;
        icu::UnicodeString text;
        UErrorCode status = U_ZERO_ERROR;
        calendar_->setTime((date.seconds + double{Date::unixOffset}) * 1000, status);
        if (U_SUCCESS(status)) format_->format(*calendar_, text, nullptr, status);
        if (U_FAILURE(status)) return std::nullopt;
        return ICU::utf8(text);
    }

    std::string_view missingDate() const {
        switch (rule_.source) {
            case DateSource::created:
                return "This disk keeps no date of creation";
            case DateSource::modified:
                return "The file has no date of modification";
            case DateSource::photoTaken:
                break;
        }
        return "The file doesn’t say when it was taken";
    }

    RenameRule::InsertDate rule_;
    std::unique_ptr<icu::SimpleDateFormat> format_;
    std::unique_ptr<icu::Calendar> calendar_;
    std::optional<Days> days_;  ///< Where the format says no more than the day.
};

/// Letters, digits and marks belong to words, and so does an apostrophe between them.
icu::UnicodeString capitalised(const icu::UnicodeString& text) {
    const auto isWord = [&](std::int32_t at) {
        if (at >= text.length()) return false;
        const UChar32 character = text.char32At(at);
        const auto mask = U_MASK(u_charType(character));
        return u_isalnum(character) || (mask & U_GC_M_MASK) != 0;
    };
    const auto isApostrophe = [&](std::int32_t at) {
        return text[at] == u'\'' || text[at] == u'\u2019';
    };
    icu::UnicodeString out;
    for (std::int32_t at = 0; at < text.length();) {
        if (!isWord(at)) {
            out.append(text.char32At(at));
            at = text.moveIndex32(at, 1);
            continue;
        }
        std::int32_t end = at;
        while (isWord(end) || (end < text.length() && isApostrophe(end) && isWord(end + 1))) {
            end = text.moveIndex32(end, 1);
        }
        icu::UnicodeString word = text.tempSubStringBetween(at, end);
        // The whole is one word to ICU, which takes its first character even if that has no case:
        // "2nd" stays.
        word.toTitle(nullptr, icu::Locale::getRoot(),
                     U_TITLECASE_WHOLE_STRING | U_TITLECASE_NO_BREAK_ADJUSTMENT);
        out.append(word);
        at = end;
    }
    return out;
}

class ChangeCaseWork final : public PreparedRule::Work {
public:
    explicit ChangeCaseWork(const RenameRule::ChangeCase& rule) : style_(rule.style) {}
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        if (SimpleNames::isOne(name)) return {SimpleNames::changed(name, style_), {}};
        icu::UnicodeString text = NameText::fromBytes(name);
        const icu::Locale& root = icu::Locale::getRoot();
        switch (style_) {
            case CaseStyle::lower:
                text.toLower(root);
                break;
            case CaseStyle::upper:
                text.toUpper(root);
                break;
            case CaseStyle::title:
                text = capitalised(text);
                break;
            case CaseStyle::sentence: {
                const std::int32_t second = characters_.begin(text, 1);
                icu::UnicodeString rest(text, second);
                text.truncate(second);
                text.toUpper(root).append(rest.toLower(root));
                break;
            }
        }
        return {NameText::toBytes(text), {}};
    }

private:
    CaseStyle style_;
    Characters characters_;
};

class RemoveCharactersWork final : public PreparedRule::Work {
public:
    explicit RemoveCharactersWork(const RenameRule::RemoveCharacters& rule) {
        characters_.forEach(ICU::text(rule.characters), [&](const icu::UnicodeString& character) {
            const icu::UnicodeString one = composed(character);
            unwanted_.insert(one);
            if (one.length() == 1 && one[0] < SimpleNames::bound) isUnwanted_[one[0]] = true;
        });
    }
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        if (SimpleNames::isOne(name)) {
            std::string kept;
            for (std::size_t at = 0; at < name.size();) {
                const auto [character, size] = SimpleNames::characterAt(name, at);
                if (!isUnwanted_[character]) kept.append(name, at, size);
                at += size;
            }
            return {std::move(kept), {}};
        }
        const icu::UnicodeString text = NameText::fromBytes(name);
        icu::UnicodeString kept;
        characters_.forEach(text, [&](const icu::UnicodeString& character) {
            if (!unwanted_.contains(composed(character))) kept.append(character);
        });
        return {NameText::toBytes(kept), {}};
    }

private:
    /// One form of characters that may be written in several ("é" in one piece or two).
    static icu::UnicodeString composed(const icu::UnicodeString& character) {
        if (character.length() == 1 && character[0] < SimpleNames::bound) return character;
        UErrorCode status = U_ZERO_ERROR;
        const icu::Normalizer2* form = icu::Normalizer2::getNFCInstance(status);
        icu::UnicodeString out = U_SUCCESS(status) ? form->normalize(character, status) : character;
        return U_SUCCESS(status) ? out : character;
    }

    Characters characters_;
    std::set<icu::UnicodeString> unwanted_;
    std::bitset<SimpleNames::bound> isUnwanted_;  ///< Those of them that are one unit.
};

class RemoveFirstWork final : public PreparedRule::Work {
public:
    explicit RemoveFirstWork(const RenameRule::RemoveFirst& rule) : count_(rule.count) {}
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        if (SimpleNames::isOne(name))
            return {std::string(name.substr(SimpleNames::begin(name, count_))), {}};
        const icu::UnicodeString text = NameText::fromBytes(name);
        return {NameText::toBytes(text.tempSubString(characters_.begin(text, count_))), {}};
    }

private:
    std::int64_t count_;
    Characters characters_;
};

class RemoveLastWork final : public PreparedRule::Work {
public:
    explicit RemoveLastWork(const RenameRule::RemoveLast& rule) : count_(rule.count) {}
    Outcome apply(std::string_view name, std::size_t, std::optional<Date>) override {
        if (SimpleNames::isOne(name))
            return {std::string(name.substr(0, SimpleNames::beginOfLast(name, count_))), {}};
        const icu::UnicodeString text = NameText::fromBytes(name);
        const std::int32_t end = characters_.beginOfLast(text, count_);
        return {NameText::toBytes(text.tempSubString(0, end)), {}};
    }

private:
    std::int64_t count_;
    Characters characters_;
};

std::unique_ptr<PreparedRule::Work> make(const RenameRule::Replace& rule) {
    return std::make_unique<ReplaceWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::AddText& rule) {
    return std::make_unique<AddTextWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::Number& rule) {
    return std::make_unique<NumberWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::InsertDate& rule) {
    return std::make_unique<InsertDateWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::ChangeCase& rule) {
    return std::make_unique<ChangeCaseWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::RemoveCharacters& rule) {
    return std::make_unique<RemoveCharactersWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::RemoveFirst& rule) {
    return std::make_unique<RemoveFirstWork>(rule);
}
std::unique_ptr<PreparedRule::Work> make(const RenameRule::RemoveLast& rule) {
    return std::make_unique<RemoveLastWork>(rule);
}

}  // namespace

PreparedRule::PreparedRule(const RenameRule& rule)
    : work_(std::visit([](const auto& value) { return make(value); }, rule.rule)) {}
PreparedRule::~PreparedRule() = default;
PreparedRule::PreparedRule(PreparedRule&&) noexcept = default;
PreparedRule& PreparedRule::operator=(PreparedRule&&) noexcept = default;

std::optional<DateSource> PreparedRule::dateSource() const { return work_->dateSource(); }

PreparedRule::Outcome PreparedRule::apply(std::string_view name, std::size_t index,
                                          std::optional<Date> date) {
    Outcome outcome = work_->apply(name, index, date);
    if (outcome.name.size() > longestName) return {std::string(name), std::string(tooLong)};
    return outcome;
}

}  // namespace tarn
