#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

class TextIndex;

/// Decides whether a file satisfies a query. Built once per search, then only read, from any
/// thread. Services come from Platform::current().
class QueryMatcher {
public:
    explicit QueryMatcher(SearchQuery query, std::shared_ptr<TextIndex> textIndex = nullptr);

    const SearchQuery& query() const { return query_; }

    /// Every term occurs in the name, in any order; case and diacritics do not matter, plurals
    /// match singulars. True without terms.
    bool nameMatches(std::string_view name) const;

    /// The terms that do not occur in the name; absent when none of several occurs.
    std::optional<std::vector<std::string>> termsMissingFromName(std::string_view name) const;

    /// Every filter of the query holds; the name is tested too when `checkName` is set.
    bool matchesFilters(const FileItem& item, bool checkName) const;

    bool item(const FileItem& item, SearchKind kind) const;
    bool item(const FileItem& item, const PlaceFilter& place) const;
    /// Camera maker and model from the file's metadata.
    std::optional<std::string> camera(const URL& url) const;

    bool contentMatches(const URL& url, FileKind kind) const;
    std::optional<std::string> readableText(const URL& url, FileKind kind) const;

    /// The query for a metadata index; absent when nothing in it can be put to one.
    std::optional<std::string> spotlightQuery() const;

private:
    SearchQuery query_;
    std::vector<std::string> lowerTerms_;
    std::vector<std::string> lowerContaining_;
    std::shared_ptr<TextIndex> textIndex_;
};

}  // namespace tarn
