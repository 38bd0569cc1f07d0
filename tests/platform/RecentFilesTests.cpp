#include <filesystem>

#include <sys/stat.h>

#include "TarnCore/platform/RecentFiles.h"
#include "TarnCore/platform/linux/BookmarkList.h"
#include "TarnCore/platform/linux/LinuxOpenedFiles.h"
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

const BookmarkUse use = {URL::fromPath("/home/ann/a b&c.txt"), "text/plain", "Tarn", "tarn %u",
                         *Date::fromISO8601("2026-04-01T08:00:00Z")};

TEST(BookmarkList, notesAFileAndLeavesTheRestAsItIs) {
    const std::string whole = std::string(list).substr(0, std::string_view(list).rfind('<')) +
                              "<folder odd='1'/>\r\n</xbel>\n<!-- behind -->";
    const auto noted = noteInBookmarkList(whole, use);
    ASSERT_TRUE(noted);
    // The dates in the entry of the file, and one more application: nothing else.
    std::string expected = whole;
    const auto replace = [&expected](std::string_view what, std::string_view with) {
        expected.replace(expected.find(what), what.size(), with);
    };
    replace("modified=\"2026-01-02T00:00:00Z\"", "modified=\"2026-04-01T08:00:00Z\"");
    replace("2026-03-15T12:00:00.250000Z", "2026-04-01T08:00:00Z");
    replace("</bookmark:applications>",
            "  <bookmark:application name=\"Tarn\" exec=\"&apos;tarn %u&apos;\" "
            "modified=\"2026-04-01T08:00:00Z\" count=\"1\"/>\n        "
            "</bookmark:applications>");
    EXPECT_EQ(*noted, expected);

    BookmarkUse later = use;
    later.when = *Date::fromISO8601("2026-04-02T08:00:00Z");
    const auto again = noteInBookmarkList(*noted, later);
    ASSERT_TRUE(again);
    EXPECT_NE(again->find("modified=\"2026-04-02T08:00:00Z\" count=\"2\""), again->npos);
    EXPECT_EQ(again->size(), noted->size());
}

TEST(BookmarkList, notesEveryFormOfAnEntry) {
    const struct {
        const char* entry;
        const char* part;  ///< Of what it becomes.
    } cases[] = {
        {"", "<bookmark href=\"file:///home/ann/a%20b&amp;c.txt\" added=\"2026-04-01T08:00:00Z\""},
        {"<bookmark href='file:///home/ann/a%20b&amp;c.txt'/>",
         "<bookmark href='file:///home/ann/a%20b&amp;c.txt' modified=\"2026-04-01T08:00:00Z\" "
         "visited=\"2026-04-01T08:00:00Z\">\n    <info>"},
        {"<bookmark href=\"file:///home/ann/a%20b&amp;c.txt\"></bookmark>",
         "visited=\"2026-04-01T08:00:00Z\">\n    <info>"},
        // What another owner keeps is none of our business.
        {"<bookmark href=\"file:///home/ann/a%20b&amp;c.txt\"><info><metadata "
         "owner=\"x\"><bookmark:application name=\"Tarn\" count=\"7\"/></metadata></info>"
         "</bookmark>",
         "<bookmark:application name=\"Tarn\" count=\"7\"/>"},
        {"<bookmark href=\"file:///home/ann/a%20b&amp;c.txt\"><info><metadata "
         "owner=\"http://freedesktop.org\"></metadata></info></bookmark>",
         "<bookmark:applications>\n          <bookmark:application name=\"Tarn\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.entry);
        const std::string text = "<xbel>" + std::string(c.entry) + "</xbel>";
        const auto noted = noteInBookmarkList(text, use);
        ASSERT_TRUE(noted);
        EXPECT_NE(noted->find(c.part), noted->npos) << *noted;
        const auto files = parseBookmarkList(*noted);
        ASSERT_EQ(files.size(), 1U);
        EXPECT_EQ(files.front().url, use.url);
        EXPECT_EQ(files.front().visited, use.when);
    }
    for (const char* broken : {"<xbel>", "x",
                               "<xbel><bookmark href='file:///home/ann/a%20b%26c.txt'>"
                               "</xbel>"}) {
        SCOPED_TRACE(broken);
        EXPECT_EQ(noteInBookmarkList(broken, use), std::nullopt);
    }
}

TEST(LinuxOpenedFiles, areNotedInAFileForTheUserAlone) {
    const TestFolder folder;
    LinuxOpenedFiles opened(folder / "recently-used.xbel", folder / "config");
    const LinuxRecentFiles recent(folder / "recently-used.xbel");
    const URL odd = URL::fromPath("/x/\xff\n<&>.txt");
    opened.note({{odd, "text/plain"}, {use.url, "text/plain"}}, use.when);
    EXPECT_EQ(recent.lastVisited(odd), use.when);
    EXPECT_EQ(recent.lastVisited(use.url), use.when);
    struct stat status {};
    ASSERT_EQ(stat((folder / "recently-used.xbel").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    // Nothing is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.url().path()), {}), 1);

    // A link stays one.
    folder.link("linked.xbel", "recently-used.xbel");
    LinuxOpenedFiles linked(folder / "linked.xbel", folder / "config");
    linked.note({{URL::fromPath("/y"), "text/plain"}}, use.when);
    EXPECT_TRUE(std::filesystem::is_symlink((folder / "linked.xbel").path()));
    EXPECT_EQ(recent.all().size(), 3U);
}

TEST(LinuxOpenedFiles, areNotNotedWhereTheUserWantsNoHistory) {
    const struct {
        const char* file;
        const char* text;
        bool isNoted;
    } cases[] = {
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-recent-files-enabled=false\n", false},
        {"gtk-4.0/settings.ini", "[Settings]\ngtk-recent-files-enabled = 0\n", false},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-recent-files-max-age=0\n", false},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-recent-files-enabled=true\n", true},
        {"gtk-3.0/settings.ini", "[Other]\ngtk-recent-files-enabled=false\n", true},
        {"kdeglobals", "[RecentDocuments]\nUseRecent=false\n", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const TestFolder folder;
        folder.file(std::string("config/") + c.file, c.text);
        LinuxOpenedFiles opened(folder / "recently-used.xbel", folder / "config");
        opened.note({{use.url, "text/plain"}}, use.when);
        EXPECT_EQ(folder.exists("recently-used.xbel"), c.isNoted);
    }
    // Nor over something that is no list: many put a folder there to have none.
    const TestFolder folder;
    folder.folder("recently-used.xbel");
    LinuxOpenedFiles opened(folder / "recently-used.xbel", folder / "config");
    opened.note({{use.url, "text/plain"}}, use.when);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.url().path()), {}), 1);
}

}  // namespace
}  // namespace tarn
