#include <optional>

#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/ConnectServerSheet.h"
#include "Tarn/ui/sheets/EjectSheet.h"
#include "tests/support/DiskAndStick.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/SheetTest.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

class DriveSheetTest : public SheetTest, protected DiskAndStick {
protected:
    void SetUp() override {
        drives->setServer("smb://nas/photos", "ada", "s3cret", folder.url());
        app.emplace();
        while (!app->lists().servers().empty())
            app->lists().forgetServer(std::string(app->lists().servers().back()));
        app->refreshVolumes();
        ASSERT_TRUE(waitFor([this] { return app->volumes().size() == 2; }));
        model.emplace(*app, Location::folder(folder.url().parent()));
        window.resize(700, 600);
    }
    QWidget* field(const char* name) const {
        for (QLineEdit* one : sheet->findChildren<QLineEdit*>())
            if (one->isVisible() && one->accessibleName() == QString::fromUtf8(name)) return one;
        return nullptr;
    }

    TestFolder folder;
    std::optional<AppModel> app;
    std::optional<WindowModel> model;
};

TEST_F(DriveSheetTest, whoUsesAVolumeIsShownUntilItCanBeEjected) {
    const std::string path = point.path();
    drives->setBlocking(point, {{12, "vim", {path + "/notes.txt"}}});
    open(new EjectSheet(
        window, *model, app->volumes()[1],
        {{12, "vim", {path + "/a", path + "/a", path + "/b", path + "/c", path + "/d"}},
         {7, "bash", {path}}},
        "Couldn’t eject “STICK” because it is in use."));
    EXPECT_TRUE(says(u"“STICK” Is in Use"_s));
    EXPECT_TRUE(says(u"Couldn’t eject “STICK” because it is in use."_s));
    for (const auto& text : {u"vim"_s, u"Process 12"_s, u"a"_s, u"c"_s, u"and 1 more"_s, u"bash"_s,
                             u"Process 7"_s, u"/run/media/ada/STICK"_s})
        EXPECT_TRUE(says(text)) << text.toStdString();
    button("Try Again")->click();
    EXPECT_FALSE(button("Eject Anyway")->isEnabled());
    ASSERT_TRUE(waitFor([this] { return says(u"notes.txt"_s); }));
    EXPECT_FALSE(says(u"bash"_s));
    EXPECT_TRUE(isOpen());
    drives->setBlocking(point, {});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);  // “Try Again” has the keyboard.
    ASSERT_TRUE(waitFor([this] { return !isOpen(); }));
    EXPECT_EQ(model->toast()->message, u"Ejected “STICK”"_s);
    EXPECT_EQ(volumes->mounts().size(), 1u);
}

TEST_F(DriveSheetTest, aVolumeIsEjectedByForceOnlyWhenThatIsAskedFor) {
    drives->setBlocking(point, {{12, "vim", {}}});
    open(new EjectSheet(window, *model, app->volumes()[1], {{12, "vim", {}}}, "It is in use."));
    EXPECT_EQ(QApplication::focusWidget(), button("Try Again"));
    drives->failWith("The disk is broken.");
    button("Eject Anyway")->click();
    ASSERT_TRUE(waitFor([this] { return says(u"Couldn’t eject “STICK”. The disk is broken."_s); }));
    drives->failWith({});
    button("Eject Anyway")->click();
    EXPECT_TRUE(waitFor([this] { return !isOpen(); }));
    EXPECT_EQ(volumes->mounts().size(), 1u);
}

TEST_F(DriveSheetTest, theSheetGoesWhenTheVolumeDoes) {
    open(new EjectSheet(window, *model, app->volumes()[1], {{12, "vim", {}}}, "It is in use."));
    volumes->setMounts({volumes->mounts()[0]});
    app->refreshVolumes();
    EXPECT_TRUE(waitFor([this] { return !isOpen(); }));
}

TEST_F(DriveSheetTest, aServerIsConnectedToShownAndRemembered) {
    open(new ConnectServerSheet(window, *model, {}));
    EXPECT_FALSE(button("Connect")->isEnabled());
    QTest::keyClicks(QApplication::focusWidget(), "ftp://nas");
    EXPECT_FALSE(button("Connect")->isEnabled());
    EXPECT_TRUE(
        says(u"Only addresses that begin with smb, sftp, dav, davs, http or https can be "
             "connected to."_s));
    qobject_cast<QLineEdit*>(QApplication::focusWidget())->clear();
    QTest::keyClicks(QApplication::focusWidget(), "NAS/photos");
    EXPECT_TRUE(says(u"smb://nas/photos"_s));  // how it is understood
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return field("Password") != nullptr; }));
    EXPECT_TRUE(says(u"Password required for smb://nas/photos"_s));
    EXPECT_EQ(qobject_cast<QLineEdit*>(field("User"))->text(), u"ada"_s);
    EXPECT_EQ(QApplication::focusWidget(), field("Password"));
    EXPECT_EQ(qobject_cast<QLineEdit*>(field("Password"))->echoMode(), QLineEdit::Password);
    QTest::keyClicks(field("Password"), "wrong");
    QTest::keyClick(field("Password"), Qt::Key_Return);
    ASSERT_TRUE(
        waitFor([this] { return says(u"That did not do. Look at the name and the password."_s); }));
    EXPECT_TRUE(qobject_cast<QLineEdit*>(field("Password"))->text().isEmpty());
    QTest::keyClicks(field("Password"), "s3cret");
    QTest::keyClick(field("Password"), Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return !isOpen(); }));
    EXPECT_EQ(model->active().location(), Location::folder(folder.url()));
    EXPECT_EQ(app->lists().servers(), std::vector<std::string>{"NAS/photos"});
    EXPECT_TRUE(waitFor([this] { return app->volumes().size() == 3; }));
}

TEST_F(DriveSheetTest, aServerThatIsNotThereIsSaidAndCanBeCorrected) {
    app->lists().rememberServer("smb://old/share");
    open(new ConnectServerSheet(window, *model, "smb://elsewhere"));
    ASSERT_TRUE(waitFor([this] { return says(u"Couldn’t connect to “smb://elsewhere”."_s); }));
    EXPECT_TRUE(field("Address")->isEnabled());
    auto* servers = sheet->findChild<QListWidget*>();
    ASSERT_TRUE(servers->isVisible());
    servers->setFocus(Qt::TabFocusReason);
    servers->setCurrentRow(0);
    QTest::keyClick(servers, Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return says(u"Couldn’t connect to “smb://old/share”."_s); }));
    servers->setFocus(Qt::TabFocusReason);
    servers->setCurrentRow(0);
    QTest::keyClick(servers, Qt::Key_Delete);
    EXPECT_TRUE(app->lists().servers().empty());
    EXPECT_TRUE(isOpen());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

}  // namespace
}  // namespace tarn
