#include "Tarn/ui/search/ChipRow.h"

#include <algorithm>

#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/search/FlowLayout.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

ChipRow::ChipRow(QWidget* parent) : QWidget(parent), flow_(new FlowLayout(this, Metrics::space6)) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(tr("Search filters"));
    hide();
}

void ChipRow::setChips(const std::vector<SearchChip>& chips) {
    const auto focused = std::find_if(chips_.begin(), chips_.end(),
                                      [](const Chip* chip) { return chip->hasFocus(); });
    const auto focusedIndex = focused == chips_.end() ? -1 : focused - chips_.begin();
    const Chip* focusedChip = focused == chips_.end() ? nullptr : *focused;

    std::vector<Chip*> kept;
    for (const SearchChip& wanted : chips) {
        const auto old = std::find_if(chips_.begin(), chips_.end(), [&](const Chip* chip) {
            return chip && chip->chip().category == wanted.category;
        });
        if (old != chips_.end()) {
            (*old)->setChip(wanted);
            kept.push_back(*old);
            *old = nullptr;
            continue;
        }
        auto* chip = new Chip(wanted, this);
        chip->setReadOnly(isReadOnly_);
        connect(chip, &Chip::removeRequested, this,
                [this, chip] { emit removed(chip->chip().category); });
        connect(chip, &Chip::stepRequested, this, [this, chip](int by) { step(chip, by); });
        kept.push_back(chip);
    }
    std::vector<Chip*> gone;
    std::copy_if(chips_.begin(), chips_.end(), std::back_inserter(gone),
                 [](const Chip* chip) { return chip != nullptr; });
    chips_ = kept;
    while (QLayoutItem* item = flow_->takeAt(0)) delete item;
    QWidget* before = nullptr;
    for (Chip* chip : chips_) {
        flow_->addWidget(chip);
        chip->show();
        if (before) setTabOrder(before, chip);
        before = chip;
    }
    const bool lostFocus = std::find(gone.begin(), gone.end(), focusedChip) != gone.end();
    if (lostFocus && !chips_.empty()) {
        const auto next = std::min<std::ptrdiff_t>(focusedIndex, std::ssize(chips_) - 1);
        chips_[static_cast<std::size_t>(next)]->setFocus(Qt::OtherFocusReason);
    }
    for (Chip* chip : gone) {
        chip->hide();
        chip->deleteLater();  // its own signal may have led here
    }
    setVisible(!chips_.empty());
    updateGeometry();
    if (lostFocus && chips_.empty()) emit focusLost();
}

std::vector<SearchChip> ChipRow::chips() const {
    std::vector<SearchChip> shown;
    for (const Chip* chip : chips_) shown.push_back(chip->chip());
    return shown;
}

void ChipRow::focusLast() {
    if (!chips_.empty()) chips_.back()->setFocus(Qt::ShortcutFocusReason);
}

void ChipRow::step(const Chip* from, int by) {
    const auto at = std::find(chips_.begin(), chips_.end(), from) - chips_.begin() + by;
    if (at >= 0 && at < std::ssize(chips_))
        chips_[static_cast<std::size_t>(at)]->setFocus(Qt::TabFocusReason);
}

}  // namespace tarn
