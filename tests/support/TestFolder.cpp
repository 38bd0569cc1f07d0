#include "tests/support/TestFolder.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tarn {
namespace {

void makeFolders(const URL& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder.path(), error);
    ASSERT_FALSE(error) << folder.path() << ": " << error.message();
}

}  // namespace

TestFolder::TestFolder() {
    const char* base = std::getenv("TMPDIR");
    std::string name =
        std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/tarn-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    // The path that the code under test sees is free of links.
    char* real = realpath(name.c_str(), nullptr);
    url_ = URL::fromPath(real);
    std::free(real);
}

TestFolder::~TestFolder() {
    // Folders that a test made unreadable are opened up again, so that they can be removed.
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator it(
             url_.path(), std::filesystem::directory_options::skip_permission_denied, error);
         it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
        if (error) break;
        if (it->is_directory(error) && !it->is_symlink(error)) chmod(it->path().c_str(), 0700);
    }
    std::filesystem::remove_all(url_.path(), error);
}

URL TestFolder::file(std::string_view relative, std::string_view content,
                     std::optional<Date> modified) const {
    const URL url = url_.appending(relative);
    makeFolders(url.parent());
    std::ofstream stream(url.path(), std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    EXPECT_TRUE(stream.good()) << url.path();
    if (modified) setModified(url, *modified);
    return url;
}

URL TestFolder::sparseFile(std::string_view relative, std::int64_t size) const {
    const URL url = file(relative);
    EXPECT_EQ(truncate(url.c_str(), size), 0);
    return url;
}

URL TestFolder::folder(std::string_view relative) const {
    const URL url = url_.appending(relative);
    makeFolders(url);
    return url;
}

URL TestFolder::link(std::string_view relative, std::string_view target) const {
    const URL url = url_.appending(relative);
    makeFolders(url.parent());
    EXPECT_EQ(symlink(std::string(target).c_str(), url.c_str()), 0);
    return url;
}

void TestFolder::setModified(const URL& url, Date modified) const {
    const double fraction = modified.seconds - std::floor(modified.seconds);
    const timespec time{modified.unixSeconds(), std::lround(fraction * 1e9)};
    const timespec times[2] = {time, time};
    EXPECT_EQ(utimensat(AT_FDCWD, url.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

std::string TestFolder::read(std::string_view relative) const {
    std::ifstream stream(url_.appending(relative).path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool TestFolder::exists(std::string_view relative) const {
    struct stat info;
    return lstat(url_.appending(relative).c_str(), &info) == 0;
}

}  // namespace tarn
