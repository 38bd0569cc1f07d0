#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVirtualObject>
#include <gtest/gtest.h>

#include "Tarn/ui/menus/FileManagerCall.h"
#include "tests/support/PrivateBus.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// A file manager that notes what it is asked to show.
class FakeFileManager final : public QDBusVirtualObject {
public:
    QStringList shown;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != u"ShowItems"_s) return false;
        shown = message.arguments().at(0).toStringList();
        bus.send(message.createReply());
        return true;
    }
    QString introspect(const QString&) const override { return {}; }
};

TEST(FileManagerCall, asksForTheItemsAndTellsWhenNobodyAnswers) {
    PrivateBus bus;
    if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
    QDBusConnection server = bus.server();
    const QDBusConnection& client = bus.client();
    const std::vector<URL> urls = {URL::fromPath("/x/a b.txt"), URL::fromPath("/x/\xff\n")};
    QObject context;
    int refused = 0;
    FileManagerCall::showItems(client, urls, context, [&refused] { ++refused; });
    EXPECT_TRUE(waitFor([&refused] { return refused == 1; }));

    FakeFileManager manager;
    ASSERT_TRUE(server.registerVirtualObject(u"/org/freedesktop/FileManager1"_s, &manager));
    ASSERT_TRUE(server.registerService(u"org.freedesktop.FileManager1"_s));
    FileManagerCall::showItems(client, urls, context, [&refused] { ++refused; });
    EXPECT_TRUE(waitFor([&manager] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, (QStringList{u"file:///x/a%20b.txt"_s, u"file:///x/%FF%0A"_s}));
    EXPECT_EQ(refused, 1);

    // A file manager does not ask itself.
    FileManagerCall::showItems(server, urls, context, [&refused] { ++refused; });
    EXPECT_EQ(refused, 2);
}

}  // namespace
}  // namespace tarn
