#include <cstdlib>
#include <optional>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVirtualObject>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/linux/LinuxDrives.h"
#include "tests/support/PrivateBus.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;
using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

}  // namespace
}  // namespace tarn
Q_DECLARE_METATYPE(tarn::Interfaces)
Q_DECLARE_METATYPE(tarn::Objects)
Q_DECLARE_METATYPE(QByteArrayList)

namespace tarn {
namespace {

const QString blocks = u"/org/freedesktop/UDisks2/block_devices/"_s;
const QString drives = u"/org/freedesktop/UDisks2/drives/"_s;

/// A disk service with a few disks. Takes notes of what is called, and refuses what it is told to.
class FakeDisks final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() == u"GetManagedObjects"_s)
            return bus.send(message.createReply(QVariant::fromValue(objects)));
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().value(0));
        calls << message.path().section(u'/', -1) + u'.' + message.member() +
                     (options.value(u"force"_s).toBool() ? u" force"_s : QString());
        if (const auto refusal = refusals.constFind(message.member()); refusal != refusals.cend())
            return bus.send(
                message.createErrorReply(u"org.freedesktop."_s + refusal->first, refusal->second));
        return bus.send(message.createReply());
    }
    void add(const QString& device, const QString& drive, const QByteArrayList& mountPoints,
             const QString& backing = {}) {
        QByteArrayList ended;
        for (QByteArray point : mountPoints) ended << point.append('\0');
        const auto path = [](const QString& text) {
            return QVariant::fromValue(QDBusObjectPath(text.isEmpty() ? u"/"_s : text));
        };
        Interfaces& interfaces = objects[QDBusObjectPath(blocks + device)];
        interfaces[u"org.freedesktop.UDisks2.Block"_s] = {
            {u"Drive"_s, path(drive.isEmpty() ? QString() : drives + drive)},
            {u"CryptoBackingDevice"_s, path(backing.isEmpty() ? QString() : blocks + backing)}};
        if (!mountPoints.isEmpty())
            interfaces[u"org.freedesktop.UDisks2.Filesystem"_s] = {
                {u"MountPoints"_s, QVariant::fromValue(ended)}};
    }
    void addDrive(const QString& name, bool mediaRemovable, bool ejectable, bool canPowerOff) {
        objects[QDBusObjectPath(drives + name)][u"org.freedesktop.UDisks2.Drive"_s] = {
            {u"MediaRemovable"_s, mediaRemovable},
            {u"Ejectable"_s, ejectable},
            {u"CanPowerOff"_s, canPowerOff}};
    }

    Objects objects;
    QMap<QString, std::pair<QString, QString>> refusals;  ///< By method: name, words.
    QStringList calls;
};

/// A system bus of its own with the fake service on it.
class DiskServiceTest : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8().constData(), 1);
        qDBusRegisterMetaType<Interfaces>();
        qDBusRegisterMetaType<Objects>();
        qDBusRegisterMetaType<QByteArrayList>();
        ASSERT_TRUE(bus.server().registerVirtualObject(u"/org/freedesktop/UDisks2"_s, &disks,
                                                       QDBusConnection::SubPath));
        ASSERT_TRUE(bus.server().registerService(u"org.freedesktop.UDisks2"_s));
        disks.addDrive(u"Stick"_s, false, true, true);
        disks.add(u"sdb1"_s, u"Stick"_s, {"/media/ada/A"});
    }
    void TearDown() override { unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }
    /// On another thread, while this one answers for the service.
    EjectResult eject(const char* mountPoint, bool force = false) {
        Mount volume;
        volume.mountPoint = URL::fromPath(mountPoint);
        volume.fileSystem = "vfat";
        volume.isRemovable = true;
        std::optional<EjectResult> result;
        std::atomic<bool> isDone = false;
        TaskPool pool(1);
        pool.run([&] {
            result = LinuxDrives().eject(volume, "A", force);
            isDone = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone.load(); }, 20000));
        return result.value_or(EjectResult());
    }

    PrivateBus bus;
    FakeDisks disks;
};

TEST_F(DiskServiceTest, unmountsAndThenLetsGoOfTheDrive) {
    disks.addDrive(u"Reader"_s, true, true, true);
    disks.add(u"sr0"_s, u"Reader"_s, {"/media/ada/disc"});
    disks.addDrive(u"Big"_s, false, false, true);
    disks.add(u"sdc1"_s, u"Big"_s, {"/media/ada/one"});
    disks.add(u"sdc2"_s, u"Big"_s, {"/media/ada/two"});
    disks.addDrive(u"Safe"_s, false, false, true);
    disks.add(u"sdd1"_s, u"Safe"_s, {});
    disks.add(u"dm_2d0"_s, {}, {"/media/ada/safe"}, u"sdd1"_s);
    const struct {
        const char* what;
        const char* mountPoint;
        bool force;
        QStringList calls;
    } cases[] = {
        {"a stick", "/media/ada/A", false, {u"sdb1.Unmount"_s, u"Stick.PowerOff"_s}},
        {"by force, while it may be written to", "/media/ada/A", true, {u"sdb1.Unmount force"_s}},
        {"a disc", "/media/ada/disc", false, {u"sr0.Unmount"_s, u"Reader.Eject"_s}},
        {"one of two on a drive", "/media/ada/one", false, {u"sdc1.Unmount"_s}},
        {"what is encrypted",
         "/media/ada/safe",
         false,
         {u"dm_2d0.Unmount"_s, u"sdd1.Lock"_s, u"Safe.PowerOff"_s}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        disks.calls.clear();
        EXPECT_EQ(eject(c.mountPoint, c.force), EjectResult());
        EXPECT_EQ(disks.calls, c.calls);
    }
}

TEST_F(DiskServiceTest, tellsWhyItCouldNot) {
    using Outcome = EjectResult::Outcome;
    const struct {
        const char* error;
        const char* words;
        EjectResult result;
    } cases[] = {
        {"UDisks2.Error.DeviceBusy",
         "Error unmounting /dev/sdb1: in Benutzung",
         {Outcome::busy, "Couldn’t eject “A” because it is in use."}},
        {"UDisks2.Error.Failed",
         "Error unmounting /dev/sdb1: target is busy",
         {Outcome::busy, "Couldn’t eject “A” because it is in use."}},
        {"UDisks2.Error.NotAuthorizedDismissed",
         "The authentication dialog was dismissed",
         {Outcome::failed, "Couldn’t eject “A”. The password wasn’t given."}},
        {"UDisks2.Error.NotAuthorizedCanObtain",
         "Not authorized to perform operation",
         {Outcome::failed, "Couldn’t eject “A”. You aren’t allowed to."}},
        {"UDisks2.Error.Failed",
         "Input/output error",
         {Outcome::failed, "Couldn’t eject “A”. Input/output error."}},
        {"UDisks2.Error.NotMounted", "Device `/dev/sdb1' is not mounted", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.words);
        disks.refusals[u"Unmount"_s] = {QString::fromUtf8(c.error), QString::fromUtf8(c.words)};
        EXPECT_EQ(eject("/media/ada/A"), c.result);
    }
    // Everything is written by then.
    disks.refusals = {{u"PowerOff"_s, {u"UDisks2.Error.DeviceBusy"_s, u"busy"_s}}};
    EXPECT_EQ(eject("/media/ada/A"), EjectResult());
}

TEST_F(DiskServiceTest, leavesWhatItDoesNotKnowToUnmounting) {
    disks.add(u"sde1"_s, u"Stick"_s, {"/media/ada/B", "/media/ada/C"});
    for (const char* mountPoint : {"/nonexistent/volume", "/media/ada/B"}) {
        SCOPED_TRACE(mountPoint);
        const EjectResult result = eject(mountPoint);
        EXPECT_TRUE(disks.calls.isEmpty());
        EXPECT_EQ(result.outcome, EjectResult::Outcome::failed);
        EXPECT_TRUE(std::string_view(result.message).starts_with("Couldn’t eject “A”. "))
            << result.message;
    }
}

}  // namespace
}  // namespace tarn
