#pragma once

#include <map>
#include <memory>
#include <utility>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// A mount table that a test writes. It begins with one disk at "/".
class MemoryVolumes final : public Volumes {
public:
    MemoryVolumes() {
        Mount root;
        root.fileSystem = "ext4";
        root.source = "/dev/memory";
        root.device = 1;
        table_.lock()->mounts = {root};
    }

    /// Calls the observers, on this thread.
    void setMounts(std::vector<Mount> mounts) {
        std::vector<std::shared_ptr<Observer>> observers;
        {
            const auto table = table_.lock();
            table->mounts = std::move(mounts);
            for (const auto& observer : table->observers)
                if (auto alive = observer.lock()) observers.push_back(std::move(alive));
        }
        for (const auto& observer : observers) observer->onChange();
    }
    /// What the disk that holds the path says; absent makes it fail.
    void setSpace(const URL& mountPoint, std::optional<VolumeSpace> space) {
        table_.lock()->spaces[mountPoint] = space;
    }

    std::vector<Mount> mounts() const override { return table_.lock()->mounts; }
    std::optional<Mount> mountHolding(const URL& url) const override {
        const auto table = table_.lock();
        const Mount* found = tarn::mountHolding(table->mounts, url);
        return found ? std::optional(*found) : std::nullopt;
    }
    std::string displayName(const Mount& mount) const override {
        return mount.mountPoint.isRoot() ? "Computer" : std::string(mount.mountPoint.name());
    }
    std::optional<VolumeSpace> space(const URL& url) const override {
        const auto mount = mountHolding(url);
        if (!mount) return std::nullopt;
        const auto table = table_.lock();
        const auto found = table->spaces.find(mount->mountPoint);
        return found == table->spaces.end() ? VolumeSpace{1'000'000'000, 400'000'000}
                                            : found->second;
    }
    std::shared_ptr<void> observe(std::function<void()> onChange) override {
        auto observer = std::make_shared<Observer>(Observer{std::move(onChange)});
        table_.lock()->observers.push_back(observer);
        return observer;
    }

private:
    struct Observer {
        std::function<void()> onChange;
    };
    struct Table {
        std::vector<Mount> mounts;
        std::map<URL, std::optional<VolumeSpace>> spaces;
        std::vector<std::weak_ptr<Observer>> observers;
    };
    Guarded<Table> table_;
};

}  // namespace tarn
