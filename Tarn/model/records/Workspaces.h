#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/records/Workspace.h"

/// The rules of the list of workspaces: a name stands for one of them.
namespace tarn::Workspaces {

/// The name as it is kept; throws ListError when it is empty or that of another than `self`.
std::string requireName(const std::vector<Workspace>& workspaces, std::string_view name,
                        const UUID& self);

/// A new one; throws ListError without a name.
Workspace make(std::string_view name, std::vector<WindowSnapshot> tabs, Date savedAt);
/// By name or id; throws ListError when there is none.
Workspace require(const std::vector<Workspace>& workspaces, std::string_view nameOrID);
/// The one that saving under this name would replace; null when there is none.
const Workspace* named(const std::vector<Workspace>& workspaces, std::string_view name);

/// Takes the place, and the id, of the one of the same name; else it comes last.
void save(std::vector<Workspace>& workspaces, Workspace workspace);
void remove(std::vector<Workspace>& workspaces, const UUID& id);
/// Does nothing for a name that is empty or taken.
void rename(std::vector<Workspace>& workspaces, const UUID& id, std::string_view name);

}  // namespace tarn::Workspaces
