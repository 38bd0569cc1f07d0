#include <algorithm>
#include <cerrno>
#include <system_error>

#include <sys/xattr.h>

#include "TarnCore/platform/linux/LinuxExtendedAttributes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(LinuxExtendedAttributes, keepAnyBytesUnderTheirBareNames) {
    const TestFolder folder;
    const URL file = folder.file("file");
    LinuxExtendedAttributes attributes;
    const std::string values[] = {"", "plain", std::string("\0\xff\n", 3), std::string(3000, 'x')};
    for (const auto& value : values) {
        SCOPED_TRACE(value.size());
        attributes.set(file, "com.example:key", value);
        EXPECT_EQ(attributes.get(file, "com.example:key"), value);
    }
    char raw[8];
    EXPECT_EQ(getxattr(file.c_str(), "user.com.example:key", raw, 0), 3000);
    attributes.set(file, "other", "1");
    auto names = attributes.list(file);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"com.example:key", "other"}));

    attributes.remove(file, "other");
    attributes.remove(file, "other");
    EXPECT_EQ(attributes.get(file, "other"), std::nullopt);
}

TEST(LinuxExtendedAttributes, throwWhatTheDiskSays) {
    const TestFolder folder;
    LinuxExtendedAttributes attributes;
    try {
        attributes.get(folder / "missing", "x");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), ENOENT);
    }
    EXPECT_THROW(attributes.set(URL::fromPath("/proc/self/status"), "x", "1"), std::system_error);
}

}  // namespace
}  // namespace tarn
