#include <optional>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ServerConnection.h"
#include "Tarn/model/VolumeEjector.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/DiskAndStick.h"

namespace tarn {
namespace {

using Outcome = EjectResult::Outcome;

bool waitFor(const std::function<bool()>& done) { return QTest::qWaitFor(done, 5000); }

class VolumeEjectorTest : public testing::Test, protected DiskAndStick {
protected:
    void SetUp() override {
        app.emplace();
        app->refreshVolumes();
        ASSERT_TRUE(waitFor([this] { return app->volumes().size() == 2; }));
    }
    VolumeEjector::Ended eject(bool force) {
        std::optional<VolumeEjector::Ended> ended;
        EXPECT_TRUE(app->ejector().eject(
            app->volumes()[1], force, [&ended](const VolumeEjector::Ended& one) { ended = one; }));
        EXPECT_TRUE(app->ejector().isEjecting(point));
        EXPECT_FALSE(app->ejector().eject(app->volumes()[1], force, {})) << "one is under way";
        EXPECT_TRUE(waitFor([&ended] { return ended.has_value(); }));
        return ended.value_or(VolumeEjector::Ended());
    }

    std::optional<AppModel> app;
};

TEST_F(VolumeEjectorTest, aVolumeGoesAndPanesThatShowItGoHome) {
    WindowModel inside(*app, Location::folder(point.appending("Photos")));
    WindowModel archive(*app, Location::archive(point.appending("Photos.zip"), "2024"));
    WindowModel outside(*app, Location::folder(Paths::documents()));
    EXPECT_EQ(eject(false).result, EjectResult());
    EXPECT_FALSE(app->ejector().isEjecting(point));
    EXPECT_TRUE(waitFor([this] { return app->volumes().size() == 1; }));
    EXPECT_EQ(inside.active().location(), Location::folder(Paths::home()));
    EXPECT_EQ(archive.active().location(), Location::folder(Paths::home()));
    EXPECT_EQ(outside.active().location(), Location::folder(Paths::documents()));
}

TEST_F(VolumeEjectorTest, whoUsesABusyVolumeIsToldAndCanBeIgnored) {
    const BlockingProcess editor{12, "vim", {point.path() + "/a.txt"}};
    drives->setBlocking(point, {editor});
    WindowModel inside(*app, Location::folder(point.appending("Photos")));
    const auto busy = eject(false);
    EXPECT_TRUE(inside.active().location().url.isInside(point));
    EXPECT_EQ(busy.result.outcome, Outcome::busy);
    EXPECT_EQ(busy.processes, std::vector{editor});
    EXPECT_EQ(app->volumes().size(), 2u);
    EXPECT_EQ(eject(true).result.outcome, Outcome::ejected);
    VolumeEjector::Ended unknown;
    unknown.result.message = "It is in use.";
    EXPECT_EQ(unknown.message(), "It is in use.");
    unknown.unknown = "Nobody knows by whom.";
    EXPECT_EQ(unknown.message(), "It is in use. Nobody knows by whom.");
}

TEST_F(VolumeEjectorTest, aWindowTellsOfEachEnd) {
    WindowModel window(*app, Location::folder(Paths::home()));
    const Volume stick = app->volumes()[1];
    drives->setBlocking(point, {{12, "vim", {}}});
    app->ejector().eject(window, stick);
    ASSERT_TRUE(waitFor([&window] { return window.sheet().has_value(); }));
    EXPECT_EQ(window.sheet()->which, WindowSheet::Which::eject);
    EXPECT_EQ(window.sheet()->volume, stick);
    EXPECT_EQ(window.sheet()->processes.size(), 1u);
    EXPECT_EQ(window.sheet()->message, "Couldn’t eject “STICK” because it is in use.");
    window.closeSheet();

    drives->setBlocking(point, {});
    drives->failWith("The disk is broken.");
    app->ejector().eject(window, stick);
    ASSERT_TRUE(waitFor([&window] { return window.toast().has_value(); }));
    EXPECT_TRUE(window.toast()->isError);
    EXPECT_EQ(window.toast()->message,
              QStringLiteral("Couldn’t eject “STICK”. The disk is broken."));

    drives->failWith({});
    app->ejector().eject(window, stick);
    ASSERT_TRUE(waitFor([&window] { return !window.toast()->isError; }));
    EXPECT_EQ(window.toast()->message, QStringLiteral("Ejected “STICK”"));
}

TEST_F(VolumeEjectorTest, theDiskOfTheMachineStays) {
    for (const char* path : {"/", "/nowhere"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(DriveService::eject(URL::fromPath(path), true).outcome, Outcome::failed);
    }
    EXPECT_EQ(volumes->mounts().size(), 2u);
}

TEST_F(VolumeEjectorTest, aServerAsksUntilTheAnswerIsRight) {
    const URL folder = URL::fromPath("/run/user/1/gvfs/photos");
    drives->setServer("smb://nas/photos", "ada", "s3cret", folder);
    ServerConnection connection;
    std::vector<ServerQuestion> questions;
    std::optional<URL> shown;
    QObject::connect(&connection, &ServerConnection::asked, [&](const ServerQuestion& question) {
        questions.push_back(question);
        connection.answer({"ada", questions.size() > 1 ? "s3cret" : "old", 0});
    });
    QObject::connect(&connection, &ServerConnection::connected,
                     [&shown](const URL& url) { shown = url; });
    connection.start("smb://nas/photos");
    EXPECT_TRUE(connection.isRunning());
    ASSERT_TRUE(waitFor([&shown] { return shown.has_value(); }));
    EXPECT_FALSE(connection.isRunning());
    EXPECT_EQ(shown, folder);
    ASSERT_EQ(questions.size(), 2u);
    EXPECT_FALSE(questions[0].isRepeated);
    EXPECT_TRUE(questions[1].isRepeated);
    // It is among the volumes then, and can be ejected like one.
    app->refreshVolumes();
    ASSERT_TRUE(waitFor([this] { return app->volumes().size() == 3; }));
    EXPECT_TRUE(app->volumes()[2].isNetwork && app->volumes()[2].isEjectable);
    EXPECT_EQ(DriveService::eject(folder, false).outcome, Outcome::ejected);
    app->refreshVolumes();
    EXPECT_TRUE(waitFor([this] { return app->volumes().size() == 2; }));
}

TEST_F(VolumeEjectorTest, aServerThatIsGivenUpIsHeardNoMore) {
    drives->setServer("smb://nas/photos", "ada", "s3cret", point);
    ServerConnection connection;
    QSignalSpy asked(&connection, &ServerConnection::asked);
    QSignalSpy failed(&connection, &ServerConnection::failed);
    connection.start("smb://nas/photos");
    ASSERT_TRUE(waitFor([&asked] { return asked.count() == 1; }));
    connection.cancel();
    EXPECT_FALSE(connection.isRunning());
    connection.start("smb://elsewhere");
    ASSERT_TRUE(waitFor([&failed] { return failed.count() > 0; }));
    EXPECT_EQ(failed.count(), 1);
    EXPECT_EQ(failed[0][0].toString(), QStringLiteral("Couldn’t connect to “smb://elsewhere”."));
}

}  // namespace
}  // namespace tarn
