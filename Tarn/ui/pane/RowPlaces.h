#pragma once

#include <optional>
#include <vector>

#include "Tarn/model/PaneRows.h"

namespace tarn {

/// Where the rows of a pane lie below each other, and the headings of its groups between them, in
/// content coordinates. Every answer is arithmetic, with a search among the groups where there are
/// any, so that 100,000 rows cost as much as ten.
///
/// Rows fill lines of `columns` cells; a group begins a line of its own.
class RowPlaces {
public:
    struct Measures {
        int columns = 1;
        int lineHeight = 1;
        int headingHeight = 0;
        int margin = 0;  ///< Above the first and below the last.
        bool operator==(const Measures&) const = default;
    };
    struct Rows {
        int first = 0;
        int last = 0;
    };

    /// Costs nothing when neither has changed.
    void update(const SharedRows& rows, const Measures& measures);

    int height() const;
    /// Top of the line that a row is in.
    int top(int row) const;
    int column(int row) const;
    /// The row in that line and column, or the last one of the line; for points above, below and
    /// on headings the nearest. -1 without rows.
    int nearest(int y, int column) const;
    /// The row whose line the point is in; -1 in margins, on headings and behind the last.
    int rowAt(int y, int column) const;
    /// Those whose lines touch a stretch, the last one included.
    std::optional<Rows> rowsIn(int top, int bottom) const;
    /// The row in the same column of the line above or below; the row itself at the ends.
    int above(int row) const;
    int below(int row) const;

    /// Of the headings, which are numbered like the groups.
    int headingTop(int group) const { return groups_[static_cast<std::size_t>(group)].top; }
    std::optional<int> headingAt(int y) const;
    std::optional<Rows> headingsIn(int top, int bottom) const;

private:
    struct Group {
        int first = 0;  ///< Row.
        int count = 0;
        int top = 0;  ///< Of its heading.
    };
    int linesOf(const Group& group) const {
        return (group.count + measures_.columns - 1) / measures_.columns;
    }
    int rowsTop(const Group& group) const {
        return group.top + (hasHeadings_ ? measures_.headingHeight : 0);
    }
    const Group& groupOfRow(int row) const;
    /// The last one that begins at or above a height; the first one for what is higher.
    std::size_t groupAt(int y) const;

    SharedRows rows_;
    Measures measures_;
    bool hasHeadings_ = false;
    std::vector<Group> groups_;  ///< At least one once it was updated.
    int rowCount_ = 0;
};

}  // namespace tarn
