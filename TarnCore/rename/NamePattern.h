#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/rename/RenameRule.h"

namespace tarn {

/// What a replace rule looks for, compiled, and what it puts in its place. One thread at a time.
///
/// Expressions are those of ICU. In the replacement of one, $1 and ${name} are groups, a backslash
/// takes the meaning from the character behind it, and a $ before anything else is a dollar sign.
class NamePattern {
public:
    explicit NamePattern(const RenameRule::Replace& rule);
    ~NamePattern();
    NamePattern(const NamePattern&) = delete;
    NamePattern& operator=(const NamePattern&) = delete;

    /// Names may be any bytes. Absent when `problem` says why the name stays as it is.
    std::optional<std::string> replaceAll(std::string_view name, std::string& problem);

    /// Steps that looking through one name, and through all names of a batch, may take; a step is
    /// a few nanoseconds. An expression that needs more tries exponentially many ways to match.
    static constexpr std::size_t mostStepsForName = 1'000'000;
    static constexpr std::size_t mostSteps = 5'000'000;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
