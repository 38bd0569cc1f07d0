#include "TarnCore/files/FolderWatcher.h"

#include <utility>

#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

std::vector<std::string> withoutTrailingSlashes(std::vector<std::string> paths) {
    for (std::string& path : paths)
        if (path.size() > 1 && path.back() == '/') path.pop_back();
    return paths;
}

}  // namespace

FolderWatcher::FolderWatcher(Callback callback) : callback_(std::move(callback)) {}

FolderWatcher::~FolderWatcher() { stop(); }

void FolderWatcher::watch(const std::vector<URL>& folders, double latency, WatchDepth depth) {
    stop();
    watched_ = folders;
    watch_ = Platform::current().watching->watch(folders, depth, latency, queue_,
                                                 [this](const std::vector<std::string>& paths) {
                                                     callback_(withoutTrailingSlashes(paths));
                                                 });
}

void FolderWatcher::stop() {
    watch_.reset();
    watched_.clear();
}

}  // namespace tarn
