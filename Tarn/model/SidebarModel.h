#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QAbstractListModel>

#include "Tarn/model/DriveService.h"
#include "Tarn/model/VolumeProbe.h"
#include "Tarn/model/records/Location.h"

namespace tarn {

/// One row of the sidebar: a heading, or a place to go to.
struct SidebarRow {
    enum class Kind { heading, place, volume };
    enum class Answer { none, waiting, ready, silent };

    Kind kind = Kind::place;
    QString title;
    std::string symbol;
    Location location;
    /// Of a volume: whether it has said how full it is.
    Answer answer = Answer::none;
    std::int64_t total = 0;      ///< Bytes.
    std::int64_t available = 0;  ///< Bytes.
    bool operator==(const SidebarRow&) const = default;
};

/// The places of the sidebar: the user's folders that exist, the volumes, the Trash.
///
/// Main thread only. Folders are looked up on the pool and volumes asked on threads of their own;
/// rows appear and change as the answers come.
class SidebarModel final : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { isHeadingRole = Qt::UserRole };

    explicit SidebarModel(QObject* parent = nullptr);
    ~SidebarModel() override;

    /// Looks again at what exists and what is mounted; volumes tell of changes by themselves.
    void refresh();

    const SidebarRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    /// The row that shows a location: the place itself, else absent.
    std::optional<int> indexOf(const Location& location) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// The places that exist are known now, or have changed.
    void refreshed();

private:
    struct Folder {
        const char* title;
        std::string_view symbol;
        URL url;
    };
    static std::vector<Folder> wellKnownFolders();
    void rebuild(const std::vector<bool>& exists, std::vector<Volume> volumes);
    void setAnswer(const URL& mountPoint, SidebarRow::Answer answer, const VolumeSpace& space);

    std::vector<SidebarRow> rows_;
    std::uint64_t generation_ = 0;  ///< Of the refresh whose answer is awaited.
    VolumeProbe probe_;
    std::shared_ptr<void> mountWatch_;
};

/// “213 GB of 512 GB available”, “Not responding”; empty when nothing is known.
QString spaceSentence(const SidebarRow& row);

}  // namespace tarn
