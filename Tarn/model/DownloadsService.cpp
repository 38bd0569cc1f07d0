#include "Tarn/model/DownloadsService.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "Tarn/model/MainThread.h"
#include "Tarn/model/SourceNames.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/AddedDate.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// What browsers and download tools call files that are not complete.
constexpr std::string_view unfinished[] = {"part",    "crdownload", "download",
                                           "partial", "opdownload", "aria2"};

bool isFinished(const URL& url) {
    if (url.name().starts_with('.')) return false;
    const std::string extension = Text::lowercased(url.pathExtension());
    return std::ranges::find(unfinished, extension) == std::end(unfinished);
}

}  // namespace

/// What was seen in the folder last.
struct DownloadsService::Folder {
    /// Number and time of creation; numbers alone are given again.
    using Identity = std::pair<std::uint64_t, double>;

    URL url = Paths::downloads();
    std::map<std::string, Identity> items;  ///< Those that have arrived, by name.
    /// Gone from under their names in this burst of changes and in the one before: what is only
    /// given another name.
    std::set<Identity> leaving;
    std::set<Identity> left;

    static std::optional<Identity> identity(const URL& item) {
        const auto facts = Platform::current().files->attributes(item, Links::keep);
        if (!facts || !isFinished(item)) return std::nullopt;
        return Identity(facts->inode, facts->created.value_or(Date()).seconds);
    }

    /// Looks at these; those that have arrived.
    std::vector<URL> look(const std::vector<URL>& changed) {
        std::set<Identity> known;
        for (const auto& [name, item] : items) known.insert(item);
        left = std::exchange(leaving, {});
        std::vector<std::pair<URL, Identity>> there;
        for (const URL& item : changed) {
            const auto now = identity(item);
            const auto before = items.find(std::string(item.name()));
            if (before != items.end() && before->second != now) {
                leaving.insert(before->second);
                items.erase(before);
            }
            if (now) there.emplace_back(item, *now);
        }
        std::vector<URL> arrivals;
        for (const auto& [item, now] : there) {
            // Where it came from is often written a moment later.
            SourceNames::shared().forget(item);
            items.insert_or_assign(std::string(item.name()), now);
            if (!known.contains(now) && !left.contains(now)) arrivals.push_back(item);
        }
        return arrivals;
    }

    std::vector<URL> lookAtAll() {
        std::set<URL> all;
        for (const auto& [name, item] : items) all.insert(url.appending(name));
        try {
            for (const ListedName& listed : DirectoryLister::names(url, false))
                all.insert(url.appending(listed.name));
        } catch (const ListingError&) {
            // It has gone; so has what was in it.
        }
        return look({all.begin(), all.end()});
    }

    /// The folder, or the nearest one above it that is there.
    URL watched() const {
        URL folder = url;
        while (!folder.isRoot() && !Platform::current().files->attributes(folder, Links::follow))
            folder = folder.parent();
        return folder;
    }
};

DownloadsService::DownloadsService(QObject* parent) : QObject(parent) {}

DownloadsService::~DownloadsService() {
    queue_.run([this] { watcher_.reset(); });
    queue_.flush();
}

void DownloadsService::start() {
    queue_.run([this] {
        if (folder_) return;
        folder_ = std::make_unique<Folder>();
        watcher_ = std::make_unique<FolderWatcher>([this](const std::vector<std::string>& paths) {
            queue_.run([this, paths] { look(paths); });
        });
        watch();
        folder_->lookAtAll();
    });
}

void DownloadsService::watch() {
    const std::vector<URL> wanted = {folder_->watched()};
    if (watcher_->watched() != wanted) watcher_->watch(wanted, latency, WatchDepth::children);
}

void DownloadsService::look(const std::vector<std::string>& paths) {
    if (!watcher_) return;
    const bool isAll = watcher_->watched().front() != folder_->url ||
                       std::ranges::find(paths, folder_->url.path()) != paths.end();
    std::vector<URL> changed;
    for (const std::string& path : paths) changed.push_back(URL::fromPath(path));
    std::erase_if(changed, [this](const URL& item) { return item.parent() != folder_->url; });
    // The watch first, so that nothing falls between.
    if (isAll) watch();
    const std::vector<URL> arrivals = isAll ? folder_->lookAtAll() : folder_->look(changed);
    if (arrivals.empty()) return;
    for (const URL& item : arrivals) AddedDate::note(item);
    MainThread::post(QPointer<DownloadsService>(this),
                     [arrivals](DownloadsService& service) { emit service.arrived(arrivals); });
}

}  // namespace tarn
