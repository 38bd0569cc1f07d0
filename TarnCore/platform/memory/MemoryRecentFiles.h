#pragma once

#include <map>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/RecentFiles.h"

namespace tarn {

/// A list of recent files that a test writes.
class MemoryRecentFiles final : public RecentFiles {
public:
    void visit(const URL& url, Date date) { (*visited_.lock())[url] = date; }

    std::vector<RecentFile> all() const override {
        std::vector<RecentFile> files;
        for (const auto& [url, date] : *visited_.lock()) files.push_back({url, date});
        return files;
    }
    std::optional<Date> lastVisited(const URL& url) const override {
        const auto visited = visited_.lock();
        const auto found = visited->find(url);
        if (found == visited->end()) return std::nullopt;
        return found->second;
    }

private:
    Guarded<std::map<URL, Date>> visited_;
};

}  // namespace tarn
