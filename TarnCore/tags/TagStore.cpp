#include "TarnCore/tags/TagStore.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/tags/TagWalk.h"

namespace tarn::TagStore {
namespace {

Guarded<std::unordered_map<std::string, TagColor>>& registry() {
    static Guarded<std::unordered_map<std::string, TagColor>> colors;
    return colors;
}

/// Held from reading a file's tags to writing them, so that no change is lost to another.
std::mutex& changing() {
    static std::mutex mutex;
    return mutex;
}

std::vector<FinderTag> parsed(const std::vector<std::string>& stored) {
    std::vector<FinderTag> tags;
    tags.reserve(stored.size());
    for (const std::string& text : stored) tags.push_back(FinderTag::parse(text));
    return tags;
}

std::vector<std::string> stored(const std::vector<FinderTag>& tags) {
    std::vector<std::string> out;
    out.reserve(tags.size());
    for (const FinderTag& tag : tags) out.push_back(tag.stored());
    return out;
}

/// `edit` changes a file's tags; no step when that leaves them as they were.
template <class Edit>
std::optional<Step> change(const URL& url, const Edit& edit) {
    const std::lock_guard lock(changing());
    const std::vector<FinderTag> before = tags(url);
    std::vector<FinderTag> after = before;
    edit(after);
    if (after == before) return std::nullopt;
    return FileOps::setTags(stored(after), url);
}

}  // namespace

std::vector<FinderTag> tags(const URL& url) { return parsed(FileTags::read(url)); }

bool setTags(const std::vector<FinderTag>& tags, const URL& url) {
    const std::lock_guard lock(changing());
    try {
        FileTags::write(stored(tags), url);
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

TagColor color(std::string_view name) {
    {
        const auto colors = registry().lock();
        if (const auto found = colors->find(std::string(name)); found != colors->end()) {
            return found->second;
        }
    }
    const auto standard = FinderTag::standard();
    const auto found = std::ranges::find(standard, name, &FinderTag::name);
    return found == standard.end() ? TagColor::none : found->color;
}

void remember(const FinderTag& tag) { (*registry().lock())[tag.name] = tag.color; }

std::optional<Step> add(const FinderTag& tag, const URL& url) {
    remember(tag);
    return change(url, [&](std::vector<FinderTag>& tags) {
        const auto found = std::ranges::find(tags, tag.name, &FinderTag::name);
        if (found == tags.end()) {
            tags.push_back(tag);
        } else {
            found->color = tag.color;
        }
    });
}

std::optional<Step> remove(std::string_view name, const URL& url) {
    return change(url, [&](std::vector<FinderTag>& tags) {
        std::erase_if(tags, [&](const FinderTag& tag) { return tag.name == name; });
    });
}

std::vector<Step> rewrite(std::string_view name, const std::optional<FinderTag>& to,
                          const std::vector<URL>& urls, std::vector<Step>* done) {
    if (to) remember(*to);
    std::vector<Step> steps;
    for (const URL& url : urls) {
        auto step = change(url, [&](std::vector<FinderTag>& tags) {
            std::vector<FinderTag> kept;
            for (FinderTag& tag : tags) {
                const bool isIt = tag.name == name;
                if (isIt && !to) continue;
                if (isIt) tag = *to;
                // The new name may be there already.
                const auto known = std::ranges::find(kept, tag.name, &FinderTag::name);
                if (known == kept.end()) {
                    kept.push_back(std::move(tag));
                } else if (isIt) {
                    known->color = to->color;
                }
            }
            tags = std::move(kept);
        });
        if (!step) continue;
        if (done) done->push_back(*step);
        steps.push_back(std::move(*step));
    }
    return steps;
}

std::vector<URL> filesWithTag(std::string_view name, std::size_t limit, const CancelToken& token) {
    const std::string wanted = Text::lowercased(name);
    const auto found = TagWalk::find(
        [&](const std::string& stored) {
            return Text::lowercased(FinderTag::parse(stored).name) == wanted;
        },
        token);
    std::vector<URL> urls;
    for (const TagWalk::Tagged& file : found) urls.push_back(file.url);
    std::ranges::sort(urls);
    if (urls.size() > limit) urls.resize(limit);
    return urls;
}

std::vector<FinderTag> allTags(const CancelToken& token) {
    std::map<std::string, TagColor> colors;
    // The first that knows a tag decides on its colour, but any colour is better than none.
    const auto add = [&](const FinderTag& tag) {
        TagColor& color = colors.emplace(tag.name, tag.color).first->second;
        if (color == TagColor::none) color = tag.color;
    };
    for (const auto& [name, color] : *registry().lock()) add({name, color});
    for (const FinderTag& tag : FinderTag::standard()) add(tag);
    auto found = TagWalk::find([](const std::string&) { return true; }, token);
    std::ranges::sort(found, {}, &TagWalk::Tagged::url);
    for (const TagWalk::Tagged& file : found) {
        for (const FinderTag& tag : parsed(file.stored)) add(tag);
    }

    std::vector<FinderTag> all;
    for (const auto& [name, color] : colors) all.push_back({name, color});
    std::ranges::stable_sort(all, [](const FinderTag& a, const FinderTag& b) {
        return Collation::compare(a.name, b.name) < 0;
    });
    return all;
}

}  // namespace tarn::TagStore
