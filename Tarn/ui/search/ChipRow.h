#pragma once

#include <vector>

#include <QtWidgets/QWidget>

#include "TarnCore/search/SearchQuery.h"

namespace tarn {

class Chip;
class FlowLayout;

/// What the search understood, as chips that wrap into as many lines as they need. Hidden while
/// there are none.
class ChipRow final : public QWidget {
    Q_OBJECT
public:
    explicit ChipRow(QWidget* parent = nullptr);

    /// Chips of a category that is shown already change in place. When the one that has the
    /// keyboard goes, its neighbour gets it.
    void setChips(const std::vector<SearchChip>& chips);
    std::vector<SearchChip> chips() const;
    /// The chips only tell. Before the first of them.
    void setReadOnly(bool isReadOnly) { isReadOnly_ = isReadOnly; }
    /// Gives the keyboard to the last chip.
    void focusLast();

signals:
    /// The person took a part of the search away; the row itself waits for setChips().
    void removed(tarn::ChipCategory category);
    /// The last chip went while it had the keyboard.
    void focusLost();

private:
    void step(const Chip* from, int by);

    FlowLayout* flow_;
    bool isReadOnly_ = false;
    std::vector<Chip*> chips_;  ///< Children, in the order shown.
};

}  // namespace tarn
