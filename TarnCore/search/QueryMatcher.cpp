#include "TarnCore/search/QueryMatcher.h"

#include <algorithm>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/index/TextLookup.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/KindRules.h"
#include "TarnCore/search/SourceMatch.h"
#include "TarnCore/search/SpotlightQuery.h"

namespace tarn {
namespace {

KindRules::Facts factsOf(const FileItem& item) {
    return {item.name, item.typeIdentifier, item.kind, item.isDirectory};
}

bool lowerContains(std::string_view text, std::string_view lowerPart) {
    return Text::lowercased(text).find(lowerPart) != std::string::npos;
}

/// True when a folder on the way to the file has `foldedName` in its name.
bool liesInFolderNamed(const URL& url, const std::string& foldedName) {
    const auto names = Text::split(url.path(), '/');
    return std::any_of(names.begin(), std::prev(names.end()), [&](std::string_view name) {
        return !name.empty() && Text::folded(name).find(foldedName) != std::string::npos;
    });
}

bool isBelowCameraFolder(const URL& url) {
    const auto names = Text::split(url.path(), '/');
    return std::any_of(names.begin(), std::prev(names.end()),
                       [](std::string_view name) { return Text::lowercasedASCII(name) == "dcim"; });
}

}  // namespace

QueryMatcher::QueryMatcher(SearchQuery query, std::shared_ptr<const TextLookup> textIndex,
                           FileTexts::ReadDocument readDocument)
    : query_(std::move(query)),
      terms_(query_.terms),
      texts_(std::move(textIndex), std::move(readDocument)) {
    for (const std::string& phrase : query_.containing) {
        PhraseFinder finder(phrase);
        if (!finder.isEmpty()) phrases_.push_back(std::move(finder));
    }
    if (query_.place && query_.place->which == PlaceFilter::Case::externalDrives) {
        for (const char* folder : {"/Volumes", "/media", "/run/media", "/mnt"})
            externalDrives_.push_back(URL::fromPath(folder));
        for (const Mount& mount : Platform::current().volumes->mounts())
            if (mount.isRemovable) externalDrives_.push_back(mount.mountPoint);
    }
}

std::optional<std::vector<std::string>> QueryMatcher::termsMissingFromName(
    std::string_view name) const {
    const auto positions = terms_.missingFrom(name);
    if (!positions.empty() && positions.size() == query_.terms.size()) return std::nullopt;
    std::vector<std::string> missing;
    for (const std::size_t i : positions) missing.push_back(query_.terms[i]);
    return missing;
}

bool QueryMatcher::termsMatch(const FileItem& item) const {
    const auto missing = termsMissingFromName(item.name);
    if (!missing) return false;
    if (missing->empty()) return true;
    const auto text = texts_.indexed(item.url);
    return text && NameTerms(*missing).allIn(*text);
}

bool QueryMatcher::matchesFilters(const FileItem& item, bool checkName) const {
    if (!matchesFacts(item, checkName)) return false;
    if (!phrases_.empty()) return contentMatches(item.url, item.kind);
    if (query_.textInImages) return !readableText(item.url, item.kind).value_or("").empty();
    return true;
}

bool QueryMatcher::readsFacts() const {
    return query_.source || query_.camera ||
           (query_.date && query_.date->field == DateField::opened);
}

ResourceKeys QueryMatcher::keys(bool withTags) const {
    // The date of arrival lies beside the tags.
    const bool asksWhenAdded = query_.date && query_.date->field == DateField::added;
    return {.tags = withTags || asksWhenAdded};
}

bool QueryMatcher::matchesFacts(const FileItem& item, bool checkName) const {
    // From the cheapest to those that read the file.
    if (query_.filesOnly && item.isDirectory) return false;
    if (checkName && !nameMatches(item.name)) return false;
    if (query_.size && !query_.size->contains(item.size)) return false;
    const bool asksWhenOpened = query_.date && query_.date->field == DateField::opened;
    if (query_.date && !asksWhenOpened && !dateMatches(item)) return false;
    if (query_.place && !this->item(item, *query_.place)) return false;
    if (!kindMatches(item)) return false;
    if (query_.textInImages && item.kind != FileKind::image) return false;
    if (!phrases_.empty() && item.isDirectory) return false;
    if (asksWhenOpened && !dateMatches(item)) return false;
    if (query_.source && !sourceMatches(item.url)) return false;
    return !query_.camera || cameraMatches(item);
}

bool QueryMatcher::mayMatch(std::string_view name, FileType type, bool checkName) const {
    if (checkName && !nameMatches(name)) return false;
    // What a link is depends on where it leads; a bundle is no folder, whatever else it is.
    if (type == FileType::symlink || type == FileType::unknown) return true;
    if (type == FileType::directory) {
        if (ResourceReader::isPackageName(name)) return true;
        if (query_.filesOnly || query_.size || query_.camera || query_.textInImages ||
            !phrases_.empty())
            return false;
        if (query_.kinds.empty() && query_.extensions.empty()) return true;
        return hasWantedExtension(name) ||
               std::any_of(query_.kinds.begin(), query_.kinds.end(), [](SearchKind kind) {
                   return kind == SearchKind::folder || kind == SearchKind::app;
               });
    }
    const bool readsText = !phrases_.empty();
    const bool hasKinds = !query_.kinds.empty();
    const bool isAnyKind = !hasKinds && query_.extensions.empty();
    if (!hasKinds && !query_.camera && !query_.textInImages && !readsText)
        return isAnyKind || hasWantedExtension(name);

    const KindRules::Facts facts(name);
    if (query_.camera && !KindRules::mayNameCamera(facts.kind())) return false;
    if (query_.textInImages && facts.kind() != FileKind::image) return false;
    if (readsText && texts_.way(name, facts.type, facts.kind()) == FileTexts::Way::none)
        return false;
    return isAnyKind || hasWantedExtension(name) ||
           std::any_of(query_.kinds.begin(), query_.kinds.end(), [&](SearchKind kind) {
               return KindRules::test(kind, facts) != KindRules::Answer::no;
           });
}

bool QueryMatcher::mayMatch(const FileAttributes& attributes) const {
    if (attributes.type == FileType::symlink) return true;
    if (query_.size && attributes.type == FileType::file && !query_.size->contains(attributes.size))
        return false;
    if (!query_.date) return true;
    if (query_.date->field == DateField::modified)
        return query_.date->contains(attributes.modified);
    if (query_.date->field == DateField::created) return query_.date->contains(attributes.created);
    return true;
}

bool QueryMatcher::hasWantedExtension(std::string_view name) const {
    if (query_.extensions.empty()) return false;
    const std::string ext = Text::lowercased(pathExtension(name));
    return std::any_of(
        query_.extensions.begin(), query_.extensions.end(), [&](const std::string& wanted) {
            if (ext == wanted) return true;
            // "tar.gz" is more than what follows the last dot.
            return wanted.find('.') != wanted.npos && name.size() > wanted.size() + 1 &&
                   Text::lowercased(name).ends_with("." + wanted);
        });
}

bool QueryMatcher::kindMatches(const FileItem& item) const {
    if (query_.kinds.empty() && query_.extensions.empty()) return true;
    return hasWantedExtension(item.url.name()) ||
           std::any_of(query_.kinds.begin(), query_.kinds.end(),
                       [&](SearchKind kind) { return this->item(item, kind); });
}

bool QueryMatcher::item(const FileItem& item, SearchKind kind) const {
    switch (KindRules::test(kind, factsOf(item))) {
        case KindRules::Answer::no:
            return false;
        case KindRules::Answer::yes:
            return true;
        case KindRules::Answer::dependsOnPicture:
            break;
    }
    return isBelowCameraFolder(item.url) || camera(item.url).has_value();
}

bool QueryMatcher::item(const FileItem& item, const PlaceFilter& place) const {
    switch (place.which) {
        case PlaceFilter::Case::folder: {
            const URL folder = URL::fromPath(place.text);
            return item.url != folder && item.url.isInside(folder);
        }
        case PlaceFilter::Case::named:
            return liesInFolderNamed(item.url, Text::folded(place.text));
        case PlaceFilter::Case::externalDrives:
            return isOnExternalDrive(item.url);
        case PlaceFilter::Case::iCloud:
            return item.path().find("/Library/Mobile Documents/") != std::string::npos;
        case PlaceFilter::Case::thisMac:
        case PlaceFilter::Case::currentFolder:  // Where the search looks at all.
            break;
    }
    return true;
}

bool QueryMatcher::isOnExternalDrive(const URL& url) const {
    return std::any_of(externalDrives_.begin(), externalDrives_.end(),
                       [&](const URL& drive) { return url != drive && url.isInside(drive); });
}

bool QueryMatcher::dateMatches(const FileItem& item) const {
    switch (query_.date->field) {
        case DateField::modified:
            return query_.date->contains(item.modified);
        case DateField::created:
            return query_.date->contains(item.created);
        case DateField::added:
            return query_.date->contains(item.added);
        case DateField::opened:
            break;
    }
    const auto metadata = Platform::current().metadata;
    return metadata && query_.date->contains(metadata->lastOpened(item.url));
}

bool QueryMatcher::sourceMatches(const URL& url) const {
    return SourceMatch::matches(*query_.source, url);
}

std::optional<std::string> QueryMatcher::camera(const URL& url) const {
    const auto metadata = Platform::current().metadata;
    return metadata ? metadata->read(url).camera() : std::nullopt;
}

bool QueryMatcher::cameraMatches(const FileItem& item) const {
    const auto service = Platform::current().metadata;
    if (!service || !KindRules::mayNameCamera(item.kind)) return false;
    const ItemMetadata metadata = service->read(item.url);
    const std::string word = SpotlightQuery::cameraWord(*query_.camera);
    if (lowerContains(metadata.cameraModel.value_or(""), word)) return true;
    return !SpotlightQuery::isModelOnly(word) &&
           lowerContains(metadata.cameraMake.value_or(""), word);
}

bool QueryMatcher::contentMatches(const URL& url, FileKind kind) const {
    if (phrases_.empty()) return true;
    const auto test = [this](std::string_view text, bool& isUTF8) {
        return std::all_of(phrases_.begin(), phrases_.end(), [&](const PhraseFinder& phrase) {
            return phrase.occursIn(text, isUTF8);
        });
    };
    bool isUTF8 = true;
    if (const auto text = texts_.indexed(url)) return test(*text, isUTF8);
    const auto attributes = Platform::current().files->attributes(url, Links::follow);
    return attributes &&
           texts_.test(url, wayOf(url, kind), attributes->size, test, {}) == FileTexts::Answer::yes;
}

bool QueryMatcher::textMatches(std::string_view name, std::string_view text, bool& isUTF8) const {
    for (const PhraseFinder& phrase : phrases_)
        if (!phrase.occursIn(text, isUTF8)) return false;
    const auto missing = termsMissingFromName(name);
    if (!missing) return false;
    if (missing->empty() || NameTerms(*missing).allIn(text)) return true;
    isUTF8 = isUTF8 && Text::isValidUTF8(text);
    return false;
}

FileTexts::Way QueryMatcher::wayOf(const URL& url, FileKind kind) const {
    return texts_.way(url.name(), Platform::current().types->typeForName(url.name()), kind);
}

std::optional<std::string> QueryMatcher::readableText(const URL& url, FileKind kind) const {
    return texts_.read(url, wayOf(url, kind), {});
}

std::optional<std::string> QueryMatcher::spotlightQuery() const {
    return SpotlightQuery::text(query_);
}

}  // namespace tarn
