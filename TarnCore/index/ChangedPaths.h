#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tarn {

/// Paths that have changed, asked by a walk that looks only at these and at what is below them.
class ChangedPaths {
public:
    /// Absolute, without a slash at their ends.
    explicit ChangedPaths(const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            changed_.insert(path);
            for (std::string_view up = parent(path); up.size() > 1; up = parent(up))
                if (!above_.emplace(up).second) break;
        }
    }

    /// The path has changed, or lies below one that has.
    bool hold(std::string_view path) const {
        for (; path.size() > 1; path = parent(path))
            if (changed_.contains(std::string(path))) return true;
        return false;
    }
    /// One of the changed paths lies below.
    bool lieBelow(std::string_view path) const { return above_.contains(std::string(path)); }

private:
    static std::string_view parent(std::string_view path) {
        const std::size_t slash = path.rfind('/');
        return slash == path.npos ? std::string_view() : path.substr(0, slash);
    }

    std::unordered_set<std::string> changed_;
    std::unordered_set<std::string> above_;
};

}  // namespace tarn
