#pragma once

#include <array>

#include "Tarn/ui/sheets/Sheet.h"
#include "Tarn/ui/thumbnails/ThumbnailLoader.h"
#include "TarnCore/ops/TransferProgress.h"

class QBoxLayout;
class QCheckBox;
class QPushButton;

namespace tarn {

class ConflictSide;
class TransferModel;

/// Asks what becomes of two items that want the same name. Each answer has a letter; Escape skips
/// the item, which leaves both as they are.
///
/// Goes by itself when the transfer needs no answer any more.
class ConflictSheet final : public Sheet {
    Q_OBJECT
public:
    /// `transfer` has a conflict.
    ConflictSheet(TransferModel& transfer, QWidget& window);

    /// The button of an answer; null when it is not offered.
    QPushButton* button(ConflictAction action) const;
    /// The answer that loses nothing.
    QPushButton* preferred() const;
    QCheckBox* applyToAll() const { return applyToAll_; }
    const ConflictSide& existing() const { return *existing_; }
    const ConflictSide& incoming() const { return *incoming_; }

protected:
    void escape() override;
    void layOut() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPushButton* addButton(ConflictAction action, const QString& text, const QString& toolTip);
    void answer(ConflictAction action);

    QPointer<TransferModel> transfer_;
    TransferConflict conflict_;
    ThumbnailLoader thumbnails_;
    ConflictSide* existing_;
    ConflictSide* incoming_;
    QBoxLayout* sides_;
    QBoxLayout* buttons_;
    QCheckBox* applyToAll_;
    std::array<QPushButton*, 5> byAction_{};
};

}  // namespace tarn
