#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QProcess>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "tests/support/PrivateBus.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// An X server without a screen, and what is seen there.
class XWindows {
public:
    XWindows() {
        server_.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s,
                                  u"-screen"_s, u"0"_s, u"1280x800x24"_s});
        if (!server_.waitForStarted() || !server_.waitForReadyRead(10'000)) return;
        display_ = u":"_s + QString::fromUtf8(server_.readLine()).trimmed();
        connection_ = xcb_connect(display_.toUtf8().constData(), nullptr);
    }
    ~XWindows() {
        if (connection_) xcb_disconnect(connection_);
        server_.kill();
        server_.waitForFinished();
    }
    XWindows(const XWindows&) = delete;
    XWindows& operator=(const XWindows&) = delete;

    bool isRunning() const { return connection_ && xcb_connection_has_error(connection_) == 0; }
    const QString& display() const { return display_; }

    /// The titles of the windows that a process shows.
    std::vector<std::string> titles(qint64 process) const {
        std::vector<std::string> titles;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const Owned<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root), nullptr));
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
            const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
            const Owned<xcb_get_window_attributes_reply_t> state(xcb_get_window_attributes_reply(
                connection_, xcb_get_window_attributes(connection_, window), nullptr));
            if (!state || state->map_state != XCB_MAP_STATE_VIEWABLE) continue;
            const std::string owner = property(window, "_NET_WM_PID");
            std::uint32_t number = 0;
            if (owner.size() != sizeof number) continue;
            owner.copy(reinterpret_cast<char*>(&number), sizeof number);
            if (number == static_cast<std::uint32_t>(process))
                titles.push_back(property(window, "_NET_WM_NAME"));
        }
        return titles;
    }

private:
    std::string property(xcb_window_t window, const std::string& name) const {
        const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(name.size()), name.c_str()),
            nullptr));
        if (!atom) return {};
        const Owned<xcb_get_property_reply_t> value(xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, window, atom->atom, XCB_ATOM_ANY, 0, 256),
            nullptr));
        if (!value) return {};
        return {static_cast<const char*>(xcb_get_property_value(value.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(value.get()))};
    }

    QProcess server_;
    QString display_;
    xcb_connection_t* connection_ = nullptr;
};

/// Starts of the real program on a display and a bus of the test's own.
class QuickSearchStartTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        if (!screen.isRunning()) GTEST_SKIP() << "there is no Xvfb here";
        folder.file("root/Support/settings.json", R"({"hasOnboarded": true})");
        folder.folder("root/Home");
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        environment.insert(u"DISPLAY"_s, screen.display());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.insert(u"TARN_ISOLATED_ROOT"_s,
                           QString::fromStdString((folder / "root").path()));
    }
    void start(QProcess& process, const QStringList& arguments) {
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TARN_WINDOW_PROGRAM), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    bool shows(const QProcess& process, const std::vector<std::string>& titles) {
        const auto isSo = [&] {
            auto shown = screen.titles(process.processId());
            std::ranges::sort(shown);
            return shown == titles;
        };
        return QTest::qWaitFor(isSo, 20'000);
    }
    void handOver() {
        QProcess later;
        start(later, {u"--quick-search"_s});
        ASSERT_TRUE(later.waitForFinished());
        EXPECT_EQ(later.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(later.exitCode(), 0);
    }

    PrivateBus bus;
    XWindows screen;
    TestFolder folder;
    QProcessEnvironment environment;
};

TEST_F(QuickSearchStartTest, aLaterStartShowsThePanelOfTheFirst) {
    QProcess first;
    start(first, {});
    ASSERT_TRUE(shows(first, {"Start"}));
    handOver();
    EXPECT_TRUE(shows(first, {"Quick Search", "Start"}));
    handOver();
    EXPECT_TRUE(shows(first, {"Quick Search", "Start"})) << "it is one at a time";
    first.terminate();
    EXPECT_TRUE(first.waitForFinished());
    EXPECT_EQ(first.exitCode(), 0);
}

TEST_F(QuickSearchStartTest, theFirstStartShowsThePanelAlone) {
    QProcess first;
    start(first, {u"--quick-search"_s});
    EXPECT_TRUE(shows(first, {"Quick Search"}));
    first.terminate();
    EXPECT_TRUE(first.waitForFinished());
    EXPECT_EQ(first.exitCode(), 0);
}

}  // namespace
}  // namespace tarn
