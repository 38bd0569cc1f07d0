#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <vector>

#include <QtCore/QProcess>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusReply>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/AppID.h"
#include "Tarn/ui/desktop/AppInstance.h"
#include "Tarn/ui/desktop/AppRequests.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

QString uri(const URL& url) { return QString::fromStdString(url.string()); }

/// A process that answers on a bus of the test's own, with all that it opens.
class AppInstanceTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        folder.file("one/first.txt");
        folder.file("one/.second");
        folder.file("one/inner/third.txt");
        folder.file("two/\xff\n");
        AppSettings settings = app.settings();
        settings.hasOnboarded = true;
        app.setSettings(settings);
        instance = std::make_unique<AppInstance>(bus.server());
        QObject::connect(instance.get(), &AppInstance::requested, &requests,
                         &AppRequests::carryOut);
        ASSERT_FALSE(instance->handOver({}));
        instance->offerAsFileManager();
        instance->begin();
    }
    void TearDown() override {
        // Each takes other windows with it: its menus and panels.
        while (!app.groups().empty()) delete windowOf(*app.groups().front());
    }

    QDBusMessage application(const QString& member, const QVariantList& arguments) {
        auto call = QDBusMessage::createMethodCall(u"org.tarn.Tarn"_s, u"/org/tarn/Tarn"_s,
                                                   u"org.freedesktop.Application"_s, member);
        call.setArguments(arguments);
        return bus.ask(call);
    }
    QDBusMessage fileManager(const QString& member, const QStringList& uris) {
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
                                                   u"/org/freedesktop/FileManager1"_s,
                                                   u"org.freedesktop.FileManager1"_s, member);
        call.setArguments({uris, u"token"_s});
        return bus.ask(call);
    }

    static BrowserWindow* windowOf(const TabGroup& group) {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<BrowserWindow*>(widget);
                window && &window->group() == &group)
                return window;
        return nullptr;
    }
    const std::vector<TabGroup*>& groups() { return app.groups(); }
    PaneModel& pane(std::size_t window = 0, int tab = 0) {
        return groups()[window]->tab(tab).active();
    }
    /// The items that are selected once a pane shows the folder.
    std::vector<URL> selected(PaneModel& pane) {
        EXPECT_TRUE(waitFor([&pane] { return !pane.isLoading() && pane.hasSelection(); }));
        return selectedNow(pane);
    }
    static std::vector<URL> selectedNow(const PaneModel& pane) {
        std::vector<URL> urls;
        for (const FileItem& item : pane.selectedItems()) urls.push_back(item.url);
        return urls;
    }

    PrivateBus bus;
    TestFolder folder;
    AppModel app;
    AppRequests requests{app};
    std::unique_ptr<AppInstance> instance;
};

TEST_F(AppInstanceTest, opensAWindowForEachPlace) {
    EXPECT_EQ(application(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    ASSERT_EQ(groups().size(), 1u);
    EXPECT_EQ(pane().location(), Location::home());
    application(u"Open"_s, {QStringList{uri(folder / "one"), uri(folder / "two/\xff\n")},
                            QVariantMap{{u"activation-token"_s, u"t"_s}}});
    ASSERT_TRUE(waitFor([this] { return groups().size() == 3; }));
    const bool isInOrder = pane(1).location().url == folder / "one";
    EXPECT_EQ(pane(isInOrder ? 1 : 2).location().url, folder / "one");
    PaneModel& file = pane(isInOrder ? 2 : 1);
    EXPECT_EQ(file.location().url, folder / "two");
    EXPECT_EQ(selected(file), std::vector{folder / "two/\xff\n"});
    application(u"Activate"_s, {QVariantMap()});
    EXPECT_EQ(groups().size(), 4u);
    application(u"ActivateAction"_s, {u"new-window"_s, QVariantList(), QVariantMap()});
    EXPECT_EQ(groups().size(), 5u);
    // A token is for one window, and for no program that is started from here.
    EXPECT_EQ(std::getenv("XDG_ACTIVATION_TOKEN"), nullptr);
}

TEST_F(AppInstanceTest, saysWhatItCannotShow) {
    EXPECT_EQ(application(u"Open"_s, {QStringList{u"smb://x/y"_s}, QVariantMap()}).errorName(),
              u"org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(
        application(u"ActivateAction"_s, {u"dance"_s, QVariantList(), QVariantMap()}).errorName(),
        u"org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(fileManager(u"ShowItems"_s, {}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(groups().empty());
}

TEST_F(AppInstanceTest, showsItemsSelectedInTheirFolders) {
    // A folder, too, and in its parent.
    fileManager(u"ShowItems"_s, {uri(folder / "one/inner")});
    ASSERT_EQ(groups().size(), 1u);
    EXPECT_EQ(pane().location().url, folder / "one");
    EXPECT_EQ(selected(pane()), std::vector{folder / "one/inner"});

    // Again, and hidden: in the window that shows the folder already.
    fileManager(u"ShowItems"_s, {uri(folder / "one/.second")});
    ASSERT_EQ(groups().size(), 1u);
    EXPECT_TRUE(
        waitFor([this] { return selectedNow(pane()) == std::vector{folder / "one/.second"}; }));

    // In several folders: each is a tab, those that are new in one window.
    fileManager(u"ShowItems"_s, {uri(folder / "two/\xff\n"), uri(folder / "one/first.txt"),
                                 uri(folder / "one/inner/third.txt")});
    ASSERT_EQ(groups().size(), 2u);
    EXPECT_TRUE(
        waitFor([this] { return selectedNow(pane()) == std::vector{folder / "one/first.txt"}; }));
    ASSERT_EQ(groups()[1]->count(), 2);
    EXPECT_EQ(selected(pane(1, 0)), std::vector{folder / "two/\xff\n"});
    EXPECT_EQ(selected(pane(1, 1)), std::vector{folder / "one/inner/third.txt"});
}

TEST_F(AppInstanceTest, showsFoldersOnceAndPropertiesInTheInspector) {
    fileManager(u"ShowFolders"_s, {uri(folder / "one"), uri(folder / "two"), uri(folder / "one")});
    ASSERT_EQ(groups().size(), 2u);
    EXPECT_EQ(pane(0).location().url, folder / "one");
    EXPECT_FALSE(groups()[0]->tab(0).showsInspector());
    fileManager(u"ShowItemProperties"_s, {uri(folder / "one/first.txt")});
    ASSERT_EQ(groups().size(), 2u);
    EXPECT_TRUE(groups()[0]->tab(0).showsInspector());
    EXPECT_EQ(selected(pane(0)), std::vector{folder / "one/first.txt"});
    fileManager(u"ShowItemProperties"_s, {uri(folder / "one/inner/third.txt")});
    ASSERT_EQ(groups().size(), 3u);
    EXPECT_TRUE(groups()[2]->tab(0).showsInspector());
}

TEST_F(AppInstanceTest, asksForThePanelOfQuickSearch) {
    int asked = 0;
    QObject::connect(&requests, &AppRequests::quickSearchRequested, [&asked] { ++asked; });
    application(u"ActivateAction"_s, {u"quick-search"_s, QVariantList(), QVariantMap()});
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(groups().empty());
}

TEST_F(AppInstanceTest, takesTheNameOfFileManagersWhenTheOtherOneLetsGo) {
    QDBusConnectionInterface& names = *bus.client().interface();
    const QString name = u"org.freedesktop.FileManager1"_s;
    EXPECT_EQ(names.serviceOwner(name).value(), bus.server().baseService());
    instance.reset();
    QDBusConnection server = bus.server();
    server.interface()->unregisterService(name);
    server.interface()->unregisterService(AppID::name());
    ASSERT_TRUE(QDBusConnection(bus.client()).registerService(name));
    AppInstance other(bus.server());
    EXPECT_FALSE(other.handOver({}));
    other.offerAsFileManager();
    EXPECT_EQ(names.serviceOwner(name).value(), bus.client().baseService());
    ASSERT_TRUE(QDBusConnection(bus.client()).unregisterService(name));
    EXPECT_TRUE(
        waitFor([&] { return names.serviceOwner(name).value() == bus.server().baseService(); }));
}

/// Starts of the real program, below an isolated root of their own.
class StartTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        folder.file("root/Support/settings.json", R"({"hasOnboarded": true})");
        folder.file("there/file.txt");
        folder.folder("there/more");
        folder.folder("there/most");
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        setRoot("root");
    }
    void setRoot(const char* name) {
        environment.insert(u"TARN_ISOLATED_ROOT"_s, QString::fromStdString((folder / name).path()));
    }
    void start(QProcess& process, const QStringList& arguments) {
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TARN_WINDOW_PROGRAM), arguments);
    }
    bool isAnswering() {
        const QStringList names = bus.client().interface()->registeredServiceNames();
        return names.filter(u"org.tarn.Tarn.Isolated_"_s).size() == 1;
    }
    static void end(QProcess& process) {
        process.terminate();
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0);
    }
    /// The folders of the windows that are open, as they are kept for the next start.
    void expectWindows(const std::vector<const char*>& names) {
        const auto isThere = [&] {
            const auto kept = QString::fromStdString(folder.read("root/Support/session.json"));
            return std::ranges::all_of(names, [&](const char* name) {
                return kept.count(uri(folder / name) + u'"') == 1;
            }) && kept.count(u"\"panes\""_s) == std::ssize(names);
        };
        EXPECT_TRUE(waitFor(isThere)) << folder.read("root/Support/session.json");
    }
    void handOver(const char* name) {
        QProcess later;
        start(later, {QString::fromStdString((folder / name).path())});
        ASSERT_TRUE(later.waitForFinished());
        EXPECT_EQ(later.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(later.exitCode(), 0);
    }

    PrivateBus bus;
    TestFolder folder;
    QProcessEnvironment environment;
};

TEST_F(StartTest, aSecondStartHandsItsPlacesToTheFirst) {
    QProcess first;
    start(first, {QString::fromStdString((folder / "root").path())});
    ASSERT_TRUE(waitFor([this] { return isAnswering(); }));
    handOver("there");
    expectWindows({"root", "there"});
    end(first);
}

TEST_F(StartTest, theNextStartOpensTheWindowsOfLastTimeHoweverThatEnded) {
    QProcess first;
    start(first, {QString::fromStdString((folder / "root").path())});
    ASSERT_TRUE(waitFor([this] { return isAnswering(); }));
    handOver("there");
    expectWindows({"root", "there"});
    end(first);
    QProcess second;
    start(second, {});
    ASSERT_TRUE(waitFor([this] { return isAnswering(); }));
    handOver("there/more");
    expectWindows({"root", "there", "there/more"});
    second.kill();
    ASSERT_TRUE(second.waitForFinished());
    QProcess third;
    start(third, {});
    ASSERT_TRUE(waitFor([this] { return isAnswering(); }));
    handOver("there/most");
    expectWindows({"root", "there", "there/more", "there/most"});
    end(third);
}

TEST_F(StartTest, ofTwoAtOnceOneOpensBothWindows) {
    QProcess one;
    QProcess other;
    start(one, {QString::fromStdString((folder / "root").path())});
    start(other, {QString::fromStdString((folder / "there").path())});
    const auto isOver = [](const QProcess& process) {
        return process.state() == QProcess::NotRunning;
    };
    ASSERT_TRUE(waitFor([&] { return isOver(one) || isOver(other); }));
    EXPECT_FALSE(isOver(one) && isOver(other));
    EXPECT_EQ((isOver(one) ? one : other).exitCode(), 0);
    expectWindows({"root", "there"});
    end(isOver(one) ? other : one);
}

TEST_F(StartTest, otherRootsAndWindowsWithoutABusStandByThemselves) {
    QProcess first;
    start(first, {});
    ASSERT_TRUE(waitFor([this] { return isAnswering(); }));
    folder.file("other/Support/settings.json", R"({"hasOnboarded": true})");
    setRoot("other");
    QProcess second;
    start(second, {});
    ASSERT_TRUE(waitFor([this] { return folder.exists("other/Support/session.json"); }));
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    folder.file("third/Support/settings.json", R"({"hasOnboarded": true})");
    setRoot("third");
    QProcess third;
    start(third, {});
    ASSERT_TRUE(waitFor([this] { return folder.exists("third/Support/session.json"); }));
    for (QProcess* process : {&first, &second, &third}) {
        EXPECT_EQ(process->state(), QProcess::Running);
        end(*process);
    }
}

}  // namespace
}  // namespace tarn
