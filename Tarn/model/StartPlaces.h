#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "Tarn/model/VolumeProbe.h"
#include "Tarn/model/records/Location.h"

namespace tarn {

class AppModel;

/// A place that the start screen offers.
struct StartPlace {
    QString title;
    QString detail;                  ///< Where it lies, or how full it is; may be empty.
    std::string symbol;              ///< Name of its icon.
    Location location;               ///< Of all but workspaces.
    std::optional<UUID> workspace;   ///< Opens several tabs.
    std::optional<double> fullness;  ///< Of a volume that has answered: 0 empty, 1 full.
    bool operator==(const StartPlace&) const = default;
};

/// Where one may want to begin: folders visited lately, workspaces, favourites, the library, the
/// volumes.
///
/// Main thread only. Whether a folder is still there is looked up on the pool, except on servers,
/// which might not answer; volumes are asked on threads of their own.
class StartPlaces final : public QObject {
    Q_OBJECT
public:
    explicit StartPlaces(AppModel& app, QObject* parent = nullptr);
    ~StartPlaces() override;

    /// Looks again at what was visited and what is mounted.
    void refresh();

    /// The last first, without the home folder, at most mostRecents.
    const std::vector<StartPlace>& recents() const { return recents_; }
    const std::vector<StartPlace>& workspaces() const { return workspaces_; }
    const std::vector<StartPlace>& favorites() const { return favorites_; }
    const std::vector<StartPlace>& library() const { return library_; }
    const std::vector<StartPlace>& volumes() const { return volumes_; }

    static constexpr std::size_t mostRecents = 8;

signals:
    void changed();

private:
    void showWorkspaces();
    void showFavorites();
    void showVolumes();
    void setSpace(const URL& mountPoint, const QString& detail, std::optional<double> fullness);

    AppModel& app_;
    std::uint64_t generation_ = 0;  ///< Of the look-up whose answer is awaited.
    std::vector<StartPlace> recents_;
    std::vector<StartPlace> workspaces_;
    std::vector<StartPlace> favorites_;
    std::vector<StartPlace> library_;
    std::vector<StartPlace> volumes_;
    VolumeProbe probe_;
};

}  // namespace tarn
