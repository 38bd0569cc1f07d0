#include "Tarn/ui/pane/RowPlaces.h"

#include <algorithm>

namespace tarn {

void RowPlaces::update(const SharedRows& rows, const Measures& measures) {
    if (rows == rows_ && measures == measures_) return;
    rows_ = rows;
    measures_ = measures;
    rowCount_ = static_cast<int>(rows->size());
    hasHeadings_ = !rows->groups().empty();
    groups_.clear();
    int top = measures.margin;
    const auto add = [&](int first, int end) {
        groups_.push_back({first, end - first, top});
        top = rowsTop(groups_.back()) + linesOf(groups_.back()) * measures.lineHeight;
    };
    if (!hasHeadings_) add(0, rowCount_);
    for (std::size_t i = 0; i < rows->groups().size(); ++i) {
        const bool isLast = i + 1 == rows->groups().size();
        add(static_cast<int>(rows->groups()[i].first),
            isLast ? rowCount_ : static_cast<int>(rows->groups()[i + 1].first));
    }
}

int RowPlaces::height() const {
    const Group& last = groups_.back();
    return rowsTop(last) + linesOf(last) * measures_.lineHeight + measures_.margin;
}

const RowPlaces::Group& RowPlaces::groupOfRow(int row) const {
    // Folded groups begin where the next one does; the last of them has the row.
    const auto after =
        std::upper_bound(groups_.begin(), groups_.end(), row,
                         [](int wanted, const Group& group) { return wanted < group.first; });
    return after == groups_.begin() ? *after : *(after - 1);
}

std::size_t RowPlaces::groupAt(int y) const {
    const auto after =
        std::upper_bound(groups_.begin(), groups_.end(), y,
                         [](int wanted, const Group& group) { return wanted < group.top; });
    return after == groups_.begin() ? 0 : static_cast<std::size_t>(after - groups_.begin()) - 1;
}

int RowPlaces::top(int row) const {
    const Group& group = groupOfRow(row);
    return rowsTop(group) + (row - group.first) / measures_.columns * measures_.lineHeight;
}

int RowPlaces::column(int row) const { return (row - groupOfRow(row).first) % measures_.columns; }

int RowPlaces::nearest(int y, int column) const {
    if (rowCount_ == 0) return -1;
    const Group& group = groups_[groupAt(y)];
    if (group.count == 0) return std::min(group.first, rowCount_ - 1);
    const int line = std::clamp((y - rowsTop(group)) / measures_.lineHeight, 0, linesOf(group) - 1);
    return group.first + std::min(line * measures_.columns + column, group.count - 1);
}

int RowPlaces::rowAt(int y, int column) const {
    if (rowCount_ == 0) return -1;
    const Group& group = groups_[groupAt(y)];
    const int inside = y - rowsTop(group);
    if (inside < 0) return -1;
    const int row = inside / measures_.lineHeight * measures_.columns + column;
    return row < group.count ? group.first + row : -1;
}

std::optional<RowPlaces::Rows> RowPlaces::rowsIn(int top, int bottom) const {
    if (rowCount_ == 0 || bottom < groups_.front().top) return std::nullopt;
    const Group& upper = groups_[groupAt(top)];
    // Counted by lines, so that a stretch below the group's own begins with the next one.
    const int above = std::max(0, (top - rowsTop(upper)) / measures_.lineHeight);
    const int first = upper.first + std::min(above * measures_.columns, upper.count);
    const Group& lower = groups_[groupAt(bottom)];
    const int reached = bottom - rowsTop(lower);
    const int lines = reached < 0 ? 0 : reached / measures_.lineHeight + 1;
    const int end = lower.first + std::min(lines * measures_.columns, lower.count);
    if (first >= end) return std::nullopt;
    return Rows{first, end - 1};
}

int RowPlaces::above(int row) const {
    const Group& group = groupOfRow(row);
    const int place = row - group.first;
    if (place >= measures_.columns) return row - measures_.columns;
    if (group.first == 0) return row;
    // The last line of the group before, which may be shorter.
    const Group& before = groupOfRow(group.first - 1);
    const int lastLine = (linesOf(before) - 1) * measures_.columns;
    return before.first + std::min(lastLine + place, before.count - 1);
}

int RowPlaces::below(int row) const {
    const Group& group = groupOfRow(row);
    const int place = row - group.first;
    if (place + measures_.columns < group.count) return row + measures_.columns;
    const bool isInLastLine = place / measures_.columns == linesOf(group) - 1;
    if (!isInLastLine) return group.first + group.count - 1;
    const int next = group.first + group.count;
    if (next >= rowCount_) return row;
    return next + std::min(place % measures_.columns, groupOfRow(next).count - 1);
}

std::optional<int> RowPlaces::headingAt(int y) const {
    if (!hasHeadings_) return std::nullopt;
    const std::size_t group = groupAt(y);
    const int inside = y - groups_[group].top;
    if (inside < 0 || inside >= measures_.headingHeight) return std::nullopt;
    return static_cast<int>(group);
}

std::optional<RowPlaces::Rows> RowPlaces::headingsIn(int top, int bottom) const {
    if (!hasHeadings_ || bottom < groups_.front().top) return std::nullopt;
    auto first = groupAt(top);
    if (groups_[first].top + measures_.headingHeight <= top) ++first;
    const auto last = groupAt(bottom);
    if (first > last) return std::nullopt;
    return Rows{static_cast<int>(first), static_cast<int>(last)};
}

}  // namespace tarn
