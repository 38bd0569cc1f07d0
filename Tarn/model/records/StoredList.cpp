#include "Tarn/model/records/StoredList.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/files/JSONStore.h"

namespace tarn {
namespace {

bool isUsable(const Favorite& favorite) { return JSONText::toPath(favorite.path).has_value(); }
bool isUsable(const SmartFolder& folder) { return !folder.name.empty(); }
bool isUsable(const Workspace& workspace) {
    return !workspace.name.empty() && !workspace.tabs.empty();
}
bool isUsable(const std::string& text) { return !text.empty(); }

template <class Record>
std::string identity(const Record& record) {
    return record.id.string();
}
std::string identity(const std::string& text) { return text; }

/// FNV-1a, 64 bits.
std::uint64_t hash(std::string_view text, std::uint64_t seed) {
    std::uint64_t value = 0xcbf29ce484222325 ^ seed;
    for (const char byte : text) {
        value ^= static_cast<unsigned char>(byte);
        value *= 0x100000001b3;
    }
    return value;
}

/// The same for the same entry in every process, so that a change asked for in one finds it.
UUID derivedID(const JSON& stored) {
    const std::string text = JSONText::compact(stored);
    std::array<char, 33> buffer;
    std::snprintf(buffer.data(), buffer.size(), "%016llx%016llx",
                  static_cast<unsigned long long>(hash(text, 0)),
                  static_cast<unsigned long long>(hash(text, 1)));
    const std::string digits = buffer.data();
    return *UUID::parse(digits.substr(0, 8) + "-" + digits.substr(8, 4) + "-" +
                        digits.substr(12, 4) + "-" + digits.substr(16, 4) + "-" +
                        digits.substr(20));
}

template <class Record>
void giveIdentity(Record& record, const JSON& stored) {
    if (record.id == UUID()) record.id = derivedID(stored);
}
void giveIdentity(std::string&, const JSON&) {}

template <class Record>
std::optional<Record> usable(const JSON& json) {
    try {
        auto record = json.get<Record>();
        if (isUsable(record)) return record;
    } catch (const std::exception&) {  // The library's exceptions, and those of the records.
    }
    return std::nullopt;
}

}  // namespace

template <class Record>
struct StoredList<Record>::Origin {
    struct Entry {
        JSON stored;
        JSON understood;       ///< What was made of it; null for a damaged one.
        std::string identity;  ///< Empty for a damaged one.
    };
    std::vector<Entry> entries;
};

template <class Record>
void from_json(const JSON& json, StoredList<Record>& list) {
    auto origin = std::make_shared<typename StoredList<Record>::Origin>();
    std::vector<Record> records;
    for (const JSON& stored : json.get_ref<const JSON::array_t&>()) {
        auto record = usable<Record>(stored);
        if (!record) {
            origin->entries.push_back({stored, {}, {}});
            continue;
        }
        giveIdentity(*record, stored);
        origin->entries.push_back({stored, JSON(*record), identity(*record)});
        records.push_back(*std::move(record));
    }
    list.records = std::move(records);
    list.origin = std::move(origin);
}

template <class Record>
void to_json(JSON& json, const StoredList<Record>& list) {
    using Entry = typename StoredList<Record>::Origin::Entry;
    json = JSON::array();
    std::vector<Entry> left;
    if (list.origin) left = list.origin->entries;
    // The damaged ones from here on, up to the next that was understood.
    const auto takeDamaged = [&json, &left](std::size_t from) {
        while (from < left.size() && left[from].identity.empty()) {
            json.push_back(std::move(left[from].stored));
            left.erase(left.begin() + static_cast<std::ptrdiff_t>(from));
        }
    };
    takeDamaged(0);
    for (const Record& record : list.records) {
        const std::string id = identity(record);
        std::size_t found = 0;
        while (found < left.size() && left[found].identity != id) ++found;
        if (found == left.size()) {
            json.push_back(record);
            continue;
        }
        json.push_back(
            StoredJSON::keepingUnchanged(JSON(record), left[found].stored, left[found].understood));
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(found));
        takeDamaged(found);
    }
    for (Entry& entry : left)
        if (entry.identity.empty()) json.push_back(std::move(entry.stored));
}

template void to_json(JSON&, const StoredList<Favorite>&);
template void from_json(const JSON&, StoredList<Favorite>&);
template void to_json(JSON&, const StoredList<SmartFolder>&);
template void from_json(const JSON&, StoredList<SmartFolder>&);
template void to_json(JSON&, const StoredList<Workspace>&);
template void from_json(const JSON&, StoredList<Workspace>&);
template void to_json(JSON&, const StoredList<std::string>&);
template void from_json(const JSON&, StoredList<std::string>&);

}  // namespace tarn
