#include "Tarn/model/StartPlaces.h"

#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// How many of the visited folders are looked at; some of them will have gone.
constexpr std::size_t mostLookedAt = 24;

StartPlace placeOf(const URL& folder) {
    StartPlace place;
    place.location = Location::folder(folder);
    place.title = folderText(folder);
    place.detail = displayText(Paths::abbreviate(folder.parent()));
    place.symbol = place.location.symbol();
    return place;
}

/// Of those, the ones that are still folders; those on servers without being asked.
std::vector<URL> existing(const std::vector<URL>& folders) {
    const Platform& platform = Platform::current();
    const std::vector<Mount> mounts =
        platform.volumes ? platform.volumes->mounts() : std::vector<Mount>();
    std::vector<URL> found;
    for (const URL& folder : folders) {
        const Mount* mount = mountHolding(mounts, folder);
        const auto facts = mount && mount->isNetwork
                               ? std::nullopt
                               : platform.files->attributes(folder, Links::follow);
        if ((mount && mount->isNetwork) || (facts && facts->type == FileType::directory))
            found.push_back(folder);
    }
    return found;
}

}  // namespace

StartPlaces::StartPlaces(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    for (const LibraryItem item : allLibraryItems) {
        StartPlace place;
        place.title = coreText(LibraryItems::title(item));
        place.symbol = LibraryItems::symbol(item);
        place.location = Location::library(item);
        library_.push_back(std::move(place));
    }
    connect(&app, &AppModel::volumesChanged, this, &StartPlaces::showVolumes);
    connect(&app.lists(), &UserLists::workspacesChanged, this, &StartPlaces::showWorkspaces);
    connect(&app.lists(), &UserLists::favoritesChanged, this, &StartPlaces::showFavorites);
    connect(&probe_, &VolumeProbe::answered, this,
            [this](const URL& mountPoint, const std::optional<VolumeSpace>& space) {
                if (!space || space->total <= 0) return setSpace(mountPoint, {}, std::nullopt);
                setSpace(mountPoint, tr("%1 available").arg(Counts::bytes(space->free)),
                         1 - static_cast<double>(space->free) / static_cast<double>(space->total));
            });
    connect(&probe_, &VolumeProbe::silent, this, [this](const URL& mountPoint) {
        setSpace(mountPoint, tr("Not responding"), std::nullopt);
    });
    showWorkspaces();
    showFavorites();
    showVolumes();
    refresh();
}

StartPlaces::~StartPlaces() = default;

void StartPlaces::refresh() {
    const auto generation = ++generation_;
    std::vector<URL> folders = app_.recentFolders();
    std::erase(folders, Paths::home());
    if (folders.size() > mostLookedAt) folders.resize(mostLookedAt);
    app_.pool().run([generation, folders = std::move(folders), self = QPointer(this)] {
        MainThread::post(self, [generation, found = existing(folders)](StartPlaces& places) {
            if (generation != places.generation_) return;
            std::vector<StartPlace> recents;
            for (const URL& folder : found)
                if (recents.size() < mostRecents) recents.push_back(placeOf(folder));
            if (recents == places.recents_) return;
            places.recents_ = std::move(recents);
            emit places.changed();
        });
    });
    for (const StartPlace& volume : volumes_) probe_.ask(volume.location.url);
}

void StartPlaces::showWorkspaces() {
    workspaces_.clear();
    for (const Workspace& workspace : app_.lists().workspaces()) {
        StartPlace place;
        place.title = displayText(workspace.name);
        place.detail = Counts::tabs(static_cast<std::int64_t>(workspace.tabs.size()));
        place.symbol = "rectangle.on.rectangle";
        place.workspace = workspace.id;
        workspaces_.push_back(std::move(place));
    }
    emit changed();
}

void StartPlaces::showFavorites() {
    favorites_.clear();
    for (const Favorite& favorite : app_.lists().favorites()) {
        const auto folder = JSONText::toPath(favorite.path);
        if (!folder) continue;
        StartPlace place = placeOf(*folder);
        if (favorite.displayName) place.title = displayText(*favorite.displayName);
        favorites_.push_back(std::move(place));
    }
    emit changed();
}

void StartPlaces::showVolumes() {
    std::vector<StartPlace> volumes;
    for (const Volume& volume : app_.volumes()) {
        StartPlace place;
        place.title = displayText(volume.name);
        place.symbol = volume.symbol();
        place.location = Location::folder(volume.url);
        // What is known stays shown until the new answer comes.
        const auto before = std::find_if(
            volumes_.begin(), volumes_.end(),
            [&place](const StartPlace& old) { return old.location == place.location; });
        if (before != volumes_.end()) {
            place.detail = before->detail;
            place.fullness = before->fullness;
        }
        volumes.push_back(std::move(place));
    }
    volumes_ = std::move(volumes);
    for (const StartPlace& volume : volumes_) probe_.ask(volume.location.url);
    emit changed();
}

void StartPlaces::setSpace(const URL& mountPoint, const QString& detail,
                           std::optional<double> fullness) {
    for (StartPlace& volume : volumes_) {
        if (volume.location.url != mountPoint) continue;
        volume.detail = detail;
        volume.fullness = fullness;
    }
    emit changed();
}

}  // namespace tarn
