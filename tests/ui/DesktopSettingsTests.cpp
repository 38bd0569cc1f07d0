#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/DesktopSettings.h"
#include "tests/support/PrivateBus.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

struct Channels {
    double red = 0;
    double green = 0;
    double blue = 0;
};
[[maybe_unused]] QDBusArgument& operator<<(QDBusArgument& out, const Channels& color) {
    out.beginStructure();
    out << color.red << color.green << color.blue;
    out.endStructure();
    return out;
}
[[maybe_unused]] const QDBusArgument& operator>>(const QDBusArgument& in, Channels& color) {
    in.beginStructure();
    in >> color.red >> color.green >> color.blue;
    in.endStructure();
    return in;
}

}  // namespace
}  // namespace tarn
Q_DECLARE_METATYPE(tarn::Channels)

namespace tarn {
namespace {

/// Answers ReadAll as the settings portal does.
class FakePortal final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != u"ReadAll"_s) return false;
        const QMap<QString, QVariantMap> groups = {
            {u"org.freedesktop.appearance"_s,
             {{u"color-scheme"_s, 1U},
              {u"contrast"_s, 1U},
              {u"accent-color"_s, QVariant::fromValue(Channels{1.0, 0.5, 0.0})}}},
            {u"org.gnome.desktop.interface"_s, {{u"enable-animations"_s, false}}}};
        return bus.send(message.createReply(QVariant::fromValue(groups)));
    }
};

/// A bus of its own with the fake portal on it.
class PortalTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
        qDBusRegisterMetaType<Channels>();
        ASSERT_TRUE(
            bus.server().registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, &portal));
        ASSERT_TRUE(bus.server().registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    void change(const QString& key, const QVariant& value) {
        auto signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << key
               << QVariant::fromValue(QDBusVariant(value));
        ASSERT_TRUE(bus.server().send(signal));
    }

    PrivateBus bus;
    FakePortal portal;
};

TEST_F(PortalTest, answersThatComeLateAreTaken) {
    // The portal lives in this thread, so that it cannot answer before the first window is up.
    DesktopSettings settings(bus.client());
    EXPECT_FALSE(settings.scheme());
    ASSERT_TRUE(waitFor([&] { return settings.scheme().has_value(); }));
    EXPECT_EQ(settings.scheme(), DesktopSettings::Scheme::dark);
    EXPECT_TRUE(settings.wantsHighContrast());
    EXPECT_FALSE(settings.wantsAnimations());
    ASSERT_TRUE(settings.accent());
    EXPECT_EQ(settings.accent()->name(), u"#ff8000"_s);
}

TEST_F(PortalTest, changesAreFollowedWhileTheProgramRuns) {
    DesktopSettings settings(bus.client());
    ASSERT_TRUE(waitFor([&] { return settings.scheme().has_value(); }));
    change(u"color-scheme"_s, 2U);
    EXPECT_TRUE(waitFor([&] { return settings.scheme() == DesktopSettings::Scheme::light; }));
    change(u"color-scheme"_s, 0U);
    EXPECT_TRUE(waitFor([&] { return !settings.scheme(); }));
    // Out of range: the user has no accent.
    change(u"accent-color"_s, QVariant::fromValue(Channels{-1, -1, -1}));
    EXPECT_TRUE(waitFor([&] { return !settings.accent(); }));
}

TEST(DesktopSettings, withoutABusEverythingIsTheDefault) {
    const DesktopSettings settings;
    EXPECT_FALSE(settings.scheme() || settings.accent() || settings.wantsHighContrast());
    EXPECT_TRUE(settings.wantsAnimations());
}

}  // namespace
}  // namespace tarn
