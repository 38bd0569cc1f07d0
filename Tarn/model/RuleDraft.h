#pragma once

#include <cstdint>
#include <string>

#include "TarnCore/base/UUID.h"
#include "TarnCore/rename/RenameRule.h"

namespace tarn {

/// One rule as the rename sheet edits it: the fields of every kind at once, so that changing the
/// kind keeps what was typed.
struct RuleDraft {
    UUID id = UUID::random();
    int kind = 0;  ///< Place of the rule in the order of RenameRule's cases.
    std::string find;
    std::string replace;
    bool regex = false;
    bool caseSensitive = false;
    std::string text;
    TextPosition position = TextPosition::after;
    std::int64_t start = 1;
    std::int64_t step = 1;
    std::int64_t digits = 2;
    std::string separator = " ";
    DateSource dateSource = DateSource::modified;
    std::string dateFormat;
    CaseStyle caseStyle = CaseStyle::lower;
    std::int64_t count = 1;

    RenameRule rule() const;
    /// The rule would change no name, whatever the name is: nothing was typed yet.
    bool isBlank() const;
    bool operator==(const RuleDraft&) const = default;
};

inline constexpr int ruleKindCount = 8;

}  // namespace tarn
