#include "TarnCore/platform/memory/MemoryFolderWatching.h"

#include <mutex>
#include <utility>

#include "TarnCore/base/SerialQueue.h"

namespace tarn {

struct MemoryFolderWatching::Listener {
    std::vector<URL> folders;
    WatchDepth depth = WatchDepth::tree;
    SerialQueue* queue = nullptr;
    std::function<void(const std::vector<std::string>&)> onChange;
    std::recursive_mutex mutex;  ///< Held while the callback runs, which may end the watch.
    bool isAlive = true;
};

class MemoryFolderWatching::Watch final : public FolderWatch {
public:
    Watch(std::shared_ptr<Listeners> listeners, std::shared_ptr<Listener> listener)
        : listeners_(std::move(listeners)), listener_(std::move(listener)) {}
    ~Watch() override {
        std::erase(*listeners_->lock(), listener_);
        const std::lock_guard lock(listener_->mutex);
        listener_->isAlive = false;
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    std::shared_ptr<Listeners> listeners_;
    std::shared_ptr<Listener> listener_;
};

MemoryFolderWatching::MemoryFolderWatching() : listeners_(std::make_shared<Listeners>()) {}
MemoryFolderWatching::~MemoryFolderWatching() = default;

std::unique_ptr<FolderWatch> MemoryFolderWatching::watch(
    const std::vector<URL>& folders, WatchDepth depth, double /*latency*/, SerialQueue& queue,
    std::function<void(const std::vector<std::string>&)> onChange) {
    auto listener = std::make_shared<Listener>();
    listener->folders = folders;
    listener->depth = depth;
    listener->queue = &queue;
    listener->onChange = std::move(onChange);
    listeners_->lock()->push_back(listener);
    return std::make_unique<Watch>(listeners_, std::move(listener));
}

void MemoryFolderWatching::tell(const std::shared_ptr<Listener>& listener,
                                std::vector<std::string> paths) {
    const std::lock_guard lock(listener->mutex);
    if (!listener->isAlive) return;
    listener->queue->run([listener, paths = std::move(paths)] {
        const std::lock_guard callLock(listener->mutex);
        if (listener->isAlive) listener->onChange(paths);
    });
}

void MemoryFolderWatching::change(const URL& url) {
    const auto all = *listeners_->lock();
    for (const auto& listener : all) {
        for (const URL& folder : listener->folders) {
            const bool isIn = listener->depth == WatchDepth::tree
                                  ? url.isInside(folder)
                                  : url == folder || url.parent() == folder;
            if (!isIn) continue;
            tell(listener, {url.path()});
            break;
        }
    }
}

void MemoryFolderWatching::missSomething() {
    const auto all = *listeners_->lock();
    for (const auto& listener : all) {
        std::vector<std::string> paths;
        for (const URL& folder : listener->folders) paths.push_back(folder.path());
        tell(listener, std::move(paths));
    }
}

std::vector<URL> MemoryFolderWatching::watched() const {
    std::vector<URL> folders;
    for (const auto& listener : *listeners_->lock())
        folders.insert(folders.end(), listener->folders.begin(), listener->folders.end());
    return folders;
}

}  // namespace tarn
