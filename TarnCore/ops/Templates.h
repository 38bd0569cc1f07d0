#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/ops/FileOps.h"

namespace tarn {

/// A blank document that “New File” offers.
struct FileTemplate {
    std::string id;
    std::string title;
    std::string fileName;          ///< Of the new file, before it is made free.
    std::string symbol;            ///< Icon of its menu row.
    std::optional<URL> sourceURL;  ///< Of the user's own templates, which are copied.
    bool operator==(const FileTemplate&) const = default;
};

namespace Templates {

const std::vector<FileTemplate>& builtIn();
/// One for each file in the user's templates folder, by name.
std::vector<FileTemplate> user();
std::vector<FileTemplate> all();
/// Throws FileOpError.
FileChange create(const FileTemplate& file, const URL& folder);
/// Throws FileOpError; “Unknown template.” for an id that is not built in.
void write(std::string_view id, const URL& url);
/// A zip package with the parts (path, text) in the order given, "[Content_Types].xml" first.
void zipParts(const std::vector<std::pair<std::string, std::string>>& parts, const URL& url);

}  // namespace Templates

}  // namespace tarn
