#pragma once

#include <optional>
#include <set>

#include <QtCore/QObject>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// Asks mounted volumes how full they are, each on a thread of its own: a dead server holds its
/// question for as long as it likes, and neither the window nor another volume waits for it.
/// Main thread only.
class VolumeProbe final : public QObject {
    Q_OBJECT
public:
    static constexpr int deadline = 2000;  ///< Milliseconds until a volume counts as silent.

    explicit VolumeProbe(QObject* parent = nullptr);

    /// Does nothing while the same volume is still being asked.
    void ask(const URL& mountPoint);

signals:
    /// Also after silent(), when the answer comes at last.
    void answered(const tarn::URL& mountPoint, const std::optional<tarn::VolumeSpace>& space);
    void silent(const tarn::URL& mountPoint);

private:
    std::set<URL> waiting_;
};

}  // namespace tarn
