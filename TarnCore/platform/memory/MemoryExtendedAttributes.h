#pragma once

#include <cerrno>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/ExtendedAttributes.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Attributes in a map, on a disk that can be made to fail. Given a file system, only files that
/// are there have attributes, and those of a link are those of its target.
class MemoryExtendedAttributes final : public ExtendedAttributes {
public:
    explicit MemoryExtendedAttributes(std::shared_ptr<const FileSystem> files = nullptr)
        : files_(std::move(files)) {}

    /// From now on every call throws this errno; 0 mends the disk.
    void failWith(int errnum) { disk_.lock()->errnum = errnum; }

    std::optional<std::string> get(const URL& url, const std::string& name) const override {
        const URL file = followed(url);
        const auto disk = working();
        const auto found = disk->values.find({file, name});
        if (found == disk->values.end()) return std::nullopt;
        return found->second;
    }
    void set(const URL& url, const std::string& name, const std::string& value) override {
        const URL file = followed(url);
        working()->values[{file, name}] = value;
    }
    void remove(const URL& url, const std::string& name) override {
        const URL file = followed(url);
        working()->values.erase({file, name});
    }
    std::vector<std::string> list(const URL& url) const override {
        const URL file = followed(url);
        std::vector<std::string> names;
        for (const auto& [key, value] : working()->values)
            if (key.first == file) names.push_back(key.second);
        return names;
    }

    /// The file system says so when a file got another name, or is gone (without `to`).
    void moved(const URL& from, const std::optional<URL>& to) {
        const auto disk = disk_.lock();
        std::map<std::pair<URL, std::string>, std::string> values;
        for (auto& [key, value] : disk->values) {
            if (!key.first.isInside(from)) {
                values.insert({key, std::move(value)});
            } else if (to) {
                const std::string rest = key.first.path().substr(from.path().size());
                values[{URL::fromPath(to->path() + rest), key.second}] = std::move(value);
            }
        }
        disk->values = std::move(values);
    }

private:
    struct Disk {
        int errnum = 0;
        std::map<std::pair<URL, std::string>, std::string> values;
    };
    Guarded<Disk>::Access working() const {
        auto disk = disk_.lock();
        if (disk->errnum)
            throw std::system_error(disk->errnum, std::generic_category(), "memory disk");
        return disk;
    }
    URL followed(const URL& url) const {
        if (!files_) return url;
        const auto target = files_->resolved(url);
        if (!target) throw std::system_error(ENOENT, std::generic_category(), "memory disk");
        return *target;
    }
    std::shared_ptr<const FileSystem> files_;
    Guarded<Disk> disk_;
};

}  // namespace tarn
