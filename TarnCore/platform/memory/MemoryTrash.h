#pragma once

#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "TarnCore/base/Clock.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/Trash.h"

namespace tarn {

/// A Trash in one folder of a file system, "/trash/files", that can be made to fail.
class MemoryTrash final : public Trash {
public:
    MemoryTrash(std::shared_ptr<FileSystem> files, std::shared_ptr<const Clock> clock)
        : files_(std::move(files)), clock_(std::move(clock)) {}

    /// From now on trashing throws this errno; 0 mends it.
    void failWith(int errnum) { state_.lock()->errnum = errnum; }

    URL trash(const URL& url) override {
        const auto state = state_.lock();
        if (state->errnum)
            throw std::system_error(state->errnum, std::generic_category(), "memory trash");
        files_->createFolders(folder_);
        URL place = folder_.appending(url.name());
        for (int i = 2; files_->attributes(place, Links::keep); ++i)
            place = folder_.appending(std::string(url.name()) + "." + std::to_string(i));
        files_->move(url, place);
        state->origins[place] = {url, clock_->now()};
        return place;
    }
    void forget(const URL& trashed) override { state_.lock()->origins.erase(trashed); }
    std::vector<URL> folders() const override { return {folder_}; }
    std::optional<Origin> origin(const URL& trashed) const override {
        const auto state = state_.lock();
        const auto found = state->origins.find(trashed);
        if (found == state->origins.end()) return std::nullopt;
        return found->second;
    }
    Measured measure(const CancelToken&) override {
        Measured measured;
        for (const auto& [place, origin] : state_.lock()->origins)
            if (const auto item = files_->attributes(place, Links::keep)) {
                ++measured.items;
                measured.bytes += item->allocatedSize;
            }
        return measured;
    }
    Emptied empty(const CancelToken& token, const std::function<void()>& progress) override {
        Emptied emptied;
        TreeRemoval how;
        how.token = token;
        how.removed = progress;
        const auto state = state_.lock();
        std::erase_if(state->origins, [&](const auto& pair) {
            const bool isGone = files_->removeTree(pair.first, how).kept == 0;
            ++(isGone ? emptied.items : emptied.failed);
            return isGone;
        });
        return emptied;
    }

private:
    struct State {
        std::map<URL, Origin> origins;
        int errnum = 0;
    };
    URL folder_ = URL::fromPath("/trash/files");
    std::shared_ptr<FileSystem> files_;
    std::shared_ptr<const Clock> clock_;
    Guarded<State> state_;
};

}  // namespace tarn
