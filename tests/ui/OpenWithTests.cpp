#include <filesystem>
#include <optional>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/FileOpener.h"
#include "Tarn/ui/menus/OpenWithMenu.h"
#include "Tarn/ui/settings/GeneralSection.h"
#include "Tarn/ui/sheets/OpenWithSheet.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/OpenedFiles.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

/// Remembers what was opened.
class OpenedFilesInMemory final : public OpenedFiles {
public:
    void note(const std::vector<OpenedFile>& files, Date) override {
        auto all = opened.lock();
        for (const OpenedFile& file : files) all->push_back(file.mimeType);
    }
    Guarded<std::vector<std::string>> opened;
};

/// A desktop with two viewers, which write down what they are given.
class OpenWithTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"Reader", "Writer"}) {
            const URL program =
                folder.file(std::string("bin/") + name,
                            "#!/bin/sh\nprintf '<%s>' " + std::string(name) +
                                " \"$@\" >\"$0.new\" && mv \"$0.new\" \"$0.log\"\n");
            fs::permissions(program.path(), fs::perms::owner_all);
            folder.file(std::string("share/applications/") + name + ".desktop",
                        std::string("[Desktop Entry]\nType=Application\nName=") + name +
                            "\nExec=" + program.path() + " %F\n");
        }
        folder.link("share/mime", "/usr/share/mime");
        folder.file("share/applications/mimeinfo.cache",
                    "[MIME Cache]\ntext/plain=Reader.desktop;\ntext/markdown=Writer.desktop;\n");
        OpenedFiles::setCurrent(opened);
    }
    void TearDown() override { OpenedFiles::setCurrent(nullptr); }
    static std::vector<std::string> names(const std::vector<DesktopEntry>& programs) {
        std::vector<std::string> all;
        for (const DesktopEntry& program : programs) all.push_back(program.name);
        return all;
    }
    static QStringList titles(const QMenu& menu) {
        QStringList all;
        for (const QAction* action : menu.actions())
            if (!action->isSeparator()) all.append(action->text());
        return all;
    }

    TestFolder folder;
    ScopedEnvironment desktop{{"XDG_DATA_HOME", (folder / "data").path()},
                              {"XDG_DATA_DIRS", (folder / "share").path()},
                              {"XDG_CONFIG_HOME", (folder / "config").path()},
                              {"XDG_CONFIG_DIRS", (folder / "etc").path()},
                              {"XDG_CURRENT_DESKTOP", ""}};
    std::shared_ptr<OpenedFilesInMemory> opened = std::make_shared<OpenedFilesInMemory>();
    AppModel app;
    WindowModel window{app, Location::home()};
};

TEST_F(OpenWithTest, typesComeFromTheNameOrTheContent) {
    using Words = std::vector<std::string>;
    EXPECT_EQ(FileOpener::types(folder.file("a.md", "x")).front(), "text/markdown");
    EXPECT_EQ(FileOpener::types(folder.file("script", "#!/bin/sh\n")).front(),
              "application/x-shellscript");
    EXPECT_EQ(FileOpener::types(folder.file("\xff\n", "%PDF-1.4\n")).front(), "application/pdf");
    // What reads plain text reads what is made of it.
    EXPECT_EQ(names(FileOpener::programs({folder / "a.md"})), (Words{"Writer", "Reader"}));
    EXPECT_EQ(names(FileOpener::programs({folder / "a.md", folder.file("b.txt", "x")})),
              Words{"Reader"});
    EXPECT_EQ(names(FileOpener::programs({folder / "a.md", folder / "\xff\n"})), Words());
}

TEST_F(OpenWithTest, severalFilesGoToTheirProgramTogether) {
    const URL one = folder.file("one.txt", "x");
    const URL odd = folder.file("\xff & two.txt", "x");
    const URL other = folder.file("three.md", "x");
    FileOpener::open(window, {one, other, odd});
    ASSERT_TRUE(waitFor(
        [this] { return folder.exists("bin/Reader.log") && folder.exists("bin/Writer.log"); }));
    EXPECT_EQ(folder.read("bin/Reader.log"), "<Reader><" + one.path() + "><" + odd.path() + ">");
    EXPECT_EQ(folder.read("bin/Writer.log"), "<Writer><" + other.path() + ">");
}

TEST_F(OpenWithTest, whatIsOpenedIsNotedButForCopiesFromArchives) {
    const URL copy = folder.file("Tarn-Members-x/a.txt", "x");
    FileOpener::openWith(window, {folder.file("b.md", "x"), copy}, *DesktopEntries::find("Reader"));
    ASSERT_TRUE(waitFor([this] { return !opened->opened.lock()->empty(); }));
    EXPECT_EQ(*opened->opened.lock(), std::vector<std::string>{"text/markdown"});
}

TEST_F(OpenWithTest, filesAreOpenedWithoutAWindowAndItIsSaidWhereTheyAreNot) {
    const URL one = folder.file("one.txt", "x");
    const URL other = folder.file("three.md", "x");
    std::vector<URL> asked;
    const auto teller = [&](const URL& file) {
        asked.push_back(file);
        return &window;
    };
    FileOpener::open(app, {one, other}, teller);
    ASSERT_TRUE(waitFor([this] { return opened->opened.lock()->size() == 2; }));
    EXPECT_THAT(*opened->opened.lock(), UnorderedElementsAre("text/plain", "text/markdown"));
    EXPECT_TRUE(waitFor([this] { return folder.exists("bin/Writer.log"); }));
    // No desktop is here that would open it.
    const URL unknown = folder.file("\xff\n.tarn-unknown", "\x01");
    FileOpener::open(app, {unknown}, teller);
    ASSERT_TRUE(waitFor([this] { return window.toast().has_value(); }));
    EXPECT_TRUE(window.toast()->isError);
    EXPECT_EQ(asked, std::vector{unknown});
}

TEST_F(OpenWithTest, theMenuNamesTheDefaultFirst) {
    QWidget host;
    OpenWithMenu menu(window, {folder.file("a.md", "x")}, host, nullptr);
    ASSERT_TRUE(waitFor([&menu] { return menu.actions().size() > 1; }));
    EXPECT_EQ(titles(menu), (QStringList{"Writer (default)", "Reader", "Other Application…"}));
    menu.actions().at(2)->trigger();
    EXPECT_TRUE(waitFor([this] { return folder.exists("bin/Reader.log"); }));
    menu.take({});
    EXPECT_FALSE(menu.actions().front()->isEnabled());
    EXPECT_EQ(titles(menu).size(), 2);
}

TEST_F(OpenWithTest, anyProgramCanBeMadeTheDefault) {
    QWidget host;
    host.resize(700, 600);
    show(host);
    const URL file = folder.file("a.md", "x");
    auto* sheet = new OpenWithSheet(window, {file}, host);
    sheet->open(sheet->firstField());
    auto& list = *sheet->findChild<QListWidget*>();
    auto& always = *sheet->findChild<QCheckBox*>();
    ASSERT_TRUE(waitFor([&list] { return list.count() == 2; }));
    EXPECT_TRUE(always.text().contains("Markdown"));
    QTest::keyClick(sheet->firstField(), Qt::Key_Down);
    EXPECT_EQ(list.currentItem()->text(), "Writer");
    QTest::keyClicks(sheet->firstField(), "rea");
    ASSERT_EQ(list.count(), 1);
    always.click();
    QTest::keyClick(sheet->firstField(), Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] {
        return folder.exists("bin/Reader.log") && folder.exists("config/mimeapps.list");
    }));
    EXPECT_EQ(folder.read("config/mimeapps.list"),
              "[Default Applications]\ntext/markdown=Reader.desktop;\n");
    EXPECT_EQ(names(FileOpener::programs({file})), (std::vector<std::string>{"Reader", "Writer"}));
}

TEST_F(OpenWithTest, theSettingsMakeUsTheDefaultForFoldersAndTakeItBack) {
    const std::string list = "[Default Applications]\ninode/directory=Reader.desktop\n";
    folder.file("config/mimeapps.list", list);
    GeneralSection section(app);
    auto& box = *section.findChild<QCheckBox*>("defaultForFolders");
    ASSERT_TRUE(waitFor([&box] { return !box.accessibleDescription().isEmpty(); }));
    // Not installed: nothing could be started in its place.
    EXPECT_FALSE(box.isEnabled());
    folder.file("share/applications/org.tarn.Tarn.desktop",
                "[Desktop Entry]\nType=Application\nName=Tarn\nExec=" +
                    (folder / "bin/Reader").path() + " %U\n");
    GeneralSection installed(app);
    auto& here = *installed.findChild<QCheckBox*>("defaultForFolders");
    ASSERT_TRUE(waitFor([&here] { return here.isEnabled(); }));
    EXPECT_FALSE(here.isChecked());
    EXPECT_TRUE(here.accessibleDescription().contains("Reader"));
    here.click();
    ASSERT_TRUE(waitFor([&here] { return here.accessibleDescription().contains("Switched off"); }));
    EXPECT_TRUE(here.isChecked());
    EXPECT_EQ(folder.read("config/mimeapps.list"),
              "[Default Applications]\ninode/directory=org.tarn.Tarn.desktop;Reader.desktop\n");
    here.click();
    ASSERT_TRUE(waitFor([&here] { return here.accessibleDescription().contains("Reader"); }));
    EXPECT_FALSE(here.isChecked());
    EXPECT_EQ(folder.read("config/mimeapps.list"), list);
}

}  // namespace
}  // namespace tarn
