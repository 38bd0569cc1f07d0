#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/Step.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// The tags of files, read and written where other programs see them. Callable from any thread;
/// the searches block and belong off the main thread.
namespace TagStore {

std::vector<FinderTag> tags(const URL& url);
/// An empty list removes the attribute. False when the disk refused.
bool setTags(const std::vector<FinderTag>& tags, const URL& url);

/// Of the run's registry, else of the standard tag, else none.
TagColor color(std::string_view name);
void remember(const FinderTag& tag);

/// Each returns the step that takes it back, none when nothing changed. Throws FileOpError. A file
/// has a name once: a tag added again only changes its colour.
std::optional<Step> add(const FinderTag& tag, const URL& url);
std::optional<Step> remove(std::string_view name, const URL& url);
/// Replaces the tag of that name on every file, or deletes it without a new one. The first failure
/// ends it and is thrown; `done`, when given, receives every step that was made, also then.
std::vector<Step> rewrite(std::string_view name, const std::optional<FinderTag>& to,
                          const std::vector<URL>& urls, std::vector<Step>* done = nullptr);

/// Files below the home folder that carry a tag, ignoring letter case, by path, at most `limit`,
/// none in the Trash.
std::vector<URL> filesWithTag(std::string_view name, std::size_t limit,
                              const CancelToken& token = {});
/// Every tag in use, with the standard and the registered ones, each name once, sorted for display.
std::vector<FinderTag> allTags(const CancelToken& token = {});

}  // namespace TagStore

}  // namespace tarn
