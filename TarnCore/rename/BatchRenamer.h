#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/Step.h"
#include "TarnCore/rename/RenameRule.h"

namespace tarn {

/// What a file would be called. Stored with the field names as keys.
struct RenamePreview {
    URL id;  ///< The file.
    std::string oldName;
    std::string newName;
    std::optional<std::string> problem;  ///< Why it cannot be called that.
    bool changed() const { return oldName != newName; }
    bool operator==(const RenamePreview&) const = default;
};

void to_json(JSON& json, const RenamePreview& preview);

/// Gives many files new names by rules. Callable from any thread.
namespace BatchRenamer {

using Dates = std::unordered_map<URL, Date>;

/// One for each file, in the order given. `dates`, where given, answers the date rule in place of
/// the disk.
std::vector<RenamePreview> preview(const std::vector<URL>& urls,
                                   const std::vector<RenameRule>& rules, bool includeExtension,
                                   const Dates* dates = nullptr);

/// One rule on one name; `index` is the file's place in the batch, from 0.
std::string apply(const RenameRule& rule, std::string_view name, std::size_t index, const URL& url,
                  const Dates* dates = nullptr);

std::optional<Date> date(const URL& url, DateSource source);
std::optional<Date> photoDate(const URL& url);

/// Renames what changes, all or nothing. Throws FileOpError with every file under its old name.
std::vector<Step> apply(const std::vector<RenamePreview>& previews);

}  // namespace BatchRenamer

}  // namespace tarn
