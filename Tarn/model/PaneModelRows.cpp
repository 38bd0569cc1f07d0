// How a pane arranges its rows, and what of them is selected.
#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/PaneModel.h"

namespace tarn {

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
    if (showsResults_) return;
    RowArrangement how = wantedArrangement();
    if (how.isPlain() || listing_->size() == 0) {
        showArranged(listing_);
        return;
    }
    isArranging_ = true;
    app_.pool().run([rows = listing_, how = std::move(how), number, self = QPointer(this)] {
        SharedRows arranged = how.arrange(rows);
        arranged->prepareSearch();
        MainThread::post(self, [number, arranged](PaneModel& pane) {
            if (number == pane.arranging_) pane.showArranged(arranged);
        });
    });
}

void PaneModel::showArranged(const SharedRows& rows) {
    const bool wasArranging = std::exchange(isArranging_, false);
    showRows(rows);
    settleSelection();
    if (wasArranging) emit stateChanged();
}

void PaneModel::settleSelection() {
    if (!selectWhenListed_.empty()) {
        select(selectWhenListed_);
        if (isSettled_) selectWhenListed_.clear();
    }
    if (nameWhenListed_ && items_.row(*nameWhenListed_)) beginRename(*nameWhenListed_);
}

void PaneModel::showRows(const SharedRows& rows) {
    if (rows == items_.rows()) return;
    std::vector<URL> selected;
    std::optional<URL> current;
    const int currentRow = selection_.currentIndex().row();
    for (const QItemSelectionRange& range : selection_.selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            selected.push_back(items_.item(row).url);
    }
    if (selection_.currentIndex().isValid())
        current = items_.item(selection_.currentIndex().row()).url;
    items_.show(rows);
    if (!selected.empty()) select(selected);
    if (current) {
        // The keyboard goes on from where an item was that has gone.
        const int row = items_.row(*current).value_or(std::min(currentRow, items_.count() - 1));
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
    QItemSelection ranges;
    const int lastColumn = paneColumnCount - 1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        ranges.append(
            QItemSelectionRange(items_.index(rows[i], 0), items_.index(rows[end - 1], lastColumn)));
        i = end;
    }
    selection_.select(ranges, QItemSelectionModel::ClearAndSelect);
    if (!rows.empty())
        selection_.setCurrentIndex(items_.index(rows.front(), 0), QItemSelectionModel::NoUpdate);
}

void PaneModel::selectWhenListed(std::vector<URL> urls) {
    selectWhenListed_ = std::move(urls);
    if (location_.isQuery())
        live_.askAgain(selectWhenListed_);
    else
        reload();
}

void PaneModel::lookAgain(const std::vector<URL>& urls) {
    if (location_.isQuery()) {
        live_.askAgain(urls);
        return;
    }
    tree_.reload();
    refreshSoon();
}

bool PaneModel::isCut(const URL& url) const { return app_.isCut(url); }

std::vector<FileItem> PaneModel::selectedItems() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection_.selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    std::vector<FileItem> items;
    items.reserve(rows.size());
    for (const int row : rows) items.push_back(items_.item(row));
    return items;
}

}  // namespace tarn
