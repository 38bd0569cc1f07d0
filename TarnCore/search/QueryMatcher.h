#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/search/FileTexts.h"
#include "TarnCore/search/NameTerms.h"
#include "TarnCore/search/PhraseFinder.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

class TextLookup;

/// Decides whether a file satisfies a query. Built once per search, then only read, from any
/// thread. Services come from Platform::current().
class QueryMatcher {
public:
    explicit QueryMatcher(SearchQuery query, std::shared_ptr<const TextLookup> textIndex = nullptr,
                          FileTexts::ReadDocument readDocument = nullptr);

    const SearchQuery& query() const { return query_; }
    const FileTexts& texts() const { return texts_; }

    /// Every term occurs in the name, in any order; case and diacritics do not matter, plurals
    /// match singulars. True without terms.
    bool nameMatches(std::string_view name) const { return terms_.allIn(name); }

    /// The terms that do not occur in the name, as they were typed; absent when none of them does.
    std::optional<std::vector<std::string>> termsMissingFromName(std::string_view name) const;

    /// With several terms, a file may have some of them in its name and the others in its text.
    bool mayFindTermsInText() const { return query_.terms.size() > 1; }
    /// nameMatches, or that, as far as the index knows the text.
    bool termsMatch(const FileItem& item) const;

    /// Every filter of the query holds; the name is tested too when `checkName` is set.
    bool matchesFilters(const FileItem& item, bool checkName) const;
    /// Every filter but those that ask for text in the file.
    bool matchesFacts(const FileItem& item, bool checkName) const;
    /// mayMatch(attributes) is not always true.
    bool asksAttributes() const { return query_.size || query_.date; }
    /// Something must be read to know, besides the text, whether an item matches.
    bool readsFacts() const;

    /// What must be read of an item for `matchesFacts`, and its tags where those are wanted.
    ResourceKeys keys(bool withTags) const;

    /// A cheap question before anything is read about a child of a folder: false when no item of
    /// this name and type can pass matchesFilters(item, checkName). Most of a walk ends here.
    bool mayMatch(std::string_view name, FileType type, bool checkName) const;
    /// Likewise for what statx tells of an item that is no link.
    bool mayMatch(const FileAttributes& attributes) const;

    bool item(const FileItem& item, SearchKind kind) const;
    bool item(const FileItem& item, const PlaceFilter& place) const;
    /// Camera maker and model from the file's metadata.
    std::optional<std::string> camera(const URL& url) const;

    /// Phrases of `containing` that there is anything in to look for.
    const std::vector<PhraseFinder>& phrases() const { return phrases_; }
    /// Every phrase occurs in the text of the file, without regard to case, diacritics and line
    /// breaks.
    bool contentMatches(const URL& url, FileKind kind) const;
    /// Every phrase occurs in the text; and so do the terms that the name lacks, when it has any.
    /// `isUTF8` becomes false when they do not, and the text has a broken part.
    bool textMatches(std::string_view name, std::string_view text, bool& isUTF8) const;
    /// The text of a file from the text index, else from the file.
    std::optional<std::string> readableText(const URL& url, FileKind kind) const;

    /// The query for a metadata index; absent when nothing in it can be put to one.
    std::optional<std::string> spotlightQuery() const;

private:
    FileTexts::Way wayOf(const URL& url, FileKind kind) const;
    bool kindMatches(const FileItem& item) const;
    bool hasWantedExtension(std::string_view name) const;
    bool dateMatches(const FileItem& item) const;
    bool sourceMatches(const URL& url) const;
    bool cameraMatches(const FileItem& item) const;
    bool isOnExternalDrive(const URL& url) const;

    SearchQuery query_;
    NameTerms terms_;
    std::vector<PhraseFinder> phrases_;
    FileTexts texts_;
    std::vector<URL> externalDrives_;  ///< When the query asks for them.
};

}  // namespace tarn
