#include <algorithm>
#include <cerrno>
#include <system_error>

#include <sys/xattr.h>

#include "TarnCore/platform/ExtendedAttributes.h"
#include "TarnCore/platform/linux/LinuxExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

struct RealDisk {
    TestFolder folder;
    LinuxExtendedAttributes attributes;
    URL file = folder.file("file");
    URL link = folder.link("link", "file");
    URL missing = folder / "missing";
};

struct MemoryDisk {
    std::shared_ptr<MemoryFileSystem> files = std::make_shared<MemoryFileSystem>();
    MemoryExtendedAttributes attributes{files};
    URL file = URL::fromPath("/file");
    URL link = URL::fromPath("/link");
    URL missing = URL::fromPath("/missing");
    MemoryDisk() {
        files->addFile(file);
        files->addLink(link, "file");
    }
};

template <class Disk>
class ExtendedAttributesContract : public testing::Test {
protected:
    Disk disk;
};
using Disks = testing::Types<RealDisk, MemoryDisk>;
TYPED_TEST_SUITE(ExtendedAttributesContract, Disks);

TYPED_TEST(ExtendedAttributesContract, keepsAnyBytesUnderTheirBareNames) {
    auto& attributes = this->disk.attributes;
    const URL& file = this->disk.file;
    const std::string values[] = {"", "plain", std::string("\0\xff\n", 3), std::string(3000, 'x')};
    for (const auto& value : values) {
        SCOPED_TRACE(value.size());
        attributes.set(file, "com.example:key", value);
        EXPECT_EQ(attributes.get(file, "com.example:key"), value);
    }
    attributes.set(file, "other", "1");
    auto names = attributes.list(file);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"com.example:key", "other"}));

    attributes.remove(file, "other");
    attributes.remove(file, "other");
    EXPECT_EQ(attributes.get(file, "other"), std::nullopt);
}

TYPED_TEST(ExtendedAttributesContract, followsLinks) {
    this->disk.attributes.set(this->disk.link, "key", "value");
    EXPECT_EQ(this->disk.attributes.get(this->disk.file, "key"), "value");
}

TYPED_TEST(ExtendedAttributesContract, throwsWhatTheDiskSays) {
    try {
        this->disk.attributes.get(this->disk.missing, "x");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), ENOENT);
    }
}

TEST(LinuxExtendedAttributes, areSeenByOtherProgramsAsTheUsers) {
    const TestFolder folder;
    const URL file = folder.file("file");
    LinuxExtendedAttributes().set(file, "xdg.tags", "Work,Home");
    char value[16] = {};
    EXPECT_EQ(getxattr(file.c_str(), "user.xdg.tags", value, sizeof value), 9);
    EXPECT_STREQ(value, "Work,Home");
}

TEST(MemoryExtendedAttributes, failAsTold) {
    MemoryExtendedAttributes attributes;
    attributes.failWith(ENOSPC);
    EXPECT_THROW(attributes.set(URL::fromPath("/file"), "x", "1"), std::system_error);
    attributes.failWith(0);
    EXPECT_EQ(attributes.get(URL::fromPath("/file"), "x"), std::nullopt);
}

}  // namespace
}  // namespace tarn
