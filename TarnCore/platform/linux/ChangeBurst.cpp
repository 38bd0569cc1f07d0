#include "TarnCore/platform/linux/ChangeBurst.h"

#include <algorithm>
#include <utility>

namespace tarn {

void ChangeBurst::add(std::string path) {
    if (isCollapsed_ || !seen_.insert(path).second) return;
    if (paths_.size() == mostPaths) {
        addRoots();
        return;
    }
    paths_.push_back(std::move(path));
}

void ChangeBurst::addRoots() {
    isCollapsed_ = true;
    paths_ = roots_;
    seen_.clear();
}

std::optional<double> ChangeBurst::due(double now) const {
    if (paths_.empty()) return std::nullopt;
    if (!lastTold_) return 0;
    return std::max(0.0, *lastTold_ + latency_ - now);
}

std::vector<std::string> ChangeBurst::take(double now) {
    lastTold_ = now;
    isCollapsed_ = false;
    seen_.clear();
    return std::exchange(paths_, {});
}

}  // namespace tarn
