#pragma once

#include <memory>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/FolderWatching.h"

namespace tarn {

/// Watches that hear what a test tells them, without any latency.
class MemoryFolderWatching final : public FolderWatching {
public:
    MemoryFolderWatching();
    ~MemoryFolderWatching() override;

    std::unique_ptr<FolderWatch> watch(
        const std::vector<URL>& folders, WatchDepth depth, double latency, SerialQueue& queue,
        std::function<void(const std::vector<std::string>&)> onChange) override;

    /// Tells the watches that the path lies in, each on its queue.
    void change(const URL& url);
    /// Tells every watch its folders, as after an overflow.
    void missSomething();
    /// The folders of the running watches.
    std::vector<URL> watched() const;

private:
    class Watch;
    struct Listener;
    using Listeners = Guarded<std::vector<std::shared_ptr<Listener>>>;
    static void tell(const std::shared_ptr<Listener>& listener, std::vector<std::string> paths);

    std::shared_ptr<Listeners> listeners_;
};

}  // namespace tarn
