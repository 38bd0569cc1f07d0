#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Named byte strings kept with a file, under their bare names ("xdg.tags", "tarn.added",
/// "com.apple.metadata:_kMDItemUserTags"). Callable from any thread. A symbolic link is followed.
class ExtendedAttributes {
public:
    virtual ~ExtendedAttributes() = default;
    /// Absent when the file has no such attribute. Every other failure, here and below, is thrown
    /// as std::system_error with its errno (ENOTSUP where the disk keeps no attributes).
    virtual std::optional<std::string> get(const URL& url, const std::string& name) const = 0;
    virtual void set(const URL& url, const std::string& name, const std::string& value) = 0;
    /// Nothing happens when there is no such attribute.
    virtual void remove(const URL& url, const std::string& name) = 0;
    /// The bare names of all attributes that ordinary programs may read.
    virtual std::vector<std::string> list(const URL& url) const = 0;
};

}  // namespace tarn
