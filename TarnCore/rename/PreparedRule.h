#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Date.h"
#include "TarnCore/rename/RenameRule.h"

namespace tarn {

/// A rule made ready for the names of one batch: its expression is compiled once, its date format
/// built once. One thread at a time.
///
/// Names may be any bytes: what is not UTF-8 comes out as it went in. Characters are those that
/// people count (grapheme clusters).
class PreparedRule {
public:
    class Work;

    explicit PreparedRule(const RenameRule& rule);
    ~PreparedRule();
    PreparedRule(PreparedRule&&) noexcept;
    PreparedRule& operator=(PreparedRule&&) noexcept;

    /// The date that apply() wants; absent for a rule without one.
    std::optional<DateSource> dateSource() const;

    struct Outcome {
        std::string name;
        /// Why the rule has left the name as it was, as a phrase without a full stop.
        std::optional<std::string> problem;
    };
    /// `index` is the file's place in the batch, from 0.
    Outcome apply(std::string_view name, std::size_t index, std::optional<Date> date);

    /// Longest name in bytes that a rule makes; one that would be longer is a problem. Far above
    /// what any disk takes, it keeps rules that multiply a name from filling the memory.
    static constexpr std::size_t longestName = 4096;
    static constexpr std::string_view tooLong = "Name is too long";

private:
    std::unique_ptr<Work> work_;
};

}  // namespace tarn
