#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "TarnCore/base/JSON.h"

namespace tarn {

enum class TextPosition : std::uint8_t { before, after };
enum class DateSource : std::uint8_t { created, modified, photoTaken };
enum class CaseStyle : std::uint8_t { lower, upper, title, sentence };

/// The fields of each kind of rule, under their keys.
namespace RenameRules {

struct Replace {  ///< "find", "with", "regex", "caseSensitive"
    std::string find;
    std::string with;
    bool regex = false;
    bool caseSensitive = false;
    bool operator==(const Replace&) const = default;
};

struct AddText {  ///< "_0", "_1"
    std::string text;
    TextPosition position = TextPosition::before;
    bool operator==(const AddText&) const = default;
};

struct Number {  ///< "start", "step", "digits", "position", "separator"
    std::int64_t start = 1;
    std::int64_t step = 1;
    std::int64_t digits = 1;
    TextPosition position = TextPosition::after;
    std::string separator;
    bool operator==(const Number&) const = default;
};

struct InsertDate {  ///< "_0", "format", "position", "separator"
    DateSource source = DateSource::modified;
    std::string format;
    TextPosition position = TextPosition::before;
    std::string separator;
    bool operator==(const InsertDate&) const = default;
};

struct ChangeCase {  ///< "_0"
    CaseStyle style = CaseStyle::lower;
    bool operator==(const ChangeCase&) const = default;
};

struct RemoveCharacters {  ///< "_0"
    std::string characters;
    bool operator==(const RemoveCharacters&) const = default;
};

struct RemoveFirst {  ///< "_0"
    std::int64_t count = 1;
    bool operator==(const RemoveFirst&) const = default;
};

struct RemoveLast {  ///< "_0"
    std::int64_t count = 1;
    bool operator==(const RemoveLast&) const = default;
};

}  // namespace RenameRules

/// One step of making new names out of old ones.
///
/// Stored as an object with one key, the case, that holds the fields; fields without a label stand
/// under "_0", "_1": {"removeFirst": {"_0": 3}}.
struct RenameRule {
    using Replace = RenameRules::Replace;
    using AddText = RenameRules::AddText;
    using Number = RenameRules::Number;
    using InsertDate = RenameRules::InsertDate;
    using ChangeCase = RenameRules::ChangeCase;
    using RemoveCharacters = RenameRules::RemoveCharacters;
    using RemoveFirst = RenameRules::RemoveFirst;
    using RemoveLast = RenameRules::RemoveLast;

    std::variant<Replace, AddText, Number, InsertDate, ChangeCase, RemoveCharacters, RemoveFirst,
                 RemoveLast>
        rule;

    /// "Find and replace"
    std::string_view title() const;
    bool operator==(const RenameRule&) const = default;
};

/// "Find and replace" for 0, in the order of the cases.
std::string_view ruleTitle(std::size_t index);

void to_json(JSON& json, const RenameRule& rule);
/// Throws tarn::Error ("Invalid number of keys found, expected one.") and for an unknown case.
void from_json(const JSON& json, RenameRule& rule);

}  // namespace tarn
