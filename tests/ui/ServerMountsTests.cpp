#include <algorithm>
#include <memory>

#include <QtDBus/QDBusConnectionInterface>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/desktop/ServerMounts.h"
#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

TEST(ServerMounts, noticesServersThatOtherProgramsConnect) {
    const PrivateBus bus;
    if (!bus.isRunning()) GTEST_SKIP() << "there is no dbus-daemon here";
    const auto volumes = std::make_shared<MemoryVolumes>();
    const auto drives = std::make_shared<MemoryDrives>(volumes);
    drives->setServer("smb://nas/photos", "ada", "s3cret", URL::fromPath("/servers/photos"));
    Platform services = Platform::current();
    services.volumes = volumes;
    services.drives = drives;
    const ScopedPlatform scope(services);
    ASSERT_TRUE(QDBusConnection(bus.server()).registerService(u"org.gtk.vfs.Daemon"_s));
    AppModel app;
    const ServerMounts mounts(app, bus.client());
    // What the bus is asked for comes before what it tells.
    ASSERT_TRUE(bus.client().interface()->isServiceRegistered(u"org.gtk.vfs.Daemon"_s));
    drives->connect("smb://nas/photos",
                    [](const ServerQuestion&) {
                        return ServerAnswer{"ada", "s3cret"};
                    },
                    {});
    EXPECT_TRUE(app.volumes().empty());
    auto told = QDBusMessage::createSignal(u"/org/gtk/vfs/mounttracker"_s,
                                           u"org.gtk.vfs.MountTracker"_s, u"Mounted"_s);
    told.setArguments({u":1.7"_s});  // and more, which nobody here reads
    ASSERT_TRUE(bus.server().send(told));
    EXPECT_TRUE(waitFor([&app] {
        return std::ranges::find(app.volumes(), URL::fromPath("/servers/photos"), &Volume::url) !=
               app.volumes().end();
    }));
}

}  // namespace
}  // namespace tarn
