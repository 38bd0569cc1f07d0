#include "TarnCore/files/TagShelf.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <filesystem>
#include <system_error>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr std::string_view fileName = "tags-elsewhere.json";

}  // namespace

TagShelf& TagShelf::shared() {
    static TagShelf shelf(SupportDirectory::location().appending(fileName));
    return shelf;
}

std::vector<TagShelf::Entry> TagShelf::parse(const StoreFile::Content& content) {
    std::vector<Entry> entries;
    const auto json =
        content.state == StoreFile::State::present ? JSONText::parse(content.text) : std::nullopt;
    if (!json || !json->is_array()) return entries;
    for (const JSON& item : *json) {
        try {
            const auto url = JSONText::toPath(item.at("path").get<std::string>());
            if (!url) continue;
            Entry entry{*url, 0, 0, {}, {}};
            JSONFields::read(item, "device", entry.device);
            JSONFields::read(item, "inode", entry.inode);
            JSONFields::read(item, "created", entry.created);
            JSONFields::read(item, "tags", entry.tags);
            entries.push_back(std::move(entry));
        } catch (const std::exception&) {
            // One broken entry leaves the others.
        }
    }
    return entries;
}

std::string TagShelf::text(const std::vector<Entry>& entries) {
    JSON json = JSON::array();
    for (const Entry& entry : entries) {
        JSON item = JSON::object();
        item["path"] = JSONText::fromPath(entry.url);
        item["device"] = entry.device;
        item["inode"] = entry.inode;
        JSONFields::write(item, "created", entry.created);
        item["tags"] = entry.tags;
        json.push_back(std::move(item));
    }
    return JSONText::pretty(json) + "\n";
}

void TagShelf::take(State& state, std::vector<Entry> entries) {
    state.entries = std::move(entries);
    state.byPath.clear();
    state.byInode.clear();
    for (std::size_t i = 0; i < state.entries.size(); ++i) {
        const Entry& entry = state.entries[i];
        // A number that is used again belongs to the entry that came last.
        state.byPath.insert_or_assign(entry.url, i);
        state.byInode.insert_or_assign({entry.device, entry.inode}, i);
    }
}

const TagShelf::Entry* TagShelf::find(const State& state, const URL& url) {
    if (state.entries.empty()) return nullptr;
    const auto attributes = Platform::current().files->attributes(url, Links::keep);
    if (!attributes) return nullptr;
    if (const auto found = state.byPath.find(url); found != state.byPath.end()) {
        const Entry& entry = state.entries[found->second];
        const bool isSame = entry.inode == attributes->inode ||
                            (entry.created && entry.created == attributes->created);
        if (isSame) return &entry;
    }
    const auto found = state.byInode.find({attributes->device, attributes->inode});
    if (found == state.byInode.end()) return nullptr;
    // The number may have been given to a new file.
    const Entry& entry = state.entries[found->second];
    return entry.created == attributes->created ? &entry : nullptr;
}

std::vector<std::string> TagShelf::tags(const URL& url) const {
    const auto state = state_.lock();
    if (state->file.hasChangedOnDisk()) take(*state, parse(state->file.read()));
    const Entry* entry = find(*state, url);
    return entry ? entry->tags : std::vector<std::string>();
}

template <class Edit>
void TagShelf::change(const Edit& edit) {
    const auto state = state_.lock();
    std::error_code ignored;  // Writing says why it fails.
    std::filesystem::create_directories(state->file.url().parent().path(), ignored);
    const bool written = state->file.update([&](const StoreFile::Content& content) {
        take(*state, parse(content));
        std::vector<Entry> entries = state->entries;
        edit(*state, entries);
        take(*state, std::move(entries));
        const auto json = JSONText::parse(content.text);
        const bool isBroken =
            content.state != StoreFile::State::missing && (!json || !json->is_array());
        return StoreFile::Replacement{text(state->entries), isBroken};
    });
    if (!written) throw std::system_error(EIO, std::generic_category(), "tags-elsewhere.json");
}

void TagShelf::set(const URL& url, const std::vector<std::string>& stored) {
    const auto attributes = Platform::current().files->requireAttributes(url, Links::keep);
    change([&](const State& state, std::vector<Entry>& entries) {
        const Entry* old = find(state, url);
        const URL oldURL = old ? old->url : url;
        std::erase_if(entries, [&](const Entry& e) { return e.url == oldURL || e.url == url; });
        if (stored.empty()) return;
        entries.push_back({url, attributes.device, attributes.inode, attributes.created, stored});
    });
}

std::vector<std::pair<std::string, std::vector<std::string>>> TagShelf::tagsInside(
    const URL& url) const {
    const auto state = state_.lock();
    if (state->file.hasChangedOnDisk()) take(*state, parse(state->file.read()));
    std::vector<std::pair<std::string, std::vector<std::string>>> found;
    for (const Entry& entry : state->entries) {
        // Only if it is still the tagged item that has this name.
        if (entry.url.isInside(url) && find(*state, entry.url) == &entry)
            found.emplace_back(entry.url.path().substr(url.path().size()), entry.tags);
    }
    return found;
}

void TagShelf::moved(const URL& from, const URL& to) {
    {
        const auto state = state_.lock();
        if (state->file.hasChangedOnDisk()) take(*state, parse(state->file.read()));
        const auto isMoved = [&](const Entry& entry) { return entry.url.isInside(from); };
        if (std::ranges::none_of(state->entries, isMoved)) return;
    }
    change([&](const State&, std::vector<Entry>& entries) {
        for (Entry& entry : entries) {
            if (!entry.url.isInside(from)) continue;
            entry.url = URL::fromPath(to.path() + entry.url.path().substr(from.path().size()));
            const auto attributes = Platform::current().files->attributes(entry.url, Links::keep);
            if (!attributes) continue;
            entry.device = attributes->device;
            entry.inode = attributes->inode;
            entry.created = attributes->created;
        }
    });
}

}  // namespace tarn
