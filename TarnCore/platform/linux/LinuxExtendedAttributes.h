#pragma once

#include "TarnCore/platform/ExtendedAttributes.h"

namespace tarn {

/// The attributes of the file system. Ordinary programs may write only names that begin with
/// "user.", so a bare name "x" is "user.x" on the disk.
class LinuxExtendedAttributes final : public ExtendedAttributes {
public:
    std::optional<std::string> get(const URL& url, const std::string& name) const override;
    void set(const URL& url, const std::string& name, const std::string& value) override;
    void remove(const URL& url, const std::string& name) override;
    std::vector<std::string> list(const URL& url) const override;
};

}  // namespace tarn
