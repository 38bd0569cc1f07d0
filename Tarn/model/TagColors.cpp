#include "Tarn/model/TagColors.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "Tarn/model/MainThread.h"
#include "Tarn/model/StoreWatcher.h"
#include "TarnCore/base/Collation.h"
#include "TarnCore/tags/TagStore.h"

namespace tarn {
namespace {

/// Milliseconds. Tags that are given here are known at once; this is for other programs' tags.
constexpr qint64 betweenRefreshes = 10LL * 60 * 1000;

bool isStandard(const FinderTag& tag) {
    const auto standard = FinderTag::standard();
    return std::find(standard.begin(), standard.end(), tag) != standard.end();
}

}  // namespace

TagColors::TagColors(TaskPool& pool, QObject* parent)
    : QObject(parent),
      pool_(pool),
      store_("tag-colors.json", [] { return std::map<std::string, int>(); }) {
    for (const FinderTag& tag : FinderTag::standard()) colors_.emplace(tag.name, tag.color);
    showStored();
}

TagColors::~TagColors() { refreshToken_.cancel(); }

void TagColors::refresh() {
    if (sinceRefresh_.isValid() && sinceRefresh_.elapsed() < betweenRefreshes) return;
    sinceRefresh_.start();
    pool_.run(
        [token = refreshToken_, self = QPointer<TagColors>(this)] {
            MainThread::post(self, [tags = TagStore::allTags(token)](TagColors& colors) {
                for (const FinderTag& tag : tags)
                    if (!colors.colors_.contains(tag.name)) colors.remember(tag);
            });
        },
        TaskPriority::background);
}

TagColor TagColors::color(const std::string& name, const URL& carrier) {
    const auto found = colors_.find(name);
    if (found != colors_.end()) return found->second;
    if (!asked_.insert(name).second) return TagColor::none;
    pool_.run(
        [carrier, self = QPointer<TagColors>(this)] {
            MainThread::post(self, [tags = TagStore::tags(carrier)](TagColors& colors) {
                for (const FinderTag& tag : tags) {
                    if (!colors.colors_.contains(tag.name)) colors.remember(tag);
                }
            });
        },
        TaskPriority::background);
    return TagColor::none;
}

void TagColors::remember(const FinderTag& tag) {
    const auto [known, isNew] = colors_.try_emplace(tag.name, tag.color);
    if (!isNew && known->second == tag.color) return;
    known->second = tag.color;
    TagStore::remember(tag);
    store_.update([tag](std::map<std::string, int>& stored) {
        if (isStandard(tag))
            stored.erase(tag.name);
        else
            stored.insert_or_assign(tag.name, static_cast<int>(tag.color));
    });
    emit changed();
}

void TagColors::showStored() {
    bool isNew = false;
    for (const auto& [name, number] : store_.value()) {
        if (number < 0 || number >= static_cast<int>(allTagColors().size())) continue;
        const auto color = static_cast<TagColor>(number);
        const auto [known, isAdded] = colors_.try_emplace(name, color);
        if (!isAdded && known->second == color) continue;
        known->second = color;
        TagStore::remember({name, color});
        isNew = true;
    }
    if (isNew) emit changed();
}

void TagColors::watch(StoreWatcher& watcher) {
    watcher.add(store_, [this] { showStored(); });
}

void TagColors::flush() { store_.flush(); }

std::vector<FinderTag> TagColors::known() const {
    std::vector<FinderTag> tags;
    for (const FinderTag& tag : FinderTag::standard())
        tags.push_back({tag.name, colors_.find(tag.name)->second});
    const auto others = static_cast<std::ptrdiff_t>(tags.size());
    for (const auto& [name, color] : colors_) {
        const auto isSame = [&name](const FinderTag& tag) { return tag.name == name; };
        if (std::none_of(tags.begin(), tags.begin() + others, isSame))
            tags.push_back({name, color});
    }
    std::sort(tags.begin() + others, tags.end(), [](const FinderTag& a, const FinderTag& b) {
        return Collation::compare(a.name, b.name) < 0;
    });
    return tags;
}

}  // namespace tarn
