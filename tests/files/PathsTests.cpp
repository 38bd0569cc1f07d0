
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/files/UserDirs.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;

/// A home folder of its own, and no other variable that moves folders about.
class PathsTest : public testing::Test {
protected:
    void set(const char* name, const std::string& value) { variables_.set(name, value); }
    URL home() const { return root / "ada"; }

    const TestFolder root;

private:
    ScopedEnvironment variables_{{"HOME", home().path()},
                                 {"XDG_DATA_HOME", {}},
                                 {"XDG_CONFIG_HOME", {}},
                                 {"XDG_CACHE_HOME", {}},
                                 {"TARN_ISOLATED_ROOT", {}}};
};

TEST_F(PathsTest, theDesktopNamesTheUsersFolders) {
    root.file("ada/.config/user-dirs.dirs",
              "# written by hand\n"
              "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
              "XDG_DOWNLOAD_DIR=\"/data/down \\\"load\\\"s\"\n"
              "XDG_MUSIC_DIR=\"$HOME/\"\n"
              "  XDG_VIDEOS_DIR = \"$HOME/Videos\"  \n"
              "XDG_PICTURES_DIR=\"relative\"\n"
              "XDG_DOCUMENTS_DIR=\"$HOME/unclosed\n");
    Paths::reload();
    EXPECT_EQ(Paths::desktop(), home().appending("Schreibtisch"));
    EXPECT_EQ(Paths::downloads(), URL::fromPath("/data/down \"load\"s"));
    EXPECT_EQ(Paths::movies(), home().appending("Videos"));
    EXPECT_EQ(Paths::music(), home().appending("Music"));  // switched off
    EXPECT_EQ(Paths::pictures(), home().appending("Pictures"));
    EXPECT_EQ(Paths::documents(), home().appending("Documents"));
    EXPECT_EQ(Paths::trash(), home().appending(".local/share/Trash/files"));
}

TEST_F(PathsTest, anIsolatedRunStaysInsideItsTree) {
    const URL tree = root / "scratch";
    set("XDG_DATA_HOME", "/somewhere/else");
    set("TARN_ISOLATED_ROOT", tree.path());
    root.file("scratch/Home/.config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/real/desktop\"\n");
    EXPECT_TRUE(Paths::isIsolated());
    EXPECT_EQ(Paths::home(), tree.appending("Home"));
    EXPECT_EQ(Paths::desktop(), tree.appending("Home/Desktop"));
    EXPECT_TRUE(Paths::trash().isInside(tree));
    EXPECT_EQ(SupportDirectory::file("a.json"), tree.appending("Support/a.json"));
    EXPECT_TRUE(root.exists("scratch/Support"));

    set("TARN_ISOLATED_ROOT", "");
    EXPECT_FALSE(Paths::isIsolated());
    set("XDG_DATA_HOME", (root / "data").path());
    EXPECT_EQ(SupportDirectory::file("a.json"), root / "data/Tarn/a.json");
    set("XDG_DATA_HOME", "relative/is/ignored");
    EXPECT_EQ(Paths::dataHome(), home().appending(".local/share"));
}

TEST_F(PathsTest, trashIsKnownByItsPath) {
    const struct {
        std::string path;
        bool isInTrash;
    } cases[] = {
        {home().path() + "/.local/share/Trash/files/a/b", true},
        {home().path() + "/.local/share/Trash/info/a.trashinfo", true},
        {home().path() + "/.local/share/Trash", false},
        {home().path() + "/.local/share/Trashcan/a", false},
        {home().path() + "/Documents/Trash/a", false},
        {home().path() + "/.Trash/a", true},
        {"/media/disk/.Trash-1000/files/a", true},
        {"/media/disk/.Trash/1000/files/a", true},
        {"/media/disk/.Trash-1000", false},
        {"/media/disk/.Trash-mine/a", false},
        {"/media/disk/.Trash-/a", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(Paths::isInTrash(URL::fromPath(c.path)), c.isInTrash);
    }
}

TEST_F(PathsTest, applicationDataIsKnownByItsPath) {
    const URL ada = URL::fromPath("/home/ada");
    const struct {
        const char* path;
        bool isAppData;
    } cases[] = {
        {"/proc/1/status", true},
        {"/procurement/a", false},
        {"/private/var/log", true},
        {"/Library/Caches", true},
        {"/run/lock/a", true},
        {"/run/media/ada/STICK/a", false},
        {"/run/user/1000/bus", true},
        {"/run/user/1000/gvfs/smb:a/b", false},
        {"/home/ada/.cache", true},
        {"/home/ada/.cached/a", false},
        {"/home/ada/.config/a/b", true},
        {"/home/ada/.var/app/x", true},
        {"/home/ada/snap/firefox", true},
        {"/home/ada/Documents/snap/a", false},
        {"/home/ada/.local/share/app/x", true},
        {"/home/ada/.local/share/Trash/files/a", false},
        {"/home/ada/.local/bin/tool", false},
        {"/home/ada/Library/Caches/a", true},
        {"/home/ada/Library/Mobile Documents/a", false},
        {"/home/eve/.cache/a", false},
        {"/home/ada", false},
        {"/", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(Paths::isAppData(URL::fromPath(c.path), ada), c.isAppData);
    }
    EXPECT_EQ(Paths::appDataFolders().size(), 30U);
    EXPECT_TRUE(Paths::isAppDataFolder(URL::fromPath("/a/DerivedData"), false));
    EXPECT_FALSE(Paths::isAppDataFolder(URL::fromPath("/a/Mail.app"), false));
    EXPECT_TRUE(Paths::isAppDataFolder(URL::fromPath("/a/Mail.APP"), true));
    EXPECT_FALSE(Paths::isAppDataFolder(URL::fromPath("/node_modules/mine"), true));
}

TEST_F(PathsTest, copiedPathsFollowTheChosenForm) {
    const URL url = home().appending("It's 5 €\n.txt");
    EXPECT_EQ(Paths::format(url, CopyPathFormat::full), url.path());
    EXPECT_EQ(Paths::format(url, CopyPathFormat::tilde), "~/It's 5 €\n.txt");
    EXPECT_EQ(Paths::format(url, CopyPathFormat::fileURL), url.string());
    EXPECT_EQ(Paths::abbreviate(home()), "~");
    EXPECT_EQ(Paths::abbreviate(URL::fromPath(home().path() + "x")), home().path() + "x");
    const struct {
        const char* text;
        const char* quoted;
    } cases[] = {
        {"/usr/bin/tarn", "/usr/bin/tarn"},
        {"", "''"},
        {"a b", "'a b'"},
        {"it's", R"('it'\''s')"},
        {"$HOME", "'$HOME'"},
        {"~", "'~'"},
        {"a\nb", "'a\nb'"},
        {"é", "'é'"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Paths::shellQuote(c.text), c.quoted);
    }
}

TEST_F(PathsTest, typedTextIsResolvedWhereSomethingExists) {
    root.file("ada/Documents/a b.txt");
    root.file("ada/ padded ");
    const URL documents = home().appending("Documents");
    const struct {
        std::string typed;
        std::optional<URL> url;
    } cases[] = {
        {"~", home()},
        {"~/Documents/", documents},
        {"../Documents/./a b.txt", documents.appending("a b.txt")},
        {" a b.txt ", documents.appending("a b.txt")},
        {home().path(), home()},
        {documents.appending("a b.txt").string(), documents.appending("a b.txt")},
        {"~/ padded ", home().appending(" padded ")},
        {"~eve", std::nullopt},
        {"missing", std::nullopt},
        {"", std::nullopt},
        {"  ", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(Paths::resolve(c.typed, documents), c.url);
    }
}

TEST_F(PathsTest, completionsContinueTypedText) {
    for (const char* name : {"Documents", "Downloads", "dot files", ".config", "Music 10",
                             "Music 9", "Über uns", "Übungen"})
        root.folder(std::string("ada/") + name);
    root.file("ada/Doors.txt");
    const struct {
        const char* typed;
        std::vector<std::string> names;
        const char* commonPrefix;
    } cases[] = {
        {"~/do", {"Documents", "dot files", "Downloads"}, "~/Do"},
        {"~/Dow", {"Downloads"}, "~/Downloads"},
        {"mus", {"Music 9", "Music 10"}, "Music "},
        {"~/.c", {".config"}, "~/.config"},
        {"über", {"Über uns"}, "Über uns"},
        {"Ü", {"Über uns", "Übungen"}, "Üb"},
        {"Doors", {}, "Doors"},
        {"nowhere/a", {}, "nowhere/a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        const auto found = Paths::completions(c.typed, home(), false, 10);
        EXPECT_EQ(found.names, c.names);
        EXPECT_EQ(found.commonPrefix, c.commonPrefix);
    }
    const auto some = Paths::completions("", home(), false, 2);
    EXPECT_THAT(some.names, ElementsAre("Documents", "dot files"));
    EXPECT_EQ(some.commonPrefix, "");
}

TEST_F(PathsTest, breadcrumbsBeginAtHomeOrAtTheRoot) {
    EXPECT_THAT(Paths::breadcrumb(home().appending("a/b")),
                ElementsAre(home(), home().appending("a"), home().appending("a/b")));
    EXPECT_THAT(Paths::breadcrumb(URL::fromPath("/usr/bin")),
                ElementsAre(URL(), URL::fromPath("/usr"), URL::fromPath("/usr/bin")));
    EXPECT_THAT(Paths::breadcrumb(Paths::trash().appending("old")),
                ElementsAre(Paths::trash(), Paths::trash().appending("old")));
    root.folder("ada/b");
    root.folder("ada/A");
    root.folder("ada/.c");
    root.file("ada/file");
    EXPECT_THAT(Paths::siblingFolders(home().appending("b"), false),
                ElementsAre(home().appending("A"), home().appending("b")));
    EXPECT_EQ(Paths::displayName(URL()), "Computer");
    EXPECT_EQ(Paths::displayName(Paths::trash()), "Trash");
    EXPECT_EQ(Paths::displayName(home().appending("files")), "files");
}

}  // namespace
}  // namespace tarn
