#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/records/ListError.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/UUID.h"

/// What lists of records with an id and a name have in common. Two names are the same in any case:
/// people tell lists apart by reading them aloud.
namespace tarn::NamedRecords {

template <class Record>
const Record* find(const std::vector<Record>& records, const UUID& id) {
    const auto found = std::ranges::find(records, id, &Record::id);
    return found == records.end() ? nullptr : &*found;
}

/// By name, as it is written before any case; by id when none has the name.
template <class Record>
const Record* find(const std::vector<Record>& records, std::string_view nameOrID) {
    const std::string_view wanted = Text::trimmed(nameOrID);
    const auto exact = std::ranges::find(records, wanted, &Record::name);
    if (exact != records.end()) return &*exact;
    const std::string lowered = Text::lowercased(wanted);
    for (const Record& record : records)
        if (Text::lowercased(record.name) == lowered) return &record;
    const auto id = UUID::parse(wanted);
    return id ? find(records, *id) : nullptr;
}

/// The name as it is kept: one line, without blanks around it. Throws ListError when none is left
/// or another record than `self` has it; `kind` is what the sentence calls a record.
template <class Record>
std::string requireName(const std::vector<Record>& records, std::string_view name,
                        std::string_view kind, const UUID& self = {}) {
    const std::string kept = Text::sanitized(Text::trimmed(Text::replacing(name, "\n", " ")));
    if (kept.empty()) throw ListError::emptyName(kind);
    const std::string lowered = Text::lowercased(kept);
    for (const Record& record : records)
        if (record.id != self && Text::lowercased(record.name) == lowered)
            throw ListError::nameTaken(kind, record.name);
    return kept;
}

/// The name itself, or the first free “Invoices 2”, “Invoices 3”, ….
template <class Record>
std::string uniqueName(const std::vector<Record>& records, const std::string& wanted) {
    std::string name = wanted;
    const auto isTaken = [&records, &name] {
        const std::string lowered = Text::lowercased(name);
        return std::ranges::any_of(records, [&lowered](const Record& record) {
            return Text::lowercased(record.name) == lowered;
        });
    };
    for (std::size_t number = 2; isTaken(); ++number) name = wanted + " " + std::to_string(number);
    return name;
}

/// Puts a record at another place, counted without it; behind the last one when that is beyond.
template <class Record>
void move(std::vector<Record>& records, const UUID& id, std::size_t index) {
    const auto found = std::ranges::find(records, id, &Record::id);
    if (found == records.end()) return;
    Record record = std::move(*found);
    records.erase(found);
    index = std::min(index, records.size());
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index), std::move(record));
}

}  // namespace tarn::NamedRecords
