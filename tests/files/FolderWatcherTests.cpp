#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FolderWatcher.h"
#include "TarnCore/platform/memory/MemoryFolderWatching.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "tests/support/ScopedPlatform.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Tells what it is told to, at once and on the watcher's queue.
class SpellingWatching final : public FolderWatching {
public:
    explicit SpellingWatching(std::vector<std::string> paths) : paths_(std::move(paths)) {}
    std::unique_ptr<FolderWatch> watch(
        const std::vector<URL>&, WatchDepth, double, SerialQueue& queue,
        std::function<void(const std::vector<std::string>&)> onChange) override {
        queue.run([onChange = std::move(onChange), paths = paths_] { onChange(paths); });
        queue.flush();
        return std::make_unique<FolderWatch>();
    }

private:
    std::vector<std::string> paths_;
};

struct Told {
    Guarded<std::vector<std::string>> paths;
    FolderWatcher::Callback callback() {
        return [this](const std::vector<std::string>& more) {
            const auto access = paths.lock();
            access->insert(access->end(), more.begin(), more.end());
        };
    }
    std::vector<std::string> all() const { return *paths.lock(); }
};

TEST(FolderWatcher, pathsComeWithoutTheirTrailingSlash) {
    MemoryPlatform machine;
    Platform services = machine.services();
    services.watching = std::make_shared<SpellingWatching>(
        std::vector<std::string>{"/Users/a/Docs/", "/", "/x", "/line\nfeed/"});
    const ScopedPlatform platform(services);
    Told told;
    FolderWatcher watcher(told.callback());
    watcher.watch({URL::fromPath("/Users/a")}, 0.25);
    EXPECT_THAT(told.all(), ElementsAre("/Users/a/Docs", "/", "/x", "/line\nfeed"));
}

TEST(FolderWatcher, watchingAnewForgetsTheFoldersBefore) {
    MemoryPlatform machine;
    const ScopedPlatform platform(machine.services());
    const URL first = URL::fromPath("/first");
    const URL second = URL::fromPath("/second");
    Told told;
    FolderWatcher watcher(told.callback());
    watcher.stop();  // Nothing is watched yet.
    watcher.watch({first}, 0.25);
    EXPECT_THAT(watcher.watched(), ElementsAre(first));
    watcher.watch({second}, 0.25);
    EXPECT_THAT(machine.watching->watched(), ElementsAre(second));
    machine.watching->change(first.appending("a"));
    machine.watching->change(second.appending("b"));
    watcher.stop();  // Waits for what has been told.
    EXPECT_THAT(machine.watching->watched(), IsEmpty());
    EXPECT_THAT(watcher.watched(), IsEmpty());
    machine.watching->change(second.appending("c"));
    for (const std::string& path : told.all()) EXPECT_EQ(path, "/second/b");
}

}  // namespace
}  // namespace tarn
