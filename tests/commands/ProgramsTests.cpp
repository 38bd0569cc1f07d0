#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/commands/MimeApps.h"
#include "Tarn/commands/Programs.h"
#include "TarnCore/base/Error.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

/// A machine with what a test installs on it, and nothing else.
class ProgramsTest : public testing::Test {
protected:
    void set(const std::string& name, const std::string& value) { machine_.set(name, value); }
    std::string file(const std::string& name) const { return (root_ / name).string(); }
    void write(const std::string& name, const std::string& text) {
        fs::create_directories((root_ / name).parent_path());
        std::ofstream(root_ / name, std::ios::binary) << text;
    }
    void program(const std::string& name, const std::string& script = "#!/bin/sh\n") {
        write("bin/" + name, script);
        fs::permissions(root_ / "bin" / name, fs::perms::owner_all);
    }
    void entry(const std::string& name, const std::string& rest) {
        write("share/applications/" + name,
              "# comment\n[Desktop Entry]\nType=Application\nName=A Program\n" + rest +
                  "\n[Desktop Action new]\nExec=wrong\n");
    }

    const URL folder_ = URL::fromPath("/somewhere/a b");
    const std::vector<URL> files_ = {URL::fromPath("/x/a b.txt"), URL::fromPath("/x/\xff\n")};

private:
    TestFolder test_;
    fs::path root_ = test_.url().path();
    ScopedEnvironment machine_{{"PATH", file("bin")},
                               {"XDG_DATA_HOME", file("data")},
                               {"XDG_DATA_DIRS", file("share")},
                               {"XDG_CONFIG_HOME", file("config")},
                               {"XDG_CONFIG_DIRS", file("etc")},
                               {"XDG_CURRENT_DESKTOP", ""}};
};

TEST_F(ProgramsTest, theFirstTerminalThatIsThereIsTaken) {
    EXPECT_FALSE(Programs::terminal("com.apple.Terminal", folder_));
    program("zterm");
    entry("zterm.desktop", "Exec=zterm --new\nCategories=System;TerminalEmulator;");
    entry("aaa.desktop", "Exec=gone\nCategories=TerminalEmulator;");
    EXPECT_EQ(Programs::terminal("", folder_), (Programs::Call{{"zterm", "--new"}, folder_}));
    program("x-terminal-emulator");
    EXPECT_EQ(Programs::terminal("", folder_)->words, Words{file("bin/x-terminal-emulator")});
    program("xdg-terminal-exec");
    EXPECT_EQ(Programs::terminal("", folder_)->words, Words{file("bin/xdg-terminal-exec")});
    EXPECT_EQ(Programs::terminal("zterm", folder_)->words, (Words{"zterm", "--new"}));
    EXPECT_EQ(Programs::terminal("zterm.desktop", folder_)->words, (Words{"zterm", "--new"}));
    program("kitty");
    EXPECT_EQ(Programs::terminal("kitty", folder_)->words, Words{file("bin/kitty")});
    EXPECT_EQ(Programs::terminal(file("bin/kitty"), folder_)->words, Words{file("bin/kitty")});
    EXPECT_EQ(Programs::terminal("../bin/kitty", folder_)->words,
              Words{file("bin/xdg-terminal-exec")});
}

TEST_F(ProgramsTest, allAreListedByTheirNamesInTheUsersLanguage) {
    set("LC_ALL", "de_AT.UTF-8");
    program("one");
    entry("b.desktop", "Exec=one\nName[de]=Zuerst\nName[de_CH]=x\nIcon=pen\nCategories=IDE;");
    entry("kde/a.desktop", "Exec=one\nName[fr]=x\nCategories=Qt;TextEditor;");
    entry("hidden.desktop", "Exec=one\nNoDisplay=true\nCategories=TextEditor;");
    entry("gone.desktop", "Exec=two");
    const auto all = DesktopEntries::all();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].id, "kde-a.desktop");
    EXPECT_EQ(all[0].name, "A Program");
    EXPECT_EQ(all[1].name, "Zuerst");
    EXPECT_EQ(all[1].icon, "pen");
    EXPECT_TRUE(all[0].isEditor && all[1].isEditor && !all[0].isTerminal);
}

TEST_F(ProgramsTest, theEditorIsTheDefaultForPlainText) {
    EXPECT_FALSE(Programs::editor("com.microsoft.VSCode", "", files_, folder_));
    program("gedit");
    program("vim");
    entry("org.gnome.gedit.desktop", "Exec=gedit %U");
    entry("kde/vim.desktop", "Exec=vim %F\nTerminal=true");
    write("share/applications/mimeinfo.cache",
          "[MIME Cache]\ntext/plain=gone.desktop;org.gnome.gedit.desktop;\n");
    EXPECT_EQ(Programs::editor("", "", files_, folder_)->words,
              (Words{"gedit", "file:///x/a%20b.txt", "file:///x/%FF%0A"}));
    write("config/mimeapps.list",
          "[Added Associations]\ntext/plain=org.gnome.gedit.desktop\n"
          "[Default Applications]\ntext/plain=kde-vim.desktop;\n");
    EXPECT_FALSE(Programs::editor("", "", files_, folder_)) << "there is no terminal for it";
    program("x-terminal-emulator");
    EXPECT_EQ(Programs::editor("", "", files_, folder_)->words,
              (Words{file("bin/x-terminal-emulator"), "-e", "vim", "/x/a b.txt", "/x/\xff\n"}));
    program("xdg-terminal-exec");
    EXPECT_EQ(Programs::editor("", "", {}, folder_)->words,
              (Words{file("bin/xdg-terminal-exec"), "vim"}));
    EXPECT_EQ(Programs::editor("gedit", "", files_, folder_)->words,
              (Words{file("bin/gedit"), "/x/a b.txt", "/x/\xff\n"}));
}

TEST_F(ProgramsTest, theUsersEntryHidesTheOneForEveryone) {
    program("gedit");
    entry("gedit.desktop", "Exec=gedit");
    EXPECT_TRUE(DesktopEntries::find("gedit"));
    write("data/applications/gedit.desktop",
          "[Desktop Entry]\nType=Application\nExec=gedit\nHidden=true\n");
    EXPECT_FALSE(DesktopEntries::find("gedit"));
}

TEST_F(ProgramsTest, wordsOfExecAreReadAsTheSpecificationSays) {
    program("run");
    const struct {
        const char* exec;
        Words none;
        Words two;
    } cases[] = {
        {"run", {"run"}, {"run"}},
        {"run %f", {"run"}, {"run", "/x/a b.txt"}},
        {"run --file=%f", {"run", "--file="}, {"run", "--file=/x/a b.txt"}},
        {"run \"a b\" %i -t %c",
         {"run", "a b", "-t", "A Program"},
         {"run", "a b", "-t", "A Program"}},
        {R"(run "\\$HOME" 100%%)", {"run", "$HOME", "100%"}, {"run", "$HOME", "100%"}},
        {R"(run \s"" %u)", {"run", ""}, {"run", "", "file:///x/a%20b.txt"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.exec);
        const auto entry = DesktopEntry::parse(
            std::string("[Desktop Entry]\nType=Application\nName=A Program\nExec=") + c.exec, "x");
        ASSERT_TRUE(entry);
        EXPECT_EQ(entry->command({}), c.none);
        EXPECT_EQ(entry->command(files_), c.two);
    }
    for (const char* none :
         {"", "[Desktop Entry]\nType=Link\nExec=run", "[Desktop Entry]\nExec=run",
          "[Desktop Entry]\nType=Application\nExec=",
          "[Desktop Entry]\nType=Application\nExec=run\nTryExec=gone"}) {
        SCOPED_TRACE(none);
        EXPECT_FALSE(DesktopEntry::parse(none, "x"));
    }
}

TEST_F(ProgramsTest, anEntryTellsItsIconItselfAndWhereItStarts) {
    program("run");
    entry("it.desktop", "Exec=run %i %k %f\nIcon=pic\nPath=/some\\swhere");
    const auto calls = Programs::calls(*DesktopEntries::find("it"), "", files_);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].words, (Words{"run", "--icon", "pic", file("share/applications/it.desktop"),
                                     files_[1].path()}));
    EXPECT_EQ(calls[1].folder, URL::fromPath("/some where"));
}

TEST_F(ProgramsTest, servicesOfTheBusNeedNoCommand) {
    entry("org.a.B.desktop", "DBusActivatable=true");
    const auto service = DesktopEntries::find("org.a.B");
    ASSERT_TRUE(service);
    EXPECT_TRUE(service->isActivatable);
    EXPECT_TRUE(Programs::calls(*service, "", files_).empty());
    entry("org.a.C.desktop", "DBusActivatable=true\nExec=gone");
    EXPECT_FALSE(DesktopEntries::find("org.a.C")) << "it was taken off the machine";
}

TEST_F(ProgramsTest, programsAreShownOnTheDesktopsThatTheyAreFor) {
    program("run");
    const struct {
        const char* desktop;
        const char* line;
        bool isShown;
    } cases[] = {
        {"KDE", "OnlyShowIn=GNOME;KDE;", true},
        {"sway:wlroots", "OnlyShowIn=GNOME;KDE;", false},
        {"ubuntu:GNOME", "NotShowIn=GNOME;", false},
        {"KDE", "NotShowIn=GNOME;", true},
        {"", "OnlyShowIn=GNOME;", true},
        {"KDE", "NoDisplay=true", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.desktop) + ", " + c.line);
        set("XDG_CURRENT_DESKTOP", c.desktop);
        entry("it.desktop", std::string("Exec=run\n") + c.line);
        EXPECT_EQ(DesktopEntries::all().size(), c.isShown ? 1u : 0u);
    }
}

TEST_F(ProgramsTest, aProgramThatFailsAtOnceIsTold) {
    program("works");
    program("fails", "#!/bin/sh\nexit 3\n");
    program("dies", "#!/bin/sh\nkill -9 $$\n");
    std::string told;
    for (const char* name : {"works", "fails", "dies"})
        ASSERT_TRUE(Programs::start({{name}, std::nullopt}, [&told, name] { told += name; }));
    EXPECT_TRUE(QTest::qWaitFor([&told] { return told.size() == 9; })) << told;
    EXPECT_EQ(told.find("works"), told.npos);
    EXPECT_FALSE(Programs::start({{"gone"}, std::nullopt}));
}

TEST_F(ProgramsTest, startsAProgramWithTheBytesOfTheNameInTheFolder) {
    set("PATH", file("bin") + ":/usr/bin:/bin");
    set("DESKTOP_STARTUP_ID", "ours");
    write("folder/keep", "");
    // Opening the pipe for reading waits until the program, which is let go of, has opened it.
    const std::string pipe = file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    program("tell",
            "#!/bin/sh\nprintf '%s|%s|%s' \"$1\" \"$(basename \"$PWD\")\" "
            "\"$TOKEN$DESKTOP_STARTUP_ID\" > \"$2\"\n");
    ASSERT_TRUE(Programs::start({{file("bin/tell"), "a\xff\n", pipe},
                                 URL::fromPath(file("folder")),
                                 {{"TOKEN", "theirs"}}}));
    std::ifstream told(pipe, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(told), std::istreambuf_iterator<char>()};
    EXPECT_EQ(text, "a\xff\n|folder|theirs");
    EXPECT_FALSE(Programs::start({{"/bin/true"}, URL::fromPath(file("no such folder"))}));
}

TEST_F(ProgramsTest, whatOpensATypeComesInTheOrderOfTheLists) {
    for (const char* name : {"one", "two", "three", "four", "five", "six"}) {
        program(name);
        entry(std::string(name) + ".desktop", std::string("Exec=") + name + " %U");
    }
    write("config/mimeapps.list",
          "[Default Applications]\ntext/x-a=gone.desktop;three.desktop;\n"
          "[Added Associations]\ntext/x-a=four.desktop\n"
          "[Removed Associations]\ntext/x-a=two.desktop;\n");
    write("share/applications/mimeapps.list",
          "[Default Applications]\ntext/x-a=five.desktop\ntext/plain=six.desktop\n");
    write(
        "share/applications/mimeinfo.cache",
        "[MIME Cache]\ntext/x-a=one.desktop;two.desktop;three.desktop;\ntext/plain=one.desktop;\n");
    Words ids;
    for (const DesktopEntry& entry : DesktopEntries::openers({"text/x-a", "text/plain"}))
        ids.push_back(entry.id);
    EXPECT_EQ(ids, (Words{"three.desktop", "five.desktop", "four.desktop", "one.desktop",
                          "six.desktop"}));
    EXPECT_EQ(DesktopEntries::defaultFor("text/x-a")->id, "three.desktop");
}

TEST_F(ProgramsTest, theChoiceOfAProgramIsWrittenAndTakenBack) {
    program("ours");
    program("theirs");
    entry("ours.desktop", "Exec=ours %U");
    entry("theirs.desktop", "Exec=theirs %U");
    MimeApps::choose("inode/directory", "ours.desktop");
    EXPECT_EQ(DesktopEntries::defaultFor("inode/directory")->id, "ours.desktop");
    MimeApps::forget("inode/directory", "ours.desktop");
    EXPECT_EQ(DesktopEntries::defaultFor("inode/directory"), std::nullopt);

    const std::string list =
        "# mine\r\n[Default Applications]\ninode/directory=theirs.desktop\n\n[Odd]\nx\n";
    write("elsewhere/list", list);
    fs::remove(file("config/mimeapps.list"));
    fs::create_symlink(file("elsewhere/list"), file("config/mimeapps.list"));
    fs::permissions(file("elsewhere/list"), fs::perms::owner_read | fs::perms::owner_write);
    MimeApps::choose("inode/directory", "ours.desktop");
    EXPECT_EQ(DesktopEntries::defaultFor("inode/directory")->id, "ours.desktop");
    EXPECT_TRUE(fs::is_symlink(file("config/mimeapps.list")));
    EXPECT_EQ(fs::status(file("elsewhere/list")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    MimeApps::forget("inode/directory", "ours.desktop");
    std::ifstream stream(file("elsewhere/list"), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), list);

    // What is no list is not replaced.
    fs::remove(file("config/mimeapps.list"));
    fs::create_directory(file("config/mimeapps.list"));
    EXPECT_THROW(MimeApps::choose("inode/directory", "ours.desktop"), Error);
}

TEST_F(ProgramsTest, aProgramForOneFileIsStartedForEach) {
    program("one");
    entry("one.desktop", "Exec=one --open %f");
    entry("many.desktop", "Exec=one %F");
    EXPECT_EQ(DesktopEntries::find("one")->commands(files_),
              (std::vector<Words>{{"one", "--open", files_[0].path()},
                                  {"one", "--open", files_[1].path()}}));
    EXPECT_EQ(DesktopEntries::find("many")->commands(files_),
              (std::vector<Words>{{"one", files_[0].path(), files_[1].path()}}));
}

}  // namespace
}  // namespace tarn
