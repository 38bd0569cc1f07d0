#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include "TarnCore/files/FolderWatcher.h"

namespace tarn {

/// Notices when a file in the support folder is written, by whichever process, and has its store
/// read it again.
///
/// Main thread only. Files are read on the watcher's queue. A store may have taken over the new
/// content on the way to writing something of its own, so `show` compares and does not count on
/// there being news.
class StoreWatcher final : public QObject {
public:
    explicit StoreWatcher(QObject* parent = nullptr);
    /// No `reload` runs after it.
    ~StoreWatcher() override;

    /// `reload` is called on the watcher's queue when the file of this name has changed, then
    /// `show` on the main thread. Before start().
    void add(const std::string& name, std::function<void()> reload, std::function<void()> show);
    /// The same for a JSONStore.
    template <class Store>
    void add(Store& store, std::function<void()> show) {
        add(
            std::string(store.url().name()), [&store] { store.refresh(); }, std::move(show));
    }
    /// Once. What was written since the stores were opened is read first.
    void start();

private:
    struct Entry {
        std::function<void()> reload;
        std::function<void()> show;
    };
    void changed(const std::string& name, const QPointer<StoreWatcher>& self);
    void showAll(const std::string& name);

    std::multimap<std::string, Entry> stores_;  ///< By file name; not changed after start().
    std::unique_ptr<FolderWatcher> watcher_;
};

}  // namespace tarn
