#include "Tarn/model/SidebarModel.h"

#include <algorithm>
#include <utility>

#include <QtCore/QCoreApplication>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

SidebarRow heading(const QString& title) {
    SidebarRow row;
    row.kind = SidebarRow::Kind::heading;
    row.title = title;
    return row;
}

SidebarRow place(const QString& title, std::string_view symbol, const URL& url) {
    SidebarRow row;
    row.title = title;
    row.symbol = symbol;
    row.location = Location::folder(url);
    return row;
}

}  // namespace

SidebarModel::SidebarModel(QObject* parent) : QAbstractListModel(parent) {
    connect(&probe_, &VolumeProbe::answered, this,
            [this](const URL& mountPoint, const std::optional<VolumeSpace>& space) {
                setAnswer(mountPoint, space ? SidebarRow::Answer::ready : SidebarRow::Answer::none,
                          space.value_or(VolumeSpace{}));
            });
    connect(&probe_, &VolumeProbe::silent, this, [this](const URL& mountPoint) {
        setAnswer(mountPoint, SidebarRow::Answer::silent, {});
    });
    if (const auto& volumes = Platform::current().volumes) {
        mountWatch_ = volumes->observe([self = QPointer(this)] {
            MainThread::post(self, [](SidebarModel& model) { model.refresh(); });
        });
    }
    // Home is there at once; the rest follows when it is known to exist.
    rebuild({true}, {});
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
    TaskPool::shared().run([generation, folders = std::move(folders), self = QPointer(this)] {
        const FileSystem& files = *Platform::current().files;
        std::vector<bool> exists;
        for (const URL& folder : folders) {
            const auto facts = files.attributes(folder, Links::follow);
            // A well-known folder that is set to the home folder itself means "none".
            exists.push_back(facts && facts->type == FileType::directory &&
                             (exists.empty() || folder != folders.front()));
        }
        exists.front() = true;
        auto volumes = DriveService::volumes();
        MainThread::post(self, [generation, exists = std::move(exists),
                                volumes = std::move(volumes)](SidebarModel& model) mutable {
            if (generation == model.generation_) model.rebuild(exists, std::move(volumes));
        });
    });
}

void SidebarModel::rebuild(const std::vector<bool>& exists, std::vector<Volume> volumes) {
    std::vector<SidebarRow> rows;
    rows.push_back(heading(tr("Folders")));
    const auto folders = wellKnownFolders();
    for (std::size_t i = 0; i < folders.size() && i < exists.size(); ++i)
        if (exists[i])
            rows.push_back(place(tr(folders[i].title), folders[i].symbol, folders[i].url));
    rows.push_back(heading(tr("Locations")));
    std::vector<URL> mounted;
    for (const Volume& volume : volumes) {
        SidebarRow row = place(displayText(volume.name), volume.symbol(), volume.url);
        row.kind = SidebarRow::Kind::volume;
        row.answer = SidebarRow::Answer::waiting;
        // What is known stays shown until the new answer comes.
        const auto before = std::find_if(rows_.begin(), rows_.end(), [&row](const SidebarRow& old) {
            return old.kind == row.kind && old.location == row.location;
        });
        if (before != rows_.end()) {
            row.answer = before->answer;
            row.total = before->total;
            row.available = before->available;
        }
        mounted.push_back(volume.url);
        rows.push_back(std::move(row));
    }
    rows.push_back(place(tr("Trash"), "trash", Paths::trash()));
    if (rows != rows_) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    for (const URL& volume : mounted) probe_.ask(volume);
    emit refreshed();
}

void SidebarModel::setAnswer(const URL& mountPoint, SidebarRow::Answer answer,
                             const VolumeSpace& space) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        SidebarRow& row = rows_[i];
        if (row.kind != SidebarRow::Kind::volume || row.location.url != mountPoint) continue;
        row.answer = answer;
        row.total = space.total;
        row.available = space.free;
        const QModelIndex changed = index(static_cast<int>(i));
        emit dataChanged(changed, changed);
    }
}

std::optional<int> SidebarModel::indexOf(const Location& location) const {
    const Location wanted = location.canonical();
    // The last one wins: a volume that is also a well-known folder is shown as the folder.
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].kind != SidebarRow::Kind::heading && rows_[i].location.canonical() == wanted)
            return static_cast<int>(i);
    return std::nullopt;
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
            return spaceSentence(shown);
        case Qt::ToolTipRole: {
            if (shown.kind == SidebarRow::Kind::heading) return {};
            const QString path = displayText(Paths::abbreviate(shown.location.url));
            const QString space = spaceSentence(shown);
            return space.isEmpty() ? path : path + u'\n' + space;
        }
        case isHeadingRole:
            return shown.kind == SidebarRow::Kind::heading;
        default:
            return {};
    }
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || row(index.row()).kind == SidebarRow::Kind::heading)
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QString spaceSentence(const SidebarRow& row) {
    switch (row.answer) {
        case SidebarRow::Answer::silent:
            return QCoreApplication::translate("tarn::SidebarModel", "Not responding");
        case SidebarRow::Answer::ready:
            if (row.total <= 0) return {};
            return QCoreApplication::translate("tarn::SidebarModel", "%1 of %2 available")
                .arg(displayText(Format::bytes(row.available)),
                     displayText(Format::bytes(row.total)));
        case SidebarRow::Answer::none:
        case SidebarRow::Answer::waiting:
            return {};
    }
    return {};
}

}  // namespace tarn
