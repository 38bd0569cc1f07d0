#include "Tarn/ui/desktop/ServerMounts.h"

#include <chrono>

#include "Tarn/model/AppModel.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// The folder in which servers are seen hears of them at the same time as we do, and may need a
/// moment to show them.
constexpr std::chrono::seconds moment(1);

}  // namespace

ServerMounts::ServerMounts(AppModel& app, QDBusConnection bus, QObject* parent)
    : QObject(parent), app_(app) {
    again_.setSingleShot(true);
    again_.setInterval(moment);
    connect(&again_, &QTimer::timeout, this, [this] { app_.refreshVolumes(); });
    for (const QString& change : {u"Mounted"_s, u"Unmounted"_s})
        bus.connect(u"org.gtk.vfs.Daemon"_s, u"/org/gtk/vfs/mounttracker"_s,
                    u"org.gtk.vfs.MountTracker"_s, change, this, SLOT(look()));
}

void ServerMounts::look() {
    app_.refreshVolumes();
    again_.start();
}

}  // namespace tarn
