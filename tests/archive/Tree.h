#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/ScopedPlatform.h"

namespace tarn::test {

/// Everything below a folder, sorted: "folder/", "link->target", "file=content"; of archives and
/// of long files only the name.
inline std::vector<std::string> tree(const URL& folder) {
    std::vector<std::string> lines;
    const std::filesystem::path root(folder.path());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        std::string line = entry.path().lexically_relative(root).string();
        if (entry.is_symlink()) {
            line += "->" + std::filesystem::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            line += '/';
        } else if (line.find(".zip") == line.npos && line.find(".tar") == line.npos) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            if (content.size() < 100) line += "=" + content;
        }
        lines.push_back(std::move(line));
    }
    std::ranges::sort(lines);
    return lines;
}

/// For its length, every disk says that it has this much room left.
class ScopedFreeSpace {
public:
    explicit ScopedFreeSpace(std::int64_t free) : scope_(platform(free)) {}

private:
    class Full final : public Volumes {
    public:
        Full(std::shared_ptr<Volumes> real, std::int64_t free)
            : real_(std::move(real)), free_(free) {}
        std::vector<Mount> mounts() const override { return real_->mounts(); }
        std::optional<Mount> mountHolding(const URL& url) const override {
            return real_->mountHolding(url);
        }
        std::string displayName(const Mount& mount) const override {
            return real_->displayName(mount);
        }
        std::optional<VolumeSpace> space(const URL&) const override {
            return VolumeSpace{.total = free_, .free = free_};
        }
        std::shared_ptr<void> observe(std::function<void()> onChange) override {
            return real_->observe(std::move(onChange));
        }

    private:
        std::shared_ptr<Volumes> real_;
        std::int64_t free_;
    };
    static Platform platform(std::int64_t free) {
        Platform changed = Platform::current();
        changed.volumes = std::make_shared<Full>(changed.volumes, free);
        return changed;
    }
    ScopedPlatform scope_;
};

}  // namespace tarn::test
