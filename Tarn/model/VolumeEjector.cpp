#include "Tarn/model/VolumeEjector.h"

#include <utility>

#include <QtCore/QPointer>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/VolumeQueues.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

VolumeEjector::Ended ejected(const URL& volume, bool force) {
    VolumeEjector::Ended ended;
    ended.result = DriveService::eject(volume, force);
    if (ended.result.outcome != EjectResult::Outcome::busy) return ended;
    try {
        ended.processes = DriveService::blockingProcesses(volume);
    } catch (const Error& error) {
        ended.unknown = error.what();
    }
    return ended;
}

}  // namespace

std::string VolumeEjector::Ended::message() const {
    return unknown.empty() ? result.message : result.message + " " + unknown;
}

VolumeEjector::VolumeEjector(AppModel& app) : app_(app) {}

bool VolumeEjector::eject(const Volume& volume, bool force,
                          std::function<void(const Ended&)> then) {
    if (!ejecting_.insert(volume.url).second) return false;
    emit changed();
    VolumeQueues::ejecting(volume.url)
        .run([url = volume.url, force, then = std::move(then), self = QPointer(this)] {
            MainThread::post(self,
                             [url, ended = ejected(url, force), then](VolumeEjector& ejector) {
                                 ejector.ejecting_.erase(url);
                                 if (ended.result.outcome == EjectResult::Outcome::ejected)
                                     ejector.leave(url);
                                 ejector.app_.refreshVolumes();
                                 emit ejector.changed();
                                 then(ended);
                             });
        });
    return true;
}

void VolumeEjector::leave(const URL& volume) {
    for (WindowModel* window : app_.windows()) {
        for (const auto& pane : window->panes()) {
            const Location& shown = pane->location();
            const bool isThere =
                (shown.isFolder() || shown.isArchive()) && shown.url.isInside(volume);
            if (isThere) pane->navigate(Location::folder(Paths::home()));
        }
    }
}

void VolumeEjector::eject(WindowModel& window, const Volume& volume) {
    eject(volume, false, [volume, target = QPointer(&window)](const Ended& ended) {
        if (!target) return;
        if (ended.result.outcome == EjectResult::Outcome::busy) {
            WindowSheet sheet;
            sheet.which = WindowSheet::Which::eject;
            sheet.volume = volume;
            sheet.processes = ended.processes;
            sheet.message = ended.message();
            return target->showSheet(std::move(sheet));
        }
        Toast toast;
        toast.isError = ended.result.outcome == EjectResult::Outcome::failed;
        toast.symbol = toast.isError ? "exclamationmark.triangle" : "eject";
        toast.message = toast.isError ? coreSentence(ended.result.message)
                                      : tr("Ejected “%1”").arg(displayText(volume.name));
        target->showToast(std::move(toast));
    });
}

}  // namespace tarn
