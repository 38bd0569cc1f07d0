#pragma once

#include <optional>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"

/// The fields of stored records. For sources only, never for headers: it brings the whole JSON
/// library.
namespace tarn::JSONFields {

/// An absent value is left out.
template <class Value>
void write(JSON& json, const char* key, const std::optional<Value>& value) {
    if (value) json[key] = *value;
}

/// The value at a key; null when there is none or it is stored as null. Throws nlohmann's
/// exception when `json` is not an object.
inline const JSON* member(const JSON& json, const char* key) {
    const auto& object = json.get_ref<const JSON::object_t&>();
    const auto found = object.find(key);
    return found == object.end() || found->second.is_null() ? nullptr : &found->second;
}

/// A missing key leaves `value` as it is. Throws nlohmann's exceptions and those of the value's own
/// from_json when the stored value is of another type.
template <class Value>
void read(const JSON& json, const char* key, Value& value) {
    if (const JSON* found = member(json, key)) found->get_to(value);
}

template <class Value>
void read(const JSON& json, const char* key, std::optional<Value>& value) {
    if (const JSON* found = member(json, key)) value = found->get<Value>();
}

}  // namespace tarn::JSONFields
