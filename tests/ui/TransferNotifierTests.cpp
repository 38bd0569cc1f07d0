#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVirtualObject>
#include <gtest/gtest.h>

#include "Tarn/model/HistoryModel.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/ui/transfers/TransferNotifier.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Takes notes of what it is to show.
class FakeDesktop final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != u"Notify"_s) return false;
        signature = message.signature();
        heading = message.arguments().at(3).toString();
        body = message.arguments().at(4).toString();
        ++count;
        return bus.send(message.createReply(1U));
    }
    int count = 0;
    QString signature;
    QString heading;
    QString body;
};

class TransferNotifierTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        ASSERT_TRUE(
            bus.server().registerVirtualObject(u"/org/freedesktop/Notifications"_s, &desktop));
        ASSERT_TRUE(bus.server().registerService(u"org.freedesktop.Notifications"_s));
    }
    void copy() {
        transfers.add(TransferKind::copy, {folder.file("<b>.txt", "x")},
                      folder.folder(std::to_string(++copies) + "/to"));
        ASSERT_TRUE(waitFor([this] { return transfers.activeCount() == 0; }));
    }

    PrivateBus bus;
    int copies = 0;
    FakeDesktop desktop;
    TestFolder folder;
    HistoryModel history{std::nullopt};
    TransferList transfers{history};
};

TEST_F(TransferNotifierTest, tellsOfLongTransfersToWhoIsElsewhere) {
    constexpr double long_ = 3600;
    {
        const TransferNotifier notifier(transfers, bus.client(), long_);
        copy();
    }
    const TransferNotifier notifier(transfers, bus.client(), 0);
    {
        QWidget window;
        show(window);
        copy();
    }
    ASSERT_FALSE(QGuiApplication::focusWindow());
    copy();
    ASSERT_TRUE(waitFor([this] { return desktop.count > 0; }));
    EXPECT_EQ(desktop.count, 1);
    // As the desktop expects it of every program.
    EXPECT_EQ(desktop.signature, u"susssasa{sv}i"_s);
    EXPECT_EQ(desktop.heading, u"Copying Finished"_s);
    EXPECT_EQ(desktop.body, u"Copied “&lt;b&gt;.txt” to “to”"_s);
}

}  // namespace
}  // namespace tarn
