#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ListedName.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/files/ResourceReader.h"

/// Reads one folder level. Synchronous and free of state; call it off the main thread.
namespace tarn::DirectoryLister {

/// Folders with more entries are listed without tags, which the caller fetches afterwards, and with
/// the creation time as the date of arrival.
inline constexpr std::size_t deferTagsAbove = 3000;
bool tagsDeferred(std::size_t count);

/// Whether tags and dates of arrival are read. Reading them for every item takes about as long as
/// the rest of a listing, but less than fetching them afterwards.
enum class AttributeReading { deferredWhenMany, always };

/// What is read of each item of a folder with so many.
ResourceKeys keys(const URL& folder, std::size_t count,
                  AttributeReading reading = AttributeReading::deferredWhenMany);

/// The items of a folder, unsorted, in the order of the disk. Package contents are never entered.
/// Items that vanish or cannot be read on the way are left out. Throws ListingError. A listing
/// that is cancelled returns what it has.
std::vector<FileItem> list(const URL& folder, bool includeHidden, const CancelToken& token = {},
                           AttributeReading reading = AttributeReading::deferredWhenMany);

/// The names alone, in the order of the disk: items are not looked at, links excepted. Throws
/// ListingError.
std::vector<ListedName> names(const URL& folder, bool includeHidden, const CancelToken& token = {});

/// Items for known URLs, in their order; those that cannot be read are left out.
std::vector<FileItem> load(const std::vector<URL>& urls, ResourceKeys keys);

/// The tags of those URLs that have any. On this thread alone, since nobody waits for them: what is
/// asked for meanwhile, another order say, finds the others free. Has fewer when it is cancelled.
std::unordered_map<URL, std::vector<std::string>> loadTags(const std::vector<URL>& urls,
                                                           const CancelToken& token = {});

/// The name to show for a path ("Computer" for "/", else the last component, made valid UTF-8).
std::string displayName(const URL& url);

}  // namespace tarn::DirectoryLister
