#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QAbstractTableModel>

#include "TarnCore/archive/ArchiveEntry.h"

namespace tarn {

/// The members of an archive as the rows of a list: each folder before what is in it, folders
/// first, by name. Main thread only; the rows are put in order elsewhere.
class PreviewMembers final : public QAbstractTableModel {
    Q_OBJECT
public:
    struct Member {
        ArchiveEntry entry;
        int depth = 0;  ///< Folders that it is in.
    };
    using Members = std::shared_ptr<const std::vector<Member>>;
    enum Column { name, size, columnCountOfAll };

    /// Takes a while for a large archive; from any thread.
    static Members arranged(const std::vector<ArchiveEntry>& entries);

    explicit PreviewMembers(QObject* parent = nullptr);
    void show(Members members);
    /// `row` is in range.
    const Member& member(int row) const { return (*members_)[static_cast<std::size_t>(row)]; }
    int files() const { return files_; }
    std::int64_t bytes() const { return bytes_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Members members_;
    int files_ = 0;
    std::int64_t bytes_ = 0;  ///< Unpacked.
};

}  // namespace tarn
