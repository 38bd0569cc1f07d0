#include "Tarn/model/PlaceOverview.h"

#include <limits>
#include <map>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/sources/SourceSummary.h"
#include "TarnCore/tags/TagWalk.h"

namespace tarn {
namespace {

/// Milliseconds; counting walks over all of the home folder, and files may come one by one.
constexpr int arrivalPause = 2000;

struct TagCount {
    TagColor color = TagColor::none;
    std::int64_t count = 0;
};
using TagCounts = std::map<std::string, TagCount>;

TagCounts countTags(const CancelToken& token) {
    Guarded<TagCounts> counts;
    TagWalk::walk([](const std::string&) { return true; }, {Paths::home()},
                  [&counts](const std::vector<TagWalk::Tagged>& found) {
                      const auto all = counts.lock();
                      for (const TagWalk::Tagged& file : found) {
                          for (const std::string& stored : file.stored) {
                              const FinderTag tag = FinderTag::parse(stored);
                              TagCount& count = (*all)[tag.name];
                              ++count.count;
                              if (count.color == TagColor::none) count.color = tag.color;
                          }
                      }
                  },
                  token);
    return std::move(*counts.lock());
}

std::vector<OverviewRow> sourceRows(const CancelToken& token) {
    constexpr auto any = std::numeric_limits<std::size_t>::max();
    std::vector<OverviewRow> rows;
    for (const SourceSummary& source :
         SourceSummaries::summarize({Paths::home()}, any, any, token)) {
        OverviewRow row;
        row.location = Location::source(source.name);
        row.count = source.count;
        row.bytes = source.bytes;
        row.isApp = source.isApp;
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace

PlaceOverview::PlaceOverview(TaskPool& pool, TagColors& colors, QObject* parent)
    : QAbstractListModel(parent), pool_(pool), colors_(colors) {
    arrivalTimer_.setSingleShot(true);
    arrivalTimer_.setInterval(arrivalPause);
    connect(&arrivalTimer_, &QTimer::timeout, this, &PlaceOverview::refresh);
}

PlaceOverview::~PlaceOverview() { token_.cancel(); }

void PlaceOverview::show(Location::Case place) {
    if (place != place_) {
        place_ = place;
        ++generation_;
        token_.cancel();
        take({});
    }
    refresh();
}

void PlaceOverview::refresh() {
    if (place_ != Location::Case::tags && place_ != Location::Case::sources) return;
    token_.cancel();
    token_ = CancelToken();
    const std::uint64_t generation = ++generation_;
    isLoading_ = true;
    emit changed();
    const QPointer<PlaceOverview> self(this);
    if (place_ == Location::Case::sources) {
        pool_.run([self, generation, token = token_] {
            MainThread::post(self, [generation, rows = sourceRows(token)](PlaceOverview& all) {
                if (generation == all.generation_) all.take(rows);
            });
        });
        return;
    }
    pool_.run([self, generation, token = token_] {
        MainThread::post(self, [generation, counts = countTags(token)](PlaceOverview& all) {
            if (generation != all.generation_) return;
            for (const auto& [name, count] : counts)
                if (!all.colors_.isKnown(name)) all.colors_.remember({name, count.color});
            std::vector<OverviewRow> rows;
            for (const FinderTag& tag : all.colors_.known()) {
                OverviewRow row;
                row.location = Location::tag(tag.name);
                row.color = tag.color;
                if (const auto count = counts.find(tag.name); count != counts.end())
                    row.count = count->second.count;
                rows.push_back(std::move(row));
            }
            all.take(std::move(rows));
        });
    });
}

void PlaceOverview::filesArrived() {
    if (place_ == Location::Case::sources && !arrivalTimer_.isActive()) arrivalTimer_.start();
}

void PlaceOverview::take(std::vector<OverviewRow> rows) {
    isLoading_ = false;
    if (rows != rows_) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    emit changed();
}

int PlaceOverview::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant PlaceOverview::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const OverviewRow& row = this->row(index.row());
    const QString name = placeText(row.location, row.location.text);
    if (role == Qt::DisplayRole) return name;
    if (role == Qt::AccessibleTextRole) return name + QStringLiteral(", ") + detail(row);
    return {};
}

QString PlaceOverview::detail(const OverviewRow& row) const {
    if (row.count == 0) return tr("No items");
    if (place_ != Location::Case::sources) return Counts::items(row.count);
    return Counts::files(row.count) + QStringLiteral(" · ") + Counts::bytes(row.bytes);
}

}  // namespace tarn
