#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// A stored array of records, with what this version of the program does not understand of it:
/// keys of newer versions, and entries that are damaged or of a newer kind. Those are written back
/// as they stand, behind the entry that they stood behind.
///
/// For Favorite, SmartFolder, Workspace and std::string. A record without an id is given one that follows from what is stored.
template <class Record>
struct StoredList {
    struct Origin;

    std::vector<Record> records;
    std::shared_ptr<const Origin> origin;  ///< As it was read; null for a new list.

    bool operator==(const StoredList& other) const { return records == other.records; }
};

template <class Record>
void to_json(JSON& json, const StoredList<Record>& list);
/// Throws when it is not an array; entries never throw.
template <class Record>
void from_json(const JSON& json, StoredList<Record>& list);

}  // namespace tarn
