#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/Command.h"

namespace tarn::cli {

/// The words of a command line, sorted into options and the rest, by the GNU rules: options and
/// arguments in any order, "--name=value" or "--name value", "-abc" for "-a -b -c", "-n5" or
/// "-n 5", "--" ends the options, "-" alone is an argument. Words are bytes; the views point into
/// the words given.
class Arguments {
public:
    enum class Order {
        any,           ///< Options may follow arguments.
        optionsFirst,  ///< The first argument ends the options.
    };

    /// Throws UsageError for an unknown option (naming the nearest), a missing or needless value, a
    /// word that is none of an option's choices, or a second value for an option that takes one.
    static Arguments parse(std::span<const std::string_view> words, std::span<const Option> options,
                           std::span<const Option> moreOptions = {}, Order order = Order::any);

    bool has(std::string_view option) const;
    /// The last value given.
    std::optional<std::string_view> value(std::string_view option) const;
    std::vector<std::string_view> values(std::string_view option) const;
    /// The value as a whole number of at least `fewest`; throws UsageError for anything else.
    std::optional<std::int64_t> number(std::string_view option, std::int64_t fewest) const;

    const std::vector<std::string_view>& rest() const { return rest_; }
    /// The rest joined by blanks, for queries.
    std::string text() const;

    /// How many words were read: all of them, or those before the first argument.
    std::size_t consumed() const { return consumed_; }
    /// True when "--" ended the options.
    bool wasEnded() const { return wasEnded_; }

private:
    void add(const Option& option, std::string_view value);

    std::vector<std::pair<std::string_view, std::string_view>> given_;
    std::vector<std::string_view> rest_;
    std::size_t consumed_ = 0;
    bool wasEnded_ = false;
};

/// The candidate most like a mistyped word; absent when none is close.
std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> candidates);

/// The words that an option allows ("name|size" gives two).
std::vector<std::string_view> choices(const Option& option);

}  // namespace tarn::cli
