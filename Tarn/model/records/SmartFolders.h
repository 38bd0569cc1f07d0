#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/records/SmartFolder.h"

/// The rules of the list of smart folders: the built-in ones first, then the user's in their
/// order; all names are different.
namespace tarn::SmartFolders {

/// What the list shows. A stored folder with the id of a built-in one does not count.
std::vector<SmartFolder> merged(const std::vector<SmartFolder>& stored);
bool isBuiltIn(const UUID& id);

/// By name or id; throws ListError when there is none.
SmartFolder require(const std::vector<SmartFolder>& all, std::string_view nameOrID);

/// The name as it is kept; throws ListError when it is empty or that of another than `self`.
std::string requireName(const std::vector<SmartFolder>& all, std::string_view name,
                        const UUID& self = {});

/// The query as it is kept; throws ListError when it is empty.
std::string requireQuery(std::string_view query);

/// A new one. Throws ListError when it cannot be among `all`, those that are shown.
SmartFolder make(const std::vector<SmartFolder>& all, std::string_view name, std::string_view query,
                 SearchScopeSetting scope);

// The rest changes what is stored, and never fails.

/// Behind the last one; under another name when its own was taken meanwhile.
void add(std::vector<SmartFolder>& stored, SmartFolder folder);
void remove(std::vector<SmartFolder>& stored, const UUID& id);
/// The one with its id becomes this; its name stays when the new one is empty or taken.
void change(std::vector<SmartFolder>& stored, const SmartFolder& folder);
/// Does nothing for a name that is empty or taken.
void rename(std::vector<SmartFolder>& stored, const UUID& id, std::string_view name);
/// `index` counts the user's own.
void move(std::vector<SmartFolder>& stored, const UUID& id, std::size_t index);

}  // namespace tarn::SmartFolders
