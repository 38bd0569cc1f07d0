#pragma once

#include <map>
#include <utility>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/MediaMetadata.h"

namespace tarn {

/// Metadata that a test writes.
class MemoryMediaMetadata final : public MediaMetadata {
public:
    void set(const URL& url, ItemMetadata metadata) {
        state_.lock()->metadata[url] = std::move(metadata);
    }
    /// The files whose metadata was read, in this order.
    std::vector<URL> asked() const { return state_.lock()->asked; }

    ItemMetadata read(const URL& url) const override {
        const auto state = state_.lock();
        state->asked.push_back(url);
        const auto found = state->metadata.find(url);
        return found == state->metadata.end() ? ItemMetadata{} : found->second;
    }
    std::optional<Date> lastOpened(const URL& url) const override {
        const auto state = state_.lock();
        const auto found = state->metadata.find(url);
        return found == state->metadata.end() ? std::nullopt : found->second.lastOpened;
    }

private:
    struct State {
        std::map<URL, ItemMetadata> metadata;
        std::vector<URL> asked;
    };
    Guarded<State> state_;
};

}  // namespace tarn
