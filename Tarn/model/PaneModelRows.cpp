// How a pane arranges its rows, and what of them is selected.
#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/PaneModel.h"

namespace tarn {
namespace {

/// Where more rows than this stay selected, it takes another thread to find them among new ones
/// without keeping the window waiting.
constexpr int manySelected = 1000;

int selectedCount(const QItemSelectionModel& selection) {
    int count = 0;
    for (const QItemSelectionRange& range : selection.selection()) count += range.height();
    return count;
}

/// From top to bottom.
std::vector<int> selectedRows(const QItemSelectionModel& selection) {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection.selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

/// Where rows of `old` are among others, from top to bottom; without those that are not there.
std::vector<int> rowsNow(const PaneRows& old, const std::vector<int>& rows, const PaneRows& fresh) {
    std::vector<int> now;
    now.reserve(rows.size());
    for (const int row : rows)
        if (const auto place = fresh.row(old.item(static_cast<std::size_t>(row)).url))
            now.push_back(static_cast<int>(*place));
    std::sort(now.begin(), now.end());
    return now;
}

/// These and no others, which come from top to bottom; the uppermost has the keyboard.
void selectRows(QItemSelectionModel& selection, const PaneItems& items,
                const std::vector<int>& rows) {
    QItemSelection ranges;
    const int lastColumn = paneColumnCount - 1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        ranges.append(
            QItemSelectionRange(items.index(rows[i], 0), items.index(rows[end - 1], lastColumn)));
        i = end;
    }
    selection.select(ranges, QItemSelectionModel::ClearAndSelect);
    if (!rows.empty())
        selection.setCurrentIndex(items.index(rows.front(), 0), QItemSelectionModel::NoUpdate);
}

}  // namespace

void PaneModel::setGroupBy(GroupField field) {
    if (field == groupBy()) return;
    arrangement_.groupBy = field;
    arrangement_.foldedGroups.clear();
    savePrefs();
    emit groupsChanged();
    if (!applyingPrefs_) arrange();
}

void PaneModel::setGroupFolded(const std::string& title, bool isFolded) {
    const bool isChange = isFolded ? arrangement_.foldedGroups.insert(title).second
                                   : arrangement_.foldedGroups.erase(title) > 0;
    if (isChange) arrange();
}

void PaneModel::setCloudFilter(CloudFilter filter) {
    if (filter == cloudFilter()) return;
    arrangement_.cloudFilter = filter;
    emit cloudFilterChanged();
    if (!applyingPrefs_) arrange();
}

ListColumns& PaneModel::columns() { return app_.listColumns(); }

bool PaneModel::showsTree() const {
    return viewMode_ == ViewMode::list && location_.isFolder() && !showsResults_;
}

void PaneModel::loadChildren(const URL& folder) {
    if (showsTree()) tree_.loadChildren(folder);
}

RowArrangement PaneModel::wantedArrangement() const {
    RowArrangement how = arrangement_;
    how.sort = sort_;
    if (showsTree()) how.unfolded = tree_.treeChildren();
    return how;
}

void PaneModel::arrange() {
    const std::uint64_t number = ++arranging_;
    isArranging_ = false;
    const SharedRows rows = showsResults_ ? search_.rows() : listing_;
    RowArrangement how = wantedArrangement();
    RowOrder order{listingSort_, how.groupBy};
    if (showsResults_) order = {search_.sort(), how.groupBy, searchNumber_, search_.isRanked()};
    if (how.isPlain() || rows->size() == 0) {
        showArranged(rows, order);
        return;
    }
    isArranging_ = true;
    app_.pool().run([rows, how = std::move(how), order, number, self = QPointer(this)] {
        SharedRows arranged = how.arrange(rows);
        arranged->prepareSearch();
        MainThread::post(self, [number, arranged, order](PaneModel& pane) {
            if (number == pane.arranging_) pane.showArranged(arranged, order);
        });
    });
}

void PaneModel::arrangePlace() {
    if (!showsResults_) arrange();
}

void PaneModel::showArranged(const SharedRows& rows, const RowOrder& order) {
    if (rows == items_.rows()) {
        showArranged(rows, order, {});
        return;
    }
    if (selectedCount(selection_) <= manySelected) {
        showArranged(rows, order, rowsNow(*items_.rows(), selectedRows(selection_), *rows));
        return;
    }
    isArranging_ = true;
    app_.pool().run([rows, order, old = items_.rows(), selected = selectedRows(selection_),
                     number = ++arranging_, self = QPointer(this)]() mutable {
        std::vector<int> now = rowsNow(*old, selected, *rows);
        MainThread::post(
            self, [rows, order, number, old = std::move(old), selected = std::move(selected),
                   now = std::move(now)](PaneModel& pane) {
                if (number != pane.arranging_) return;
                // What was selected meanwhile counts.
                const std::vector<int> still = selectedRows(pane.selection_);
                const bool isSame = pane.items_.rows() == old && still == selected;
                pane.showArranged(rows, order,
                                  isSame ? now : rowsNow(*pane.items_.rows(), still, *rows));
            });
    });
}

void PaneModel::showArranged(const SharedRows& rows, const RowOrder& order,
                             const std::vector<int>& selected) {
    const bool wasArranging = std::exchange(isArranging_, false);
    showRows(rows, order, selected);
    if (!showsResults_) settleSelection();
    if (wasArranging) emit stateChanged();
}

void PaneModel::settleSelection() {
    if (!selectWhenListed_.empty()) {
        select(selectWhenListed_);
        if (isSettled_) selectWhenListed_.clear();
    }
    if (nameWhenListed_ && items_.row(*nameWhenListed_)) beginRename(*nameWhenListed_);
}

void PaneModel::showRows(const SharedRows& rows, const RowOrder& order,
                         const std::vector<int>& selected) {
    if (rows == items_.rows()) {
        rowOrder_ = order;
        return;
    }
    const SharedRows old = items_.rows();
    const bool hadSelection = selection_.hasSelection();
    const int current = selection_.currentIndex().row();
    items_.show(rows);
    rowOrder_ = order;
    if (hadSelection) selectRows(selection_, items_, selected);
    if (current >= 0) {
        // The keyboard goes on from where an item was that has gone.
        const int row = items_.row(old->item(static_cast<std::size_t>(current)).url)
                            .value_or(std::min(current, items_.count() - 1));
        if (row >= 0)
            selection_.setCurrentIndex(items_.index(row, 0), QItemSelectionModel::NoUpdate);
    }
    emit rowsChanged();
}

void PaneModel::select(const std::vector<URL>& urls) {
    std::vector<int> rows;
    rows.reserve(urls.size());
    for (const URL& url : urls) {
        if (const auto row = items_.row(url)) rows.push_back(*row);
    }
    std::sort(rows.begin(), rows.end());
    selectRows(selection_, items_, rows);
}

void PaneModel::selectWhenListed(std::vector<URL> urls) {
    selectWhenListed_ = std::move(urls);
    if (location_.isQuery())
        live_.askAgain(selectWhenListed_);
    else
        reloadPlace(false);
}

void PaneModel::lookAgain(const std::vector<URL>& urls) {
    if (query_) search_.askAgain(urls);
    if (location_.isQuery()) {
        live_.askAgain(urls);
        return;
    }
    tree_.reload();
    refreshSoon();
}

bool PaneModel::isCut(const URL& url) const { return app_.isCut(url); }

std::vector<FileItem> PaneModel::selectedItems() const {
    const std::vector<int> rows = selectedRows(selection_);
    std::vector<FileItem> items;
    items.reserve(rows.size());
    for (const int row : rows) items.push_back(items_.item(row));
    return items;
}

}  // namespace tarn
