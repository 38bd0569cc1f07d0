#include "Tarn/model/records/SmartFolders.h"

#include <algorithm>
#include <string>

#include "Tarn/model/records/NamedRecords.h"

namespace tarn::SmartFolders {
namespace {

constexpr std::string_view kind = "smart folder";
constexpr const char* symbol = "folder.badge.gearshape";

}  // namespace

bool isBuiltIn(const UUID& id) {
    return NamedRecords::find(SmartFolder::builtIns(), id) != nullptr;
}

std::vector<SmartFolder> merged(const std::vector<SmartFolder>& stored) {
    std::vector<SmartFolder> all = SmartFolder::builtIns();
    for (const SmartFolder& folder : stored) {
        if (NamedRecords::find(all, folder.id)) continue;
        all.push_back(folder);
        all.back().builtIn = false;
    }
    return all;
}

SmartFolder require(const std::vector<SmartFolder>& all, std::string_view nameOrID) {
    if (const SmartFolder* found = NamedRecords::find(all, nameOrID)) return *found;
    throw ListError::unknown(kind, nameOrID);
}

std::string requireName(const std::vector<SmartFolder>& all, std::string_view name,
                        const UUID& self) {
    return NamedRecords::requireName(all, name, kind, self);
}

std::string requireQuery(std::string_view query) {
    const std::string kept = Text::sanitized(Text::trimmed(query));
    if (kept.empty()) throw ListError::emptyQuery();
    return kept;
}

SmartFolder make(const std::vector<SmartFolder>& all, std::string_view name, std::string_view query,
                 SearchScopeSetting scope) {
    SmartFolder folder;
    folder.name = requireName(all, name);
    folder.query = requireQuery(query);
    folder.id = UUID::random();
    folder.symbol = symbol;
    folder.scope = scope;
    return folder;
}

void add(std::vector<SmartFolder>& stored, SmartFolder folder) {
    folder.name = NamedRecords::uniqueName(merged(stored), folder.name);
    stored.push_back(std::move(folder));
}

void remove(std::vector<SmartFolder>& stored, const UUID& id) {
    std::erase_if(stored, [&id](const SmartFolder& folder) { return folder.id == id; });
}

void change(std::vector<SmartFolder>& stored, const SmartFolder& folder) {
    const auto found = std::ranges::find(stored, folder.id, &SmartFolder::id);
    if (found == stored.end() || isBuiltIn(folder.id)) return;
    const std::string name = found->name;
    *found = folder;
    found->name = name;
    rename(stored, folder.id, folder.name);
}

void rename(std::vector<SmartFolder>& stored, const UUID& id, std::string_view name) {
    const auto found = std::ranges::find(stored, id, &SmartFolder::id);
    if (found == stored.end() || isBuiltIn(id)) return;
    try {
        found->name = requireName(merged(stored), name, id);
    } catch (const ListError&) {
        // Taken by another process since it was asked for.
    }
}

void move(std::vector<SmartFolder>& stored, const UUID& id, std::size_t index) {
    // Copies of built-in ones that an old file may hold take no part.
    const auto own =
        std::stable_partition(stored.begin(), stored.end(),
                              [](const SmartFolder& folder) { return isBuiltIn(folder.id); });
    const auto hidden = static_cast<std::size_t>(own - stored.begin());
    NamedRecords::move(stored, id, hidden + std::min(index, stored.size()));
}

}  // namespace tarn::SmartFolders
