#pragma once

#include <optional>
#include <string_view>

#include <QtCore/QAbstractTableModel>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include "Tarn/model/ListColumns.h"
#include "Tarn/model/PaneRows.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// The rows of one pane as views read them.
///
/// Main thread only. Rows are replaced as a whole by rows that were sorted elsewhere, in constant
/// time; texts are made when a view asks for them.
class PaneItems final : public QAbstractTableModel {
    Q_OBJECT
public:
    /// Sources are read on `pool`.
    explicit PaneItems(TaskPool& pool, QObject* parent = nullptr);

    void show(SharedRows rows);
    const SharedRows& rows() const { return rows_; }
    int count() const { return static_cast<int>(rows_->size()); }
    bool isEmpty() const { return rows_->size() == 0; }
    /// `row` is in range.
    const FileItem& item(int row) const { return rows_->item(static_cast<std::size_t>(row)); }
    /// How many unfolded folders the row lies in.
    int depth(int row) const {
        return static_cast<int>(rows_->depth(static_cast<std::size_t>(row)));
    }
    std::optional<int> row(const URL& url) const;

    /// The first row at or after `from`, going round, whose name begins with `prefix`, case and
    /// accents aside.
    std::optional<int> rowWithPrefix(std::string_view prefix, int from) const;

    /// The name for showing: valid text in one line.
    static QString displayName(const FileItem& item);
    /// The field that a click on a column's header sorts by; absent for `folder`.
    static std::optional<SortField> sortField(PaneColumn column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// The text of a cell; for assistive tools "NAME, KIND" of the row.
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QString text(const FileItem& item, PaneColumn column) const;
    /// Empty until it was read, which is asked for.
    QString source(const FileItem& item) const;
    void readSources();

    TaskPool& pool_;
    mutable std::vector<FileItem> unread_;  ///< Rows whose source someone wants to see.
    mutable QTimer readTimer_;
    SharedRows rows_;
};

}  // namespace tarn
