#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QAbstractListModel>

#include "Tarn/model/SidebarRow.h"
#include "Tarn/model/VolumeProbe.h"

namespace tarn {

class AppModel;

/// The places of the sidebar: the user's folders that exist and favourites, smart folders, tags,
/// volumes, servers, and the Trash.
///
/// Main thread only; `app` outlives it. Folders are looked up on the pool and volumes asked on
/// threads of their own; rows appear and change as the answers come, and whenever one of the lists
/// changes. Rows that stay keep their indexes.
class SidebarModel final : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { isHeadingRole = Qt::UserRole };

    explicit SidebarModel(AppModel& app, QObject* parent = nullptr);
    ~SidebarModel() override;

    /// Looks again at what exists and what is mounted.
    void refresh();

    const SidebarRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    /// The first row that shows a location; absent when none does.
    std::optional<int> indexOf(const Location& location) const;
    /// Where a row stands now; absent when it has gone.
    std::optional<int> indexOf(const SidebarRow& row) const;
    /// How many rows of its kind and section stand above a row: its index in the list of favourites
    /// or of the user's smart folders.
    std::size_t position(int index) const;

    bool isFolded(SidebarSection section) const { return folded_.contains(section); }
    void setFolded(SidebarSection section, bool isFolded);
    /// By their names, for remembering.
    std::vector<std::string> foldedNames() const;
    void setFoldedNames(const std::vector<std::string>& names);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// Rows have come or gone.
    void refreshed();
    void foldedChanged();

private:
    struct Folder {
        const char* title;
        std::string_view symbol;
        URL url;
    };
    struct Space {
        SidebarRow::Answer answer = SidebarRow::Answer::waiting;
        VolumeSpace space;
    };
    static std::vector<Folder> wellKnownFolders();
    void rebuild();
    std::vector<SidebarRow> favoriteRows() const;
    std::vector<SidebarRow> smartFolderRows() const;
    std::vector<SidebarRow> tagRows() const;
    std::vector<SidebarRow> volumeRows(bool areNetwork) const;
    std::vector<SidebarRow> networkRows() const;
    SidebarRow trashRow() const;
    void show(std::vector<SidebarRow> rows);
    void askVolumes();
    void setAnswer(const URL& mountPoint, SidebarRow::Answer answer, const VolumeSpace& space);

    AppModel& app_;
    std::vector<SidebarRow> rows_;
    std::vector<bool> exists_{true};  ///< Of the well-known folders; home is there at once.
    std::map<URL, Space> spaces_;     ///< What is known stays shown until the new answer comes.
    std::set<SidebarSection> folded_;
    std::uint64_t generation_ = 0;  ///< Of the refresh whose answer is awaited.
    VolumeProbe probe_;
};

}  // namespace tarn
