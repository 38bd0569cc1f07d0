#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "TarnCore/base/URL.h"

namespace tarn {
namespace {

TEST(URL, pathsAreStandardised) {
    const struct {
        std::string_view given;
        const char* path;
    } cases[] = {
        {"", "/"},
        {"/", "/"},
        {"//", "/"},
        {"/a//b/./c/", "/a/b/c"},
        {"/a/../../b", "/b"},
        {"/..", "/"},
        {"a/b", "/a/b"},
        {"/a/...", "/a/..."},
        {"/a/.hidden", "/a/.hidden"},
        {"/a/..b", "/a/..b"},
        {"/line\nfeed/\xFF", "/line\nfeed/\xFF"},
        {std::string_view("/a\0b", 4), "/a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(URL::fromPath(c.given).path(), c.path);
    }
    EXPECT_EQ(URL::fromPath("../x", URL::fromPath("/a/b")).path(), "/a/x");
    EXPECT_EQ(URL::fromPath("/x", URL::fromPath("/a/b")).path(), "/x");
}

TEST(URL, extensionsAndStems) {
    const struct {
        const char* name;
        const char* ext;
        const char* stem;
    } cases[] = {
        {"a.TXT", "TXT", "a"},
        {"a.tar.gz", "gz", "a.tar"},
        {".profile", "", ".profile"},
        {".a.b", "b", ".a"},
        {"a.", "", "a."},
        {"a", "", "a"},
        {"\xFF.\xFE", "\xFE", "\xFF"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const URL url = URL::fromPath("/dir.d").appending(c.name);
        EXPECT_EQ(url.pathExtension(), c.ext);
        EXPECT_EQ(url.stem(), c.stem);
    }
}

TEST(URL, stringsThatAreNoFileURLAreRefused) {
    for (const std::string_view text :
         {"", "/a", "http://a/b", "file:", "file://", "file://server/a", "file:a", "file:///%",
          "file:///%4", "file:///%zz", "file:///a%00b"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(URL::parse(text));
    }
    EXPECT_EQ(URL::parse("FILE://LocalHost/a%2Fb")->path(), "/a/b");
    EXPECT_EQ(URL::parse("file:/a?query#fragment")->path(), "/a");
}

TEST(URL, printedFormReadsBackByteForByte) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string path = "/";
        for (int i = 0; i < 20; ++i) path += static_cast<char>(1 + random() % 255);
        const URL url = URL::fromPath(path);
        const std::string text = url.string();
        EXPECT_TRUE(
            std::all_of(text.begin(), text.end(), [](char c) { return c > 32 && c < 127; }));
        const auto back = URL::parse(text);
        ASSERT_TRUE(back) << text;
        EXPECT_EQ(back->path(), url.path());
    }
}

TEST(URL, insideNeedsAWholeName) {
    const URL folder = URL::fromPath("/a/b");
    EXPECT_TRUE(folder.isInside(folder));
    EXPECT_TRUE(URL::fromPath("/a/b/c").isInside(folder));
    EXPECT_FALSE(URL::fromPath("/a/bc").isInside(folder));
    EXPECT_FALSE(URL::fromPath("/a").isInside(folder));
    EXPECT_TRUE(folder.isInside(URL()));
}

}  // namespace
}  // namespace tarn
