#include "Tarn/model/SidebarModel.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/ServerAddress.h"
#include "Tarn/model/VolumeEjector.h"
#include "Tarn/model/records/Favorites.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr SidebarSection sections[] = {SidebarSection::favorites, SidebarSection::smartFolders,
                                       SidebarSection::tags, SidebarSection::volumes,
                                       SidebarSection::network};
/// Beside the standard tags; all of them have a page.
constexpr std::size_t mostOwnTags = 12;

SidebarRow place(const QString& title, std::string_view symbol, const Location& location,
                 SidebarSection section) {
    SidebarRow row;
    row.section = section;
    row.title = title;
    row.symbol = symbol;
    row.location = location;
    return row;
}

}  // namespace

SidebarModel::SidebarModel(AppModel& app, QObject* parent) : QAbstractListModel(parent), app_(app) {
    connect(&probe_, &VolumeProbe::answered, this,
            [this](const URL& mountPoint, const std::optional<VolumeSpace>& space) {
                setAnswer(mountPoint, space ? SidebarRow::Answer::ready : SidebarRow::Answer::none,
                          space.value_or(VolumeSpace{}));
            });
    connect(&probe_, &VolumeProbe::silent, this, [this](const URL& mountPoint) {
        setAnswer(mountPoint, SidebarRow::Answer::silent, {});
    });
    connect(&app.lists(), &UserLists::favoritesChanged, this, &SidebarModel::rebuild);
    connect(&app.lists(), &UserLists::smartFoldersChanged, this, &SidebarModel::rebuild);
    connect(&app.lists(), &UserLists::serversChanged, this, &SidebarModel::rebuild);
    connect(&app.tagColors(), &TagColors::changed, this, &SidebarModel::rebuild);
    connect(&app.trash(), &TrashService::changed, this, &SidebarModel::rebuild);
    connect(&app.ejector(), &VolumeEjector::changed, this, &SidebarModel::rebuild);
    connect(&app, &AppModel::volumesChanged, this, [this] {
        rebuild();
        askVolumes();
    });
    rebuild();
    refresh();
}

SidebarModel::~SidebarModel() = default;

std::vector<SidebarModel::Folder> SidebarModel::wellKnownFolders() {
    return {{QT_TR_NOOP("Home"), "house", Paths::home()},
            {QT_TR_NOOP("Desktop"), "menubar.dock.rectangle", Paths::desktop()},
            {QT_TR_NOOP("Documents"), "doc.text", Paths::documents()},
            {QT_TR_NOOP("Downloads"), "arrow.down.circle", Paths::downloads()},
            {QT_TR_NOOP("Pictures"), "photo", Paths::pictures()},
            {QT_TR_NOOP("Movies"), "film", Paths::movies()},
            {QT_TR_NOOP("Music"), "music.note", Paths::music()}};
}

void SidebarModel::refresh() {
    const auto generation = ++generation_;
    std::vector<URL> folders;
    for (const Folder& folder : wellKnownFolders()) folders.push_back(folder.url);
    app_.pool().run([generation, folders = std::move(folders), self = QPointer(this)] {
        const FileSystem& files = *Platform::current().files;
        std::vector<bool> exists;
        for (const URL& folder : folders) {
            const auto facts = files.attributes(folder, Links::follow);
            // A well-known folder that is set to the home folder itself means "none".
            exists.push_back(facts && facts->type == FileType::directory &&
                             (exists.empty() || folder != folders.front()));
        }
        exists.front() = true;
        MainThread::post(self, [generation, exists = std::move(exists)](SidebarModel& model) {
            if (generation != model.generation_) return;
            model.exists_ = exists;
            model.rebuild();
        });
    });
    app_.refreshVolumes();
    askVolumes();
}

void SidebarModel::askVolumes() {
    for (const Volume& volume : app_.volumes()) probe_.ask(volume.url);
}

// --- Rows

std::vector<SidebarRow> SidebarModel::favoriteRows() const {
    std::vector<SidebarRow> rows;
    const auto folders = wellKnownFolders();
    for (std::size_t i = 0; i < folders.size() && i < exists_.size(); ++i) {
        // One that is a favourite as well stands where the user has put it.
        if (exists_[i] && !app_.lists().favorite(folders[i].url))
            rows.push_back(place(tr(folders[i].title), folders[i].symbol,
                                 Location::folder(folders[i].url), SidebarSection::favorites));
    }
    for (const Favorite& favorite : app_.lists().favorites()) {
        const Location location = Location::folder(Favorites::folder(favorite));
        SidebarRow row = place(displayText(Favorites::title(favorite)), location.symbol(), location,
                               SidebarSection::favorites);
        row.kind = SidebarRow::Kind::favorite;
        row.id = favorite.id;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SidebarRow> SidebarModel::smartFolderRows() const {
    std::vector<SidebarRow> rows;
    for (const SmartFolder& folder : app_.lists().smartFolders()) {
        const Location location = Location::smartFolder(folder.id);
        SidebarRow row = place(placeText(location, folder.name), folder.symbol, location,
                               SidebarSection::smartFolders);
        row.kind = SidebarRow::Kind::smartFolder;
        row.id = folder.id;
        row.isBuiltIn = folder.builtIn;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SidebarRow> SidebarModel::tagRows() const {
    std::vector<SidebarRow> rows;
    std::vector<FinderTag> tags = app_.tagColors().known();
    tags.resize(std::min(tags.size(), FinderTag::standard().size() + mostOwnTags));
    for (const FinderTag& tag : tags) {
        SidebarRow row =
            place(tagText(tag.name), "tag", Location::tag(tag.name), SidebarSection::tags);
        row.kind = SidebarRow::Kind::tag;
        row.tag = tag;
        rows.push_back(std::move(row));
    }
    rows.push_back(place(tr("All Tags"), "tag", Location::tags(), SidebarSection::tags));
    return rows;
}

std::vector<SidebarRow> SidebarModel::volumeRows(bool areNetwork) const {
    std::vector<SidebarRow> rows;
    for (const Volume& volume : app_.volumes()) {
        if (volume.isNetwork != areNetwork) continue;
        SidebarRow row =
            place(displayText(volume.name), volume.symbol(), Location::folder(volume.url),
                  areNetwork ? SidebarSection::network : SidebarSection::volumes);
        row.kind = SidebarRow::Kind::volume;
        row.volume = volume;
        row.isEjecting = app_.ejector().isEjecting(volume.url);
        row.answer = SidebarRow::Answer::waiting;
        if (const auto known = spaces_.find(volume.url); known != spaces_.end()) {
            row.answer = known->second.answer;
            row.total = known->second.space.total;
            row.available = known->second.space.free;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SidebarRow> SidebarModel::networkRows() const {
    std::vector<SidebarRow> rows = volumeRows(true);
    const auto isConnected = [&rows](const QString& title) {
        return std::any_of(rows.begin(), rows.end(), [&title](const SidebarRow& row) {
            return row.title.compare(title, Qt::CaseInsensitive) == 0;
        });
    };
    std::vector<SidebarRow> servers;
    for (const std::string& typed : app_.lists().servers()) {
        const auto address = DriveService::serverURL(typed);
        if (!address) continue;
        const QString title = displayText(ServerAddress::title(*address));
        // The desktop names what is connected in the same way.
        if (isConnected(title)) continue;
        SidebarRow row = place(title, "server.rack", {}, SidebarSection::network);
        row.kind = SidebarRow::Kind::server;
        row.address = typed;
        servers.push_back(std::move(row));
    }
    rows.insert(rows.end(), servers.begin(), servers.end());
    SidebarRow connect = place(tr("Connect to Server…"), "network", {}, SidebarSection::network);
    connect.kind = SidebarRow::Kind::connect;
    rows.push_back(std::move(connect));
    return rows;
}

SidebarRow SidebarModel::trashRow() const {
    SidebarRow row =
        place(tr("Trash"), "trash", Location::folder(Paths::trash()), SidebarSection::none);
    row.kind = SidebarRow::Kind::trash;
    const TrashService& trash = app_.trash();
    if (trash.isEmptying())
        row.detail = tr("Emptying…");
    else if (trash.bytes() && trash.items() == 0 && !trash.isUnreadable())
        row.detail = tr("Empty");
    else if (trash.bytes())
        row.detail = tr("%1 · %2", "items and size of the Trash")
                         .arg(Counts::items(trash.items()), Counts::bytes(*trash.bytes()));
    return row;
}

void SidebarModel::rebuild() {
    std::vector<SidebarRow> rows;
    for (const SidebarSection section : sections) {
        SidebarRow heading;
        heading.kind = SidebarRow::Kind::heading;
        heading.section = section;
        heading.title = SidebarSections::title(section);
        heading.isFolded = isFolded(section);
        std::vector<SidebarRow> places;
        switch (section) {
            case SidebarSection::favorites:
                places = favoriteRows();
                break;
            case SidebarSection::smartFolders:
                places = smartFolderRows();
                break;
            case SidebarSection::tags:
                places = tagRows();
                break;
            case SidebarSection::volumes:
                places = volumeRows(false);
                break;
            case SidebarSection::network:
                places = networkRows();
                break;
            case SidebarSection::none:
                break;
        }
        if (places.empty()) continue;
        rows.push_back(heading);
        if (!heading.isFolded)
            rows.insert(rows.end(), std::make_move_iterator(places.begin()),
                        std::make_move_iterator(places.end()));
    }
    rows.push_back(trashRow());
    show(std::move(rows));
}

void SidebarModel::show(std::vector<SidebarRow> rows) {
    const auto same = [](const SidebarRow& a, const SidebarRow& b) { return a.isSame(b); };
    const auto [oldFirst, newFirst] =
        std::mismatch(rows_.begin(), rows_.end(), rows.begin(), rows.end(), same);
    const auto first = static_cast<int>(oldFirst - rows_.begin());
    const auto [oldLast, newLast] =
        std::mismatch(rows_.rbegin(), std::make_reverse_iterator(oldFirst), rows.rbegin(),
                      std::make_reverse_iterator(newFirst), same);
    const auto gone = static_cast<int>(oldLast.base() - oldFirst);
    const auto come = static_cast<int>(newLast.base() - newFirst);
    if (gone > 0) {
        beginRemoveRows({}, first, first + gone - 1);
        rows_.erase(oldFirst, oldLast.base());
        endRemoveRows();
    }
    if (come > 0) {
        beginInsertRows({}, first, first + come - 1);
        rows_.insert(rows_.begin() + first, newFirst, newLast.base());
        endInsertRows();
    }
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i] == rows[i]) continue;
        rows_[i] = std::move(rows[i]);
        const QModelIndex changed = index(static_cast<int>(i));
        emit dataChanged(changed, changed);
    }
    if (gone > 0 || come > 0) emit refreshed();
}

void SidebarModel::setAnswer(const URL& mountPoint, SidebarRow::Answer answer,
                             const VolumeSpace& space) {
    spaces_[mountPoint] = {answer, space};
    rebuild();
}

// --- Folding

void SidebarModel::setFolded(SidebarSection section, bool isFolded) {
    if (section == SidebarSection::none || isFolded == this->isFolded(section)) return;
    if (isFolded)
        folded_.insert(section);
    else
        folded_.erase(section);
    rebuild();
    emit foldedChanged();
}

std::vector<std::string> SidebarModel::foldedNames() const {
    std::vector<std::string> names;
    for (const SidebarSection section : folded_) names.emplace_back(SidebarSections::name(section));
    return names;
}

void SidebarModel::setFoldedNames(const std::vector<std::string>& names) {
    folded_.clear();
    for (const SidebarSection section : sections)
        if (std::find(names.begin(), names.end(), SidebarSections::name(section)) != names.end())
            folded_.insert(section);
    rebuild();
}

// --- Looking up

std::optional<int> SidebarModel::indexOf(const Location& location) const {
    const Location wanted = location.canonical();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].isPlace() && rows_[i].location.canonical() == wanted)
            return static_cast<int>(i);
    return std::nullopt;
}

std::optional<int> SidebarModel::indexOf(const SidebarRow& row) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [&row](const SidebarRow& one) { return one.isSame(row); });
    if (found == rows_.end()) return std::nullopt;
    return static_cast<int>(found - rows_.begin());
}

std::size_t SidebarModel::position(int index) const {
    const SidebarRow& wanted = row(index);
    return static_cast<std::size_t>(
        std::count_if(rows_.begin(), rows_.begin() + index, [&wanted](const SidebarRow& one) {
            return one.section == wanted.section && one.isMovable();
        }));
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const SidebarRow& shown = row(index.row());
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return shown.title;
        case Qt::AccessibleDescriptionRole:
            return shown.note();
        case Qt::ToolTipRole: {
            const QString note = shown.note();
            if (shown.kind == SidebarRow::Kind::heading) return {};
            if (shown.kind == SidebarRow::Kind::server)
                return displayText(shown.address) + u'\n' + note;
            if (!shown.location.isFolder()) return note;
            const QString path = displayText(Paths::abbreviate(shown.location.url));
            return note.isEmpty() ? path : path + u'\n' + note;
        }
        case isHeadingRole:
            return shown.kind == SidebarRow::Kind::heading;
        default:
            return {};
    }
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

}  // namespace tarn
