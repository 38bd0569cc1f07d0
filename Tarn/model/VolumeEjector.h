#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/DriveService.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class AppModel;
class WindowModel;

/// Takes volumes off the machine.
///
/// Main thread only; each volume is ejected on a thread of its own, which waits for the disk. Panes
/// that show something of a volume go home once it is gone.
class VolumeEjector final : public QObject {
    Q_OBJECT
public:
    /// `app` owns it.
    explicit VolumeEjector(AppModel& app);

    struct Ended {
        EjectResult result;
        std::vector<BlockingProcess> processes;  ///< Of a busy one.
        std::string unknown;  ///< Why those are not known, as a finished sentence; or empty.
        /// All that is to be said of it.
        std::string message() const;
    };
    /// `then` hears how it ended. False while the volume is being ejected already.
    bool eject(const Volume& volume, bool force, std::function<void(const Ended&)> then);

    /// The same for a window: a message tells that it is done or could not be, and the eject sheet
    /// shows who uses a busy volume.
    void eject(WindowModel& window, const Volume& volume);

    bool isEjecting(const URL& volume) const { return ejecting_.contains(volume); }

signals:
    /// Volumes are being ejected now that were not before, or no longer.
    void changed();

private:
    void leave(const URL& volume);

    AppModel& app_;
    std::set<URL> ejecting_;
};

}  // namespace tarn
