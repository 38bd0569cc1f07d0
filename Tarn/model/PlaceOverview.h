#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <QtCore/QAbstractListModel>
#include <QtCore/QTimer>

#include "Tarn/model/TagColors.h"
#include "Tarn/model/records/Location.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// One tag or one source, and how many files there are of it.
struct OverviewRow {
    Location location;
    std::int64_t count = 0;
    std::int64_t bytes = 0;  ///< Of sources.
    TagColor color = TagColor::none;
    bool isApp = false;  ///< A source that is no website.
    bool operator==(const OverviewRow&) const = default;
};

/// All tags in use, the standard ones first, or all sources, the one with most files first, each
/// with its number of files below the home folder.
///
/// Main thread only. Files are looked at on the pool; rows stay until the new ones are there.
class PlaceOverview final : public QAbstractListModel {
    Q_OBJECT
public:
    PlaceOverview(TaskPool& pool, TagColors& colors, QObject* parent = nullptr);
    ~PlaceOverview() override;

    /// `place` is one of `tags` and `sources`; anything else ends it and empties the rows.
    void show(Location::Case place);
    void refresh();
    /// Files have come: the sources are counted again, once for a burst.
    void filesArrived();
    bool isLoading() const { return isLoading_; }

    const OverviewRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name; for assistive tools with the number of files.
    QVariant data(const QModelIndex& index, int role) const override;
    /// “12 items”, and for sources how large they are.
    QString detail(const OverviewRow& row) const;

signals:
    /// isLoading has changed, or the rows have.
    void changed();

private:
    void take(std::vector<OverviewRow> rows);

    TaskPool& pool_;
    TagColors& colors_;
    Location::Case place_ = Location::Case::home;
    std::vector<OverviewRow> rows_;
    bool isLoading_ = false;
    std::uint64_t generation_ = 0;
    CancelToken token_;
    QTimer arrivalTimer_;
};

}  // namespace tarn
