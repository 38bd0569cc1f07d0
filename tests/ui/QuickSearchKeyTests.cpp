#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <QtCore/QScopeGuard>
#include <QtCore/QSocketNotifier>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/QuickSearchKey.h"
#include "Tarn/ui/quicksearch/QuickSearchPanel.h"
#include "Tarn/ui/quicksearch/XKeyGrab.h"
#include "Tarn/ui/settings/HotKeyField.h"
#include "Tarn/ui/settings/SearchSection.h"
#include "TarnCore/files/SupportDirectory.h"
#include "tests/support/PrivateBus.h"
#include "tests/ui/Shown.h"
#include "tests/ui/XServer.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// As it travels: (sa{sv}).
struct Wish {
    QString id;
    QVariantMap properties;
};
[[maybe_unused]] QDBusArgument& operator<<(QDBusArgument& out, const Wish& wish) {
    out.beginStructure();
    out << wish.id << wish.properties;
    out.endStructure();
    return out;
}
[[maybe_unused]] const QDBusArgument& operator>>(const QDBusArgument& in, Wish& wish) {
    in.beginStructure();
    in >> wish.id >> wish.properties;
    in.endStructure();
    return in;
}

/// The desktop's portal for shortcuts, with a user who answers its question.
class FakePortal final : public QDBusVirtualObject {
public:
    explicit FakePortal(QDBusConnection bus) : bus_(std::move(bus)) {}

    uint version = 2;
    bool hasShortcuts = true;
    uint userSays = 0;  ///< What a request answers; 1 is no.
    QString keys = u"Ctrl+Shift+Space"_s;
    QStringList calls;
    QString applicationID;
    QString trigger;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        const QString member = message.member();
        calls.append(member);
        if (member == u"Register"_s) {
            applicationID = message.arguments().at(0).toString();
            return bus_.send(message.createReply());
        }
        if (member == u"Get"_s)
            return bus_.send(hasShortcuts ? message.createReply(QVariant::fromValue(
                                                QDBusVariant(QVariant::fromValue(version))))
                                          : message.createErrorReply(QDBusError::UnknownInterface,
                                                                     u"no such interface"_s));
        if (member == u"CreateSession"_s) {
            const auto options = qdbus_cast<QVariantMap>(message.arguments().at(0));
            session = u"/org/freedesktop/portal/desktop/session/1/"_s +
                      options.value(u"session_handle_token"_s).toString();
            return answer(message, options, 0, {{u"session_handle"_s, session}});
        }
        if (member == u"BindShortcuts"_s) {
            auto wishes = qdbus_cast<QList<Wish>>(message.arguments().at(1));
            trigger = wishes.at(0).properties.value(u"preferred_trigger"_s).toString();
            id = wishes.at(0).id;
            return answer(message, qdbus_cast<QVariantMap>(message.arguments().at(3)), userSays,
                          {{u"shortcuts"_s, QVariant::fromValue(given())}});
        }
        return bus_.send(message.createReply());
    }
    void press() {
        auto signal = made(u"Activated"_s);
        signal << QVariant::fromValue(QDBusObjectPath(session)) << id
               << QVariant::fromValue(qulonglong(1))
               << QVariantMap{{u"activation_token"_s, u"token7"_s}};
        bus_.send(signal);
    }
    void tellKeys(const QString& others) {
        keys = others;
        auto signal = made(u"ShortcutsChanged"_s);
        signal << QVariant::fromValue(QDBusObjectPath(session)) << QVariant::fromValue(given());
        bus_.send(signal);
    }

private:
    static QDBusMessage made(const QString& name) {
        return QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                          u"org.freedesktop.portal.GlobalShortcuts"_s, name);
    }
    QList<Wish> given() const { return {{id, {{u"trigger_description"_s, keys}}}}; }
    bool answer(const QDBusMessage& message, const QVariantMap& options, uint code,
                const QVariantMap& results) {
        QString sender = message.service().mid(1);
        sender.replace(u'.', u'_');
        const QString path = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            sender, options.value(u"handle_token"_s).toString());
        bus_.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        auto signal =
            QDBusMessage::createSignal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << code << results;
        return bus_.send(signal);
    }

    QDBusConnection bus_;
    QString session;
    QString id;
};

class ShortcutPortalTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        qDBusRegisterMetaType<Wish>();
        qDBusRegisterMetaType<QList<Wish>>();
        portal = std::make_unique<FakePortal>(bus.server());
        ASSERT_TRUE(bus.server().registerVirtualObject(u"/org/freedesktop/portal"_s, portal.get(),
                                                       QDBusConnection::SubPath));
        ASSERT_TRUE(bus.server().registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    /// What the next start of the program finds, which is written in the background.
    static std::string stored() {
        const URL store = SupportDirectory::url().appending("shortcut-portal.json");
        std::ifstream file(store.path());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool reaches(const QuickSearchKey& key, QuickSearchKey::State state) {
        return waitFor([&] { return key.state() == state; });
    }

    PrivateBus bus;
    std::unique_ptr<FakePortal> portal;
    AppModel app;
};

TEST_F(ShortcutPortalTest, asksOnAClickAndNeverAtAStart) {
    const QString id = QGuiApplication::desktopFileName();
    QGuiApplication::setDesktopFileName(u"tarn"_s);
    const auto restored = qScopeGuard([&id] { QGuiApplication::setDesktopFileName(id); });
    QuickSearch search(app, bus.client(), nullptr);
    QuickSearchKey& key = search.key();
    ASSERT_TRUE(reaches(key, QuickSearchKey::State::mustAsk));
    // Whoever this program is has to be said first.
    EXPECT_EQ(portal->calls, (QStringList{u"Register"_s, u"Get"_s}));
    EXPECT_EQ(portal->applicationID, u"tarn"_s);

    SearchSection section(app);
    show(section);
    auto* ask = section.findChild<QPushButton*>(u"askDesktop"_s);
    ASSERT_TRUE(ask->isVisible());
    QTest::mouseClick(ask, Qt::LeftButton);
    ASSERT_TRUE(reaches(key, QuickSearchKey::State::ready));
    EXPECT_EQ(portal->trigger, u"CTRL+SHIFT+space"_s);
    EXPECT_EQ(key.sentence(), u"The desktop opens it with Ctrl+Shift+Space."_s);
    EXPECT_FALSE(section.findChild<HotKeyField*>()->isEnabled());

    portal->tellKeys(u"Meta+F"_s);
    EXPECT_TRUE(waitFor([&] { return key.sentence().contains(u"Meta+F"_s); }));
    QSignalSpy pressed(&key, &QuickSearchKey::pressed);
    portal->press();
    ASSERT_TRUE(waitFor([&] { return pressed.count() == 1; }));
    EXPECT_EQ(pressed[0][0].value<std::string>(), "token7");
    EXPECT_TRUE(search.panel());

    // What was given once is taken again at the next start, and not after it was turned off.
    ASSERT_TRUE(waitFor([] { return stored().find("true") != std::string::npos; }));
    QuickSearchKey next(app, bus.client(), nullptr);
    EXPECT_TRUE(reaches(next, QuickSearchKey::State::ready));
    AppSettings settings = app.settings();
    settings.quickSearchEnabled = false;
    app.setSettings(settings);
    EXPECT_EQ(next.state(), QuickSearchKey::State::off);
    EXPECT_TRUE(waitFor([&] { return portal->calls.contains(u"Close"_s); }));
    app.setSettings({});
    ASSERT_TRUE(reaches(next, QuickSearchKey::State::ready));

    portal->userSays = 1;
    settings.quickSearchEnabled = true;
    settings.quickSearchKeyCode = 0;
    app.setSettings(settings);
    ASSERT_TRUE(reaches(next, QuickSearchKey::State::failed));
    EXPECT_EQ(next.sentence(), u"The desktop gave it no keys, since that was declined."_s);
    app.setSettings({});
    ASSERT_TRUE(waitFor([] { return stored().find("false") != std::string::npos; }));
    QuickSearchKey afterNo(app, bus.client(), nullptr);
    EXPECT_TRUE(reaches(afterNo, QuickSearchKey::State::mustAsk));
}

TEST_F(ShortcutPortalTest, saysWhenTheDesktopHasNoSuchPortal) {
    portal->hasShortcuts = false;
    QuickSearchKey key(app, bus.client(), nullptr);
    ASSERT_TRUE(reaches(key, QuickSearchKey::State::unavailable));
    EXPECT_TRUE(key.sentence().contains(u"tarn --quick-search"_s));
    EXPECT_FALSE(key.canAskDesktop());
}

TEST(QuickSearchKey, withoutABusNothingGivesKeys) {
    AppModel app;
    QuickSearchKey key(app, QDBusConnection(QString()), nullptr);
    EXPECT_EQ(key.state(), QuickSearchKey::State::unavailable);
}

/// An X server without a screen, and a connection to it whose events are read here.
class XKeyGrabTest : public testing::Test {
protected:
    void SetUp() override {
        if (!server.start()) GTEST_SKIP() << "there is no Xvfb here";
        connection = server.connect();
        ASSERT_EQ(xcb_connection_has_error(connection), 0);
        reader = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection),
                                                   QSocketNotifier::Read);
        QObject::connect(reader.get(), &QSocketNotifier::activated, [this] { readEvents(); });
        grab = std::make_unique<XKeyGrab>(connection);
        QObject::connect(grab.get(), &XKeyGrab::pressed, [this] { ++presses; });
        if (!runs({u"xdotool"_s, u"version"_s})) GTEST_SKIP() << "there is no xdotool here";
    }
    void TearDown() override {
        grab.reset();
        reader.reset();
        if (connection) xcb_disconnect(connection);
    }
    void readEvents() {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
            qintptr unused = 0;
            grab->nativeEventFilter("xcb_generic_event_t", event, &unused);
            std::free(event);
        }
    }
    bool runs(QStringList words) const { return server.runs(std::move(words)); }
    /// Whether pressing these is told, once.
    bool tells(const char* keys) {
        presses = 0;
        EXPECT_TRUE(runs({u"xdotool"_s, u"key"_s, QString::fromUtf8(keys)}));
        // An answer of the server comes after all events before it.
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        readEvents();
        QCoreApplication::processEvents();
        EXPECT_LE(presses, 1);
        return presses == 1;
    }

    XServer server;
    xcb_connection_t* connection = nullptr;
    std::unique_ptr<QSocketNotifier> reader;
    std::unique_ptr<XKeyGrab> grab;
    int presses = 0;
};

TEST_F(XKeyGrabTest, hearsItsKeysWhateverIsLocked) {
    ASSERT_EQ(grab->grab(HotKey()), XKeyGrab::Outcome::grabbed);
    EXPECT_TRUE(tells("ctrl+shift+space"));
    for (const char* others :
         {"space", "ctrl+space", "shift+space", "ctrl+shift+alt+space", "ctrl+shift+a"})
        EXPECT_FALSE(tells(others)) << others;
    for (const char* lock : {"Caps_Lock", "Num_Lock", "Scroll_Lock"}) {
        SCOPED_TRACE(lock);
        ASSERT_TRUE(runs({u"xdotool"_s, u"key"_s, QString::fromUtf8(lock)}));
        EXPECT_TRUE(tells("ctrl+shift+space"));
    }
    ASSERT_EQ(grab->grab({0, HotKey::super | HotKey::alt}), XKeyGrab::Outcome::grabbed);
    EXPECT_FALSE(tells("ctrl+shift+space"));
    EXPECT_TRUE(tells("super+alt+a"));
    grab->release();
    EXPECT_FALSE(tells("super+alt+a"));
}

TEST_F(XKeyGrabTest, saysWhoHasTheKeysAlready) {
    xcb_connection_t* other = server.connect();
    {
        XKeyGrab first(other);
        ASSERT_EQ(first.grab(HotKey()), XKeyGrab::Outcome::grabbed);
        EXPECT_EQ(grab->grab(HotKey()), XKeyGrab::Outcome::taken);
        EXPECT_EQ(grab->grab({0, HotKey::control}), XKeyGrab::Outcome::grabbed);
    }
    std::free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    EXPECT_EQ(grab->grab(HotKey()), XKeyGrab::Outcome::grabbed);
    xcb_disconnect(other);
    // Without a modifier nobody could type the letter any more.
    EXPECT_EQ(grab->grab({0, HotKey::shift}), XKeyGrab::Outcome::noSuchKey);
    EXPECT_EQ(grab->grab({4711, HotKey::control}), XKeyGrab::Outcome::noSuchKey);
}

TEST_F(XKeyGrabTest, followsTheLabelsOfTheKeyboard) {
    if (!runs({u"setxkbmap"_s, u"us"_s})) GTEST_SKIP() << "there is no setxkbmap here";
    ASSERT_EQ(grab->grab({0, HotKey::control}), XKeyGrab::Outcome::grabbed);
    ASSERT_TRUE(tells("ctrl+a"));
    // There A and Q have changed places.
    QSignalSpy changes(grab.get(), &XKeyGrab::outcomeChanged);
    ASSERT_TRUE(runs({u"setxkbmap"_s, u"fr"_s}));
    ASSERT_TRUE(waitFor([&] { return changes.count() > 0; }));
    EXPECT_TRUE(tells("ctrl+a"));
    EXPECT_FALSE(tells("ctrl+q"));
}

TEST(HotKeyField, takesWhatCanBeStored) {
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers held;
        std::optional<HotKey> recorded;
    } cases[] = {
        {Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier, HotKey()},
        {Qt::Key_J, Qt::MetaModifier, HotKey{38, HotKey::super}},
        {Qt::Key_Tab, Qt::AltModifier, HotKey{48, HotKey::alt}},
        {Qt::Key_F13, {}, HotKey{105, 0}},
        {Qt::Key_J, Qt::ShiftModifier, std::nullopt},
        {Qt::Key_VolumeUp, Qt::ControlModifier, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        HotKeyField field;
        show(field);
        std::optional<HotKey> recorded;
        QString sentence;
        QObject::connect(&field, &HotKeyField::recorded,
                         [&](const HotKey& key) { recorded = key; });
        QObject::connect(&field, &KeyField::refused, [&](const QString& text) { sentence = text; });
        QTest::keyClick(&field, Qt::Key_Return);
        ASSERT_TRUE(field.isRecording());
        QTest::keyClick(&field, c.key, c.held);
        EXPECT_EQ(recorded, c.recorded);
        EXPECT_EQ(field.isRecording(), !c.recorded);
        EXPECT_EQ(sentence.isEmpty(), c.recorded.has_value());
    }
}

}  // namespace
}  // namespace tarn
