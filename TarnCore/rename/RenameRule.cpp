#include "TarnCore/rename/RenameRule.h"

#include <array>
#include <cstddef>
#include <limits>
#include <span>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

struct CaseNames {
    const char* key;
    std::string_view title;
};

/// In the order of the variant.
constexpr std::array<CaseNames, std::variant_size_v<decltype(RenameRule::rule)>> cases = {{
    {"replace", "Find and replace"},
    {"addText", "Add text"},
    {"number", "Number in sequence"},
    {"insertDate", "Insert date"},
    {"changeCase", "Change case"},
    {"removeCharacters", "Remove characters"},
    {"removeFirst", "Remove first characters"},
    {"removeLast", "Remove last characters"},
}};

/// The words for the values of the enumerations, in their order.
constexpr std::string_view positions[] = {"before", "after"};
constexpr std::string_view sources[] = {"created", "modified", "photoTaken"};
constexpr std::string_view styles[] = {"lower", "upper", "title", "sentence"};

constexpr std::span<const std::string_view> words(TextPosition) { return positions; }
constexpr std::span<const std::string_view> words(DateSource) { return sources; }
constexpr std::span<const std::string_view> words(CaseStyle) { return styles; }

template <class Enum>
std::string_view word(Enum value) {
    return words(value)[static_cast<std::size_t>(value)];
}

template <class Enum>
void readWord(const JSON& json, const char* key, Enum& value) {
    const JSON* found = JSONFields::member(json, key);
    if (!found) return;
    const auto given = found->get<std::string>();
    const auto known = words(value);
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i] == given) {
            value = static_cast<Enum>(i);
            return;
        }
    }
    throw Error("A rule for names does not know " + Text::quoted(given) + ".");
}

/// A whole number only: the library would cut off a fraction.
void readWhole(const JSON& json, const char* key, std::int64_t& value) {
    const JSON* found = JSONFields::member(json, key);
    if (!found) return;
    const bool fits =
        found->is_number_integer() &&
        (!found->is_number_unsigned() ||
         found->get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int64_t>::max()});
    if (!fits) throw Error("A number in a rule for names is not a whole number.");
    value = found->get<std::int64_t>();
}

using Object = JSON::object_t;

JSON fields(const RenameRule::Replace& rule) {
    return Object{{"find", rule.find},
                  {"with", rule.with},
                  {"regex", rule.regex},
                  {"caseSensitive", rule.caseSensitive}};
}
JSON fields(const RenameRule::AddText& rule) {
    return Object{{"_0", rule.text}, {"_1", word(rule.position)}};
}
JSON fields(const RenameRule::Number& rule) {
    return Object{{"start", rule.start},
                  {"step", rule.step},
                  {"digits", rule.digits},
                  {"position", word(rule.position)},
                  {"separator", rule.separator}};
}
JSON fields(const RenameRule::InsertDate& rule) {
    return Object{{"_0", word(rule.source)},
                  {"format", rule.format},
                  {"position", word(rule.position)},
                  {"separator", rule.separator}};
}
JSON fields(const RenameRule::ChangeCase& rule) { return Object{{"_0", word(rule.style)}}; }
JSON fields(const RenameRule::RemoveCharacters& rule) { return Object{{"_0", rule.characters}}; }
JSON fields(const RenameRule::RemoveFirst& rule) { return Object{{"_0", rule.count}}; }
JSON fields(const RenameRule::RemoveLast& rule) { return Object{{"_0", rule.count}}; }

void read(const JSON& json, RenameRule::Replace& rule) {
    JSONFields::read(json, "find", rule.find);
    JSONFields::read(json, "with", rule.with);
    JSONFields::read(json, "regex", rule.regex);
    JSONFields::read(json, "caseSensitive", rule.caseSensitive);
}
void read(const JSON& json, RenameRule::AddText& rule) {
    JSONFields::read(json, "_0", rule.text);
    readWord(json, "_1", rule.position);
}
void read(const JSON& json, RenameRule::Number& rule) {
    readWhole(json, "start", rule.start);
    readWhole(json, "step", rule.step);
    readWhole(json, "digits", rule.digits);
    readWord(json, "position", rule.position);
    JSONFields::read(json, "separator", rule.separator);
}
void read(const JSON& json, RenameRule::InsertDate& rule) {
    readWord(json, "_0", rule.source);
    JSONFields::read(json, "format", rule.format);
    readWord(json, "position", rule.position);
    JSONFields::read(json, "separator", rule.separator);
}
void read(const JSON& json, RenameRule::ChangeCase& rule) { readWord(json, "_0", rule.style); }
void read(const JSON& json, RenameRule::RemoveCharacters& rule) {
    JSONFields::read(json, "_0", rule.characters);
}
void read(const JSON& json, RenameRule::RemoveFirst& rule) { readWhole(json, "_0", rule.count); }
void read(const JSON& json, RenameRule::RemoveLast& rule) { readWhole(json, "_0", rule.count); }

/// Makes the case at `index` and reads its fields.
template <std::size_t at = 0>
void readCase(const JSON& json, std::size_t index, RenameRule& rule) {
    if constexpr (at < cases.size()) {
        if (at == index) {
            std::variant_alternative_t<at, decltype(rule.rule)> value;
            read(json, value);
            rule.rule = std::move(value);
        } else {
            readCase<at + 1>(json, index, rule);
        }
    }
}

}  // namespace

std::string_view ruleTitle(std::size_t index) { return cases.at(index).title; }

std::string_view RenameRule::title() const { return ruleTitle(rule.index()); }

void to_json(JSON& json, const RenameRule& rule) {
    json = JSON::object();
    json[cases[rule.rule.index()].key] =
        std::visit([](const auto& value) { return fields(value); }, rule.rule);
}

void from_json(const JSON& json, RenameRule& rule) {
    if (!json.is_object() || json.size() != 1) {
        throw Error("Invalid number of keys found, expected one.");
    }
    const auto& [key, value] = *json.get_ref<const Object&>().begin();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        if (key == cases[i].key) return readCase(value, i, rule);
    }
    throw Error("There is no rule for names called " + Text::quoted(key) + ".");
}

}  // namespace tarn
