#include "cli/Arguments.h"

#include <algorithm>
#include <charconv>
#include <numeric>

#include "TarnCore/base/Text.h"
#include "cli/Terminal.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

/// Edits that turn one word into the other; two neighbours swapped count as one edit.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return last.back();
}

std::string shown(std::string_view word) { return Text::quoted(Terminal::escaped(word)); }

[[noreturn]] void failForUnknown(std::string_view dashed, std::span<const Option> options,
                                 std::span<const Option> moreOptions) {
    std::string sentence = "There is no option " + shown(dashed) + ".";
    std::vector<std::string_view> names;
    for (const auto& span : {options, moreOptions}) {
        for (const Option& option : span) {
            if (!option.isHidden) names.push_back(option.name);
        }
    }
    if (dashed.starts_with("--")) {
        if (const auto name = nearest(dashed.substr(2), names)) {
            sentence += " Did you mean “--" + std::string(*name) + "”?";
        }
    }
    throw UsageError(sentence);
}

}  // namespace

std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> candidates) {
    std::optional<std::string_view> best;
    std::size_t bestDistance = 0;
    for (const std::string_view candidate : candidates) {
        // A long word that only begins a candidate is a better guess than any typing mistake.
        const bool begins = word.size() >= 3 && candidate.starts_with(word);
        const std::size_t distance = begins             ? 0
                                     : word.size() > 40 ? word.size()
                                                        : editDistance(word, candidate);
        const std::size_t allowed =
            std::max<std::size_t>(1, std::max(word.size(), candidate.size()) / 3);
        if (distance <= allowed && (!best || distance < bestDistance)) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

std::vector<std::string_view> choices(const Option& option) {
    return option.takesChoice() ? Text::split(option.value, '|') : std::vector<std::string_view>{};
}

Arguments Arguments::parse(std::span<const std::string_view> words, std::span<const Option> options,
                           std::span<const Option> moreOptions, Order order) {
    const auto find = [&](auto&& matches) -> const Option* {
        for (const auto& span : {options, moreOptions}) {
            const auto found = std::ranges::find_if(span, matches);
            if (found != span.end()) return &*found;
        }
        return nullptr;
    };

    Arguments result;
    std::size_t index = 0;
    const auto nextWord = [&](std::string_view dashed, const Option& option) {
        if (index + 1 >= words.size()) {
            throw UsageError("The option “" + std::string(dashed) + "” needs a value, " +
                             std::string(option.value) + ".");
        }
        return words[++index];
    };

    for (; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (word == "--") {
            result.wasEnded_ = true;
            ++index;
            break;
        }
        if (word.starts_with("--")) {
            const std::size_t equals = word.find('=');
            const std::string_view dashed = word.substr(0, equals);
            const Option* option =
                find([&](const Option& o) { return o.name == dashed.substr(2); });
            if (!option) failForUnknown(dashed, options, moreOptions);
            if (!option->takesValue()) {
                if (equals != word.npos) {
                    throw UsageError("The option “" + std::string(dashed) + "” takes no value.");
                }
                result.add(*option, {});
            } else {
                result.add(*option, equals == word.npos ? nextWord(dashed, *option)
                                                        : word.substr(equals + 1));
            }
        } else if (word.size() > 1 && word[0] == '-') {
            for (std::size_t i = 1; i < word.size(); ++i) {
                const Option* option =
                    find([&](const Option& o) { return o.letter != 0 && o.letter == word[i]; });
                const std::string dashed = {'-', word[i]};
                if (!option) failForUnknown(dashed, options, moreOptions);
                if (option->takesValue()) {
                    result.add(*option, i + 1 < word.size() ? word.substr(i + 1)
                                                            : nextWord(dashed, *option));
                    break;
                }
                result.add(*option, {});
            }
        } else {
            if (order == Order::optionsFirst) break;
            result.rest_.push_back(word);
        }
    }
    result.consumed_ = index;
    result.rest_.insert(result.rest_.end(), words.begin() + static_cast<std::ptrdiff_t>(index),
                        words.end());
    return result;
}

void Arguments::add(const Option& option, std::string_view value) {
    if (option.takesChoice()) {
        const auto allowed = choices(option);
        if (std::ranges::find(allowed, value) == allowed.end()) {
            std::string sentence = "The option “--" + std::string(option.name) +
                                   "” does not know " + shown(value) + ".";
            if (const auto near = nearest(value, allowed)) {
                sentence += " Did you mean " + Text::quoted(*near) + "?";
            } else {
                sentence += " It takes ";
                for (std::size_t i = 0; i < allowed.size(); ++i) {
                    if (i > 0) sentence += i + 1 == allowed.size() ? " or " : ", ";
                    sentence += allowed[i];
                }
                sentence += '.';
            }
            throw UsageError(sentence);
        }
    }
    if (option.takesValue() && !option.isRepeatable && has(option.name)) {
        throw UsageError("The option “--" + std::string(option.name) + "” was given twice.");
    }
    given_.emplace_back(option.name, value);
}

bool Arguments::has(std::string_view option) const {
    return std::ranges::any_of(given_, [&](const auto& given) { return given.first == option; });
}

std::optional<std::string_view> Arguments::value(std::string_view option) const {
    const auto all = values(option);
    if (all.empty()) return std::nullopt;
    return all.back();
}

std::vector<std::string_view> Arguments::values(std::string_view option) const {
    std::vector<std::string_view> all;
    for (const auto& [name, value] : given_) {
        if (name == option) all.push_back(value);
    }
    return all;
}

std::optional<std::int64_t> Arguments::number(std::string_view option, std::int64_t fewest) const {
    const auto text = value(option);
    if (!text) return std::nullopt;
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
    if (error != std::errc() || end != text->data() + text->size() || number < fewest) {
        throw UsageError("The option “--" + std::string(option) + "” takes a whole number from " +
                         std::to_string(fewest) + " up, not " + shown(*text) + ".");
    }
    return number;
}

std::string Arguments::text() const {
    std::string text;
    for (std::size_t i = 0; i < rest_.size(); ++i) {
        if (i > 0) text += ' ';
        text += rest_[i];
    }
    return text;
}

}  // namespace tarn::cli
