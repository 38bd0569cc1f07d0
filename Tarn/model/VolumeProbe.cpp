#include "Tarn/model/VolumeProbe.h"

#include <QtCore/QTimer>

#include "Tarn/model/MainThread.h"
#include "Tarn/model/VolumeQueues.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

VolumeProbe::VolumeProbe(QObject* parent) : QObject(parent) {}

void VolumeProbe::ask(const URL& mountPoint) {
    const auto volumes = Platform::current().volumes;
    if (!volumes || !waiting_.insert(mountPoint).second) return;
    VolumeQueues::asking(mountPoint).run([volumes, mountPoint, self = QPointer(this)] {
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
