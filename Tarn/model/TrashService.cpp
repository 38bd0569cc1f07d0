#include "Tarn/model/TrashService.h"

#include <chrono>
#include <utility>

#include "Tarn/model/Counts.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/ops/TrashContents.h"

namespace tarn {
namespace {

constexpr double latency = 1;  // Seconds; emptying elsewhere changes the folder thousands of times.
constexpr std::chrono::milliseconds betweenReports(100);

}  // namespace

TrashService::TrashService(QObject* parent) : QObject(parent) {}

TrashService::~TrashService() {
    measureToken_.cancel();
    emptyToken_.cancel();
}

void TrashService::measure() {
    if (isMeasuring_) {
        measureAgain_ = true;
        return;
    }
    isMeasuring_ = true;
    emit changed();
    queue_.run([this, self = QPointer(this), token = measureToken_] {
        // Before it is measured, so that nothing is missed. A disk may be slow to answer.
        watch(TrashContents::watched());
        const Trash::Measured measured = TrashContents::measure(token);
        MainThread::post(self, [measured](TrashService& service) { service.takeOver(measured); });
    });
}

void TrashService::watch(const std::vector<URL>& folders) {
    if (watcher_ && watcher_->watched() == folders) return;
    if (!watcher_)
        watcher_ = std::make_unique<FolderWatcher>(
            [self = QPointer(this)](const std::vector<std::string>&) {
                MainThread::post(self, [](TrashService& service) { service.measure(); });
            });
    watcher_->watch(folders, latency, WatchDepth::children);
}

void TrashService::takeOver(const Trash::Measured& measured) {
    isMeasuring_ = false;
    isUnreadable_ = measured.isUnreadable;
    bytes_ = measured.bytes;
    items_ = measured.items;
    emit changed();
    if (std::exchange(measureAgain_, false)) measure();
}

void TrashService::empty() {
    if (isEmptying_) return;
    isEmptying_ = true;
    deletedFiles_ = 0;
    emptyToken_ = CancelToken();
    emit changed();
    queue_.run([self = QPointer(this), token = emptyToken_] {
        std::int64_t files = 0;
        auto last = std::chrono::steady_clock::now();
        const Trash::Emptied result = TrashContents::empty(token, [&] {
            ++files;
            const auto time = std::chrono::steady_clock::now();
            if (time - last < betweenReports) return;
            last = time;
            MainThread::post(self, [files](TrashService& service) {
                service.deletedFiles_ = files;
                emit service.changed();
            });
        });
        MainThread::post(self, [result, wasCancelled = token.isCancelled()](TrashService& service) {
            service.ended(result, wasCancelled);
        });
    });
}

void TrashService::ended(const Trash::Emptied& result, bool wasCancelled) {
    isEmptying_ = false;
    emit changed();
    if (result.failed > 0) {
        emit emptyingFailed(tr("Couldn’t empty the Trash. %1 couldn’t be deleted.")
                                .arg(Counts::items(static_cast<std::int64_t>(result.failed))));
    } else if (!wasCancelled) {
        emit emptied(tr("Trash emptied"));
    }
    measure();
}

}  // namespace tarn
