#include "TarnCore/platform/linux/LinuxExtendedAttributes.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

#include <sys/xattr.h>

namespace tarn {
namespace {

constexpr std::string_view prefix = "user.";

std::string onDisk(const std::string& name) { return std::string(prefix) + name; }

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::optional<std::string> LinuxExtendedAttributes::get(const URL& url,
                                                        const std::string& name) const {
    const std::string key = onDisk(name);
    std::string value(256, '\0');
    for (;;) {
        const ssize_t size = getxattr(url.c_str(), key.c_str(), value.data(), value.size());
        if (size >= 0) {
            value.resize(static_cast<std::size_t>(size));
            return value;
        }
        if (errno == ENODATA) return std::nullopt;
        if (errno != ERANGE) fail("getxattr");
        value.resize(value.size() * 4);  // The kernel caps a value at 64 KiB, so this ends.
    }
}

void LinuxExtendedAttributes::set(const URL& url, const std::string& name,
                                  const std::string& value) {
    if (setxattr(url.c_str(), onDisk(name).c_str(), value.data(), value.size(), 0) != 0)
        fail("setxattr");
}

void LinuxExtendedAttributes::remove(const URL& url, const std::string& name) {
    if (removexattr(url.c_str(), onDisk(name).c_str()) != 0 && errno != ENODATA)
        fail("removexattr");
}

std::vector<std::string> LinuxExtendedAttributes::list(const URL& url) const {
    char few[256];
    std::string many;
    char* names = few;
    ssize_t size = listxattr(url.c_str(), few, sizeof few);
    while (size < 0) {
        if (errno != ERANGE) fail("listxattr");
        many.resize(std::max(sizeof few, many.size()) * 4);
        names = many.data();
        size = listxattr(url.c_str(), names, many.size());
    }
    std::vector<std::string> bare;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
        const std::string_view name = names + at;
        at += name.size() + 1;
        if (name.starts_with(prefix)) bare.emplace_back(name.substr(prefix.size()));
    }
    return bare;
}

}  // namespace tarn
