#include "Tarn/model/VolumeProbe.h"

#include <map>
#include <memory>
#include <utility>

#include <QtCore/QTimer>

#include "Tarn/model/MainThread.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

using Queues = std::map<URL, std::unique_ptr<SerialQueue>>;

/// One queue per mount point, kept until the process ends and then left alone: waiting for one
/// whose server is dead would keep the program from quitting.
SerialQueue& queueFor(const URL& mountPoint) {
    static auto* queues = new Guarded<Queues>;
    auto held = queues->lock();
    auto& queue = (*held)[mountPoint];
    if (!queue) queue = std::make_unique<SerialQueue>("tarn.volume");
    return *queue;
}

}  // namespace

VolumeProbe::VolumeProbe(QObject* parent) : QObject(parent) {}

void VolumeProbe::ask(const URL& mountPoint) {
    const auto volumes = Platform::current().volumes;
    if (!volumes || !waiting_.insert(mountPoint).second) return;
    queueFor(mountPoint).run([volumes, mountPoint, self = QPointer(this)] {
        const auto space = volumes->space(mountPoint);
        MainThread::post(self, [mountPoint, space](VolumeProbe& probe) {
            probe.waiting_.erase(mountPoint);
            emit probe.answered(mountPoint, space);
        });
    });
    QTimer::singleShot(deadline, this, [this, mountPoint] {
        if (waiting_.contains(mountPoint)) emit silent(mountPoint);
    });
}

}  // namespace tarn
