#include <array>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/index/readers/OpenFile.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(OpenFile, isReadWholeWhateverItsSize) {
    const TestFolder folder;
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{3'000'000}}) {
        const std::string content(size, 'x');
        const FileDescriptor file(open(folder.file("f", content).c_str(), O_RDONLY | O_CLOEXEC));
        auto opened = OpenFile::of(file.get(), 3'000'000);
        ASSERT_TRUE(opened);
        EXPECT_EQ(opened->bytes(), content);
        EXPECT_EQ(opened->copy(), content);
        const std::string_view bytes = opened->bytes();
        opened->letGo();
        EXPECT_EQ(bytes, content);
        EXPECT_EQ(OpenFile::of(file.get(), 2'999'999).has_value(), size < 3'000'000);
        unlink((folder / "f").c_str());
    }
}

TEST(OpenFile, isNothingButAFile) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]), writing(ends[1]);
    EXPECT_FALSE(OpenFile::of(reading.get(), 100));
    EXPECT_FALSE(OpenFile::of(-1, 100));
}

}  // namespace
}  // namespace tarn
