#include "TarnCore/platform/RecentFiles.h"
#include "TarnCore/platform/linux/BookmarkList.h"
#include "TarnCore/platform/linux/LinuxRecentFiles.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr const char* list = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
  <bookmark href="file:///home/ann/a%20b%26c.txt" added="2026-01-01T00:00:00Z"
            modified="2026-01-02T00:00:00Z" visited="2026-03-15T12:00:00.250000Z">
    <info><metadata owner="http://freedesktop.org">
      <bookmark:applications><bookmark:application name="gedit" visited="2027-01-01T00:00:00Z"/></bookmark:applications>
    </metadata></info>
  </bookmark>
  <!-- <bookmark href="file:///commented" visited="2026-03-15T12:00:00Z"/> -->
  <bookmark visited='2026-03-16T12:00:00Z' href = 'file:///R&#38;D/&lt;x&#x3E;.txt'/>
  <bookmark href="http://example.org/" visited="2026-03-15T12:00:00Z"/>
  <bookmark href="file:///no/visit" modified="2026-02-01T00:00:00Z"/>
  <bookmark href="file:///no/date" visited="yesterday"/>
  <bookmark href="file:///broken%ff" visited="2026-03-17T12:00:00Z"/>
  <bookmark href="file:///cut off)";

TEST(BookmarkList, findsFilesAndTheirDates) {
    const auto files = parseBookmarkList(list);
    const struct {
        const char* path;
        const char* visited;
    } expected[] = {
        {"/home/ann/a b&c.txt", "2026-03-15T12:00:00Z"},
        {"/R&D/<x>.txt", "2026-03-16T12:00:00Z"},
        {"/no/visit", "2026-02-01T00:00:00Z"},
        {"/broken\xff", "2026-03-17T12:00:00Z"},
    };
    ASSERT_EQ(files.size(), std::size(expected));
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(files[i].url.path(), expected[i].path);
        EXPECT_EQ(files[i].visited.iso8601(), expected[i].visited);
    }
}

TEST(BookmarkList, survivesEveryTruncation) {
    const std::string_view text = list;
    for (std::size_t length = 0; length <= text.size(); ++length)
        EXPECT_LE(parseBookmarkList(text.substr(0, length)).size(), 4U);
}

TEST(LinuxRecentFiles, followTheirFile) {
    const TestFolder folder;
    const LinuxRecentFiles recent(folder / "recently-used.xbel");
    EXPECT_TRUE(recent.all().empty());
    folder.file("recently-used.xbel", list);
    EXPECT_EQ(recent.all().size(), 4U);
    EXPECT_EQ(recent.lastVisited(URL::fromPath("/no/visit"))->iso8601(), "2026-02-01T00:00:00Z");
    EXPECT_EQ(recent.lastVisited(URL::fromPath("/never")), std::nullopt);
    // The latest of several visits counts, wherever it stands.
    folder.file("recently-used.xbel",
                "<bookmark href='file:///x' visited='2026-05-02T00:00:00Z'/>"
                "<bookmark href='file:///x' visited='2026-05-01T00:00:00Z'/>");
    EXPECT_EQ(recent.lastVisited(URL::fromPath("/x"))->iso8601(), "2026-05-02T00:00:00Z");
    EXPECT_EQ(recent.lastVisited(URL::fromPath("/no/visit")), std::nullopt);
}

}  // namespace
}  // namespace tarn
