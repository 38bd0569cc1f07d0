#include "Tarn/model/records/Workspaces.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Tarn/model/records/NamedRecords.h"

namespace tarn::Workspaces {
namespace {

constexpr std::string_view kind = "workspace";

}  // namespace

std::string requireName(const std::vector<Workspace>& workspaces, std::string_view name,
                        const UUID& self) {
    return NamedRecords::requireName(workspaces, name, kind, self);
}

Workspace make(std::string_view name, std::vector<WindowSnapshot> tabs, Date savedAt) {
    return {UUID::random(), requireName({}, name, {}), std::move(tabs), savedAt};
}

Workspace require(const std::vector<Workspace>& workspaces, std::string_view nameOrID) {
    if (const Workspace* found = NamedRecords::find(workspaces, nameOrID)) return *found;
    throw ListError::unknown(kind, nameOrID);
}

const Workspace* named(const std::vector<Workspace>& workspaces, std::string_view name) {
    const std::string wanted = Text::lowercased(Text::trimmed(name));
    for (const Workspace& workspace : workspaces)
        if (Text::lowercased(workspace.name) == wanted) return &workspace;
    return nullptr;
}

void save(std::vector<Workspace>& workspaces, Workspace workspace) {
    if (const Workspace* present = named(workspaces, workspace.name)) {
        workspace.id = present->id;
        workspaces[static_cast<std::size_t>(present - workspaces.data())] = std::move(workspace);
        return;
    }
    workspaces.push_back(std::move(workspace));
}

void remove(std::vector<Workspace>& workspaces, const UUID& id) {
    std::erase_if(workspaces, [&id](const Workspace& workspace) { return workspace.id == id; });
}

void rename(std::vector<Workspace>& workspaces, const UUID& id, std::string_view name) {
    const auto found = std::ranges::find(workspaces, id, &Workspace::id);
    if (found == workspaces.end()) return;
    try {
        found->name = requireName(workspaces, name, id);
    } catch (const ListError&) {
        // Taken by another process since it was asked for.
    }
}

}  // namespace tarn::Workspaces
