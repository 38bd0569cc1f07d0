#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <optional>
#include <string>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVirtualObject>
#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "Tarn/ui/desktop/ProgramLaunch.h"
#include "Tarn/ui/desktop/StartupNotice.h"
#include "TarnCore/base/TaskPool.h"
#include "tests/support/PrivateBus.h"
#include "tests/ui/XServer.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// A program that is a service of the bus, and what it was asked.
class FakeProgram final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        asked = call;
        bus.send(call.createReply());
        return true;
    }
    std::optional<QDBusMessage> asked;
};

/// activate() waits, and the fake answers on this thread.
bool activates(const QDBusConnection& bus, const ProgramLaunch::Job& job) {
    std::atomic<int> answer = -1;
    TaskPool pool(2);
    pool.run([&] { answer = ProgramLaunch::activate(bus, job, "token"); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return answer >= 0; }, 20'000));
    return answer == 1;
}

TEST(ProgramLaunch, aServiceOfTheBusIsAskedToOpenTheFiles) {
    PrivateBus bus;
    if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
    FakeProgram program;
    ASSERT_TRUE(bus.server().registerService(u"org.test.My-Viewer"_s));
    ASSERT_TRUE(bus.server().registerVirtualObject(u"/org/test/My_Viewer"_s, &program));
    ProgramLaunch::Job job;
    job.program.id = "org.test.My-Viewer.desktop";
    job.files = {URL::fromPath("/x/a b"), URL::fromPath("/x/\xff\n")};
    ASSERT_TRUE(activates(bus.client(), job));
    EXPECT_EQ(program.asked->interface(), u"org.freedesktop.Application"_s);
    EXPECT_EQ(program.asked->member(), u"Open"_s);
    EXPECT_EQ(program.asked->arguments().at(0).toStringList(),
              (QStringList{u"file:///x/a%20b"_s, u"file:///x/%FF%0A"_s}));
    EXPECT_EQ(qdbus_cast<QVariantMap>(program.asked->arguments().at(1))[u"activation-token"_s],
              u"token"_s);
    job.program.id = "org.test.Gone.desktop";
    EXPECT_FALSE(activates(bus.client(), job)) << "it is started by its command";
}

TEST(StartupNotice, anIdCarriesItsTime) {
    const struct {
        const char* id;
        std::optional<std::uint32_t> time;
    } cases[] = {
        {"kate-1_TIME12", 12},
        {"x_TIME1_TIME7", 7},
        {"kate-1", {}},
        {"kate_TIME", {}},
        {"kate_TIME12x", {}},
        {"kate_TIME-1", {}},
        {"kate_TIME99999999999999", {}},
        {"_TIME4294967295", 0xFFFFFFFF},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(StartupNotice::time(c.id), c.time);
    }
    EXPECT_EQ(StartupNotice::time(StartupNotice::newID(5)), 5u);
    EXPECT_NE(StartupNotice::newID(5), StartupNotice::newID(5));
}

TEST(StartupNotice, everyoneOnTheScreenHears) {
    XServer server;
    if (!server.start()) GTEST_SKIP() << "there is no Xvfb here";
    xcb_connection_t* const panel = server.connect();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(panel)).data->root;
    const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    ASSERT_FALSE(xcb_request_check(
        panel, xcb_change_window_attributes_checked(panel, root, XCB_CW_EVENT_MASK, &wanted)));
    xcb_connection_t* const ours = server.connect();
    DesktopEntry program;
    program.id = "a.desktop";
    program.name = "A \"quoted\" name";
    StartupNotice::begin(ours, "quiet", program);  // It would never say that it has started.
    program.tellsWhenStarted = true;
    StartupNotice::begin(ours, "id_TIME7", program);
    StartupNotice::end(ours, "id_TIME7");
    std::string heard;
    while (std::ranges::count(heard, '\0') < 2) {
        xcb_generic_event_t* const event = xcb_wait_for_event(panel);
        ASSERT_TRUE(event);
        if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
            const auto* bytes = reinterpret_cast<xcb_client_message_event_t*>(event)->data.data8;
            const std::string piece(bytes, bytes + 20);
            const std::size_t end = piece.find('\0');
            heard += piece.substr(0, end == piece.npos ? end : end + 1);
        }
        std::free(event);
    }
    EXPECT_EQ(heard, std::string("new: ID=\"id_TIME7\" NAME=\"A \\\"quoted\\\" name\" SCREEN=0 "
                                 "APPLICATION_ID=\"a.desktop\" TIMESTAMP=7\0"
                                 "remove: ID=\"id_TIME7\"\0",
                                 114));
    xcb_disconnect(ours);
    xcb_disconnect(panel);
}

}  // namespace
}  // namespace tarn
