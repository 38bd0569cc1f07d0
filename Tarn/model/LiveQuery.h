#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/SearchTask.h"

namespace tarn {

/// What a place that is no folder is made of: all files that a search finds, or all that carry a
/// tag. A value, for any thread.
class LiveQuery {
public:
    /// Called from several threads at once.
    using OnBatch = std::function<void(std::vector<FileItem>)>;

    /// Finds nothing.
    LiveQuery() = default;
    /// `options.roots` are the folders whose changes matter.
    static LiveQuery search(SearchOptions options);
    /// Below the home folder, letter case aside.
    static LiveQuery tag(std::string name);

    const std::vector<URL>& roots() const { return options_.roots; }
    /// Of a search.
    const SearchOptions& options() const { return options_; }
    bool isTag() const { return tag_.has_value(); }

    /// For a tag: everything below the folders that carries it. Blocks.
    void walkTags(const std::vector<URL>& roots, const OnBatch& onBatch,
                  const CancelToken& token) const;

    /// False where the path alone tells that nothing there can belong to it.
    bool matters(const std::string& path) const;
    /// What belongs to it of the things at `paths`, and of all that lies below them. Blocks.
    std::vector<FileItem> find(const std::vector<std::string>& paths,
                               const CancelToken& token) const;

private:
    std::vector<FileItem> findTagged(const std::vector<std::string>& paths,
                                     const CancelToken& token) const;

    SearchOptions options_;
    std::optional<std::string> tag_;
};

}  // namespace tarn
