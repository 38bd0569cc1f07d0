// What stays where it is while the rows of a view are replaced.
#include <algorithm>

#include <QtWidgets/QScrollBar>

#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/pane/PaneView.h"

namespace tarn {
namespace {

/// Milliseconds after its last move that the pointer is taken to be aimed at a row.
constexpr qint64 aiming = 1500;

}  // namespace

void PaneView::notePlace() {
    Place place{pane_.rowOrder(), verticalOffset() == 0, verticalOffset(), {}, std::nullopt};
    const auto add = [&](int row) {
        place.rows.emplace_back(pane_.items().item(row).url, rowRect(row).top() - verticalOffset());
    };
    const auto rows = visibleRows();
    const bool isAimed =
        hovered_ >= 0 && sincePointed_.isValid() && (sincePointed_.elapsed() < aiming || dropRow_);
    const int aimedAt = dropFolder_ ? dropRow_.value_or(-1) : isAimed ? hovered_ : -1;
    if (rows && rows->first <= aimedAt && aimedAt <= rows->last) {
        place.isAtTop = false;
        add(aimedAt);
    }
    for (int row = rows ? rows->first : 0; rows && row <= rows->last; ++row) add(row);
    const auto hold = [&](const std::string& title) {
        if (const auto top = headingTop(title)) place.heading.emplace(title, *top - place.offset);
    };
    const auto headings =
        places().headingsIn(verticalOffset(), verticalOffset() + viewport()->height());
    if (folding_)
        hold(folding_->title);
    else if (rows && headings && places().headingTop(headings->first) < rowRect(rows->first).top())
        hold(pane_.groups()[static_cast<std::size_t>(headings->first)].title);
    place_ = std::move(place);
}

std::optional<int> PaneView::headingTop(const std::string& title) const {
    const auto& groups = pane_.groups();
    const auto found = std::ranges::find(groups, title, &RowGroup::title);
    if (found == groups.end()) return std::nullopt;
    return places().headingTop(static_cast<int>(found - groups.begin()));
}

int PaneView::offsetFor(const Place& place) const {
    const RowOrder& order = pane_.rowOrder();
    // Results begin with the best.
    if (place.isAtTop || place.order.search != order.search) return 0;
    // Not where the row with the keyboard has gone to.
    if (place.order != order) return place.offset;
    const auto offsetOf = [&](const std::pair<URL, int>& held) -> std::optional<int> {
        const auto row = pane_.items().row(held.first);
        if (!row) return std::nullopt;
        return rowRect(*row).top() - held.second;
    };
    // What is in a group comes and goes below its heading, which stays.
    const bool hasLostFirst = !place.rows.empty() && !pane_.items().row(place.rows.front().first);
    if (place.heading && (folding_ || hasLostFirst))
        if (const auto top = headingTop(place.heading->first)) return *top - place.heading->second;
    for (const auto& held : place.rows)
        if (const auto offset = offsetOf(held)) return *offset;
    return place.offset;
}

void PaneView::restorePlace() {
    if (dropFolder_) {
        const auto row = pane_.items().row(*dropFolder_);
        dropRow_ = row ? std::optional<int>(*row) : std::nullopt;
        if (!row) dropFolder_.reset();
    }
    const auto place = std::exchange(place_, std::nullopt);
    if (!place) return;
    const bool wereResults = place->order.search != 0;
    const bool areResults = pane_.rowOrder().search != 0;
    if (areResults && !wereResults) beforeResults_ = place;
    const bool isBack = wereResults && !areResults && beforeResults_;
    verticalScrollBar()->setValue(offsetFor(isBack ? *beforeResults_ : *place));
    if (!areResults) beforeResults_.reset();
    if (folding_) {
        const auto& groups = pane_.groups();
        const auto found = std::ranges::find(groups, folding_->title, &RowGroup::title);
        if (found == groups.end() || found->isFolded == folding_->isFolded) folding_.reset();
    }
    if (hovered_ >= rowCount()) hovered_ = -1;
}

}  // namespace tarn
