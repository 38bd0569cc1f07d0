#include "Tarn/ui/sheets/ConflictSheet.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TransferModel.h"
#include "Tarn/ui/sheets/ConflictSide.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 680;
/// Below this the two items stand one below the other, and so do the answers.
constexpr int sideBySide = 520;

ConflictSide::Facts facts(const URL& url, bool isFolder, std::optional<Date> modified,
                          std::optional<std::int64_t> size, std::optional<Date> otherModified,
                          std::optional<std::int64_t> otherSize) {
    ConflictSide::Facts facts;
    facts.url = url;
    facts.isFolder = isFolder;
    facts.modified = modified;
    facts.size = size;
    // A disk may keep whole or even seconds only.
    facts.isNewer = modified && otherModified && *modified - *otherModified > 2;
    facts.isLarger = size && otherSize && *size > *otherSize;
    return facts;
}

QString question(const TransferConflict& conflict) {
    const QString name = displayText(conflict.existing.name());
    const QString folder = folderText(conflict.existing.parent());
    const QString said = conflict.bothFolders
                             ? ConflictSheet::tr("A folder called “%1” is already in “%2”")
                             : ConflictSheet::tr("“%1” is already in “%2”");
    return said.arg(name, folder);
}

}  // namespace

ConflictSheet::ConflictSheet(TransferModel& transfer, QWidget& window)
    : Sheet(window, sheetWidth),
      transfer_(&transfer),
      conflict_(*transfer.conflict()),
      sides_(new QBoxLayout(QBoxLayout::LeftToRight)),
      buttons_(new QBoxLayout(QBoxLayout::LeftToRight)),
      applyToAll_(new WrappingCheckBox(conflict_.bothFolders ? tr("Do the same for all folders")
                                                             : tr("Do the same for all files"))) {
    setTitle(question(conflict_));
    auto* hint = new QLabel(
        conflict_.bothFolders
            ? tr("Merging puts the items of both into one folder. What is replaced goes to the "
                 "Trash.")
            : tr("What is replaced goes to the Trash."));
    hint->setTextFormat(Qt::PlainText);
    hint->setWordWrap(true);
    hint->setMinimumWidth(1);
    hint->setForegroundRole(QPalette::PlaceholderText);
    column()->addWidget(hint);

    auto existing = facts(conflict_.existing, conflict_.bothFolders, conflict_.existingModified,
                          conflict_.existingSize, conflict_.sourceModified, conflict_.sourceSize);
    existing.heading = tr("Already There");
    auto incoming = facts(conflict_.source, conflict_.bothFolders, conflict_.sourceModified,
                          conflict_.sourceSize, conflict_.existingModified, conflict_.existingSize);
    incoming.heading = tr("From “%1”").arg(folderText(conflict_.source.parent()));
    existing_ = new ConflictSide(existing, thumbnails_);
    incoming_ = new ConflictSide(incoming, thumbnails_);
    sides_->setSpacing(Metrics::space12);
    sides_->addWidget(existing_, 1);
    sides_->addWidget(incoming_, 1);
    column()->addLayout(sides_);
    column()->addWidget(applyToAll_);

    buttons_->setSpacing(Metrics::space8);
    addButton(ConflictAction::stop, tr("Stop"),
              tr("Ends the whole transfer and removes what it has made (S)"));
    buttons_->addStretch();
    addButton(ConflictAction::skip, tr("Skip"), tr("Leaves both as they are (Esc)"));
    addButton(ConflictAction::keepBoth, tr("Keep Both"), tr("Gives the new one a number (K)"));
    addButton(ConflictAction::replace, tr("Replace"),
              tr("Moves the one that is there to the Trash (R)"));
    if (conflict_.bothFolders)
        addButton(ConflictAction::merge, tr("Merge"), tr("Puts both into one folder (M)"));
    column()->addSpacing(Metrics::space4);
    column()->addLayout(buttons_);
    preferred()->setDefault(true);

    connect(&transfer, &TransferModel::conflictChanged, this, [this] {
        if (!transfer_ || !transfer_->conflict()) finish();
    });
    connect(&transfer, &QObject::destroyed, this, &Sheet::finish);
}

QPushButton* ConflictSheet::addButton(ConflictAction action, const QString& text,
                                      const QString& toolTip) {
    auto* button = new QPushButton(text);
    button->setToolTip(toolTip);
    button->setAccessibleDescription(toolTip);
    connect(button, &QPushButton::clicked, this, [this, action] { answer(action); });
    buttons_->addWidget(button);
    byAction_[static_cast<std::size_t>(action)] = button;
    return button;
}

QPushButton* ConflictSheet::button(ConflictAction action) const {
    return byAction_[static_cast<std::size_t>(action)];
}

QPushButton* ConflictSheet::preferred() const {
    return button(conflict_.bothFolders ? ConflictAction::merge : ConflictAction::keepBoth);
}

void ConflictSheet::layOut() {
    const bool isWide = contentWidth() >= sideBySide;
    sides_->setDirection(isWide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    int wanted = 0;
    for (const QPushButton* one : byAction_)
        if (one) wanted += one->sizeHint().width() + buttons_->spacing();
    buttons_->setDirection(wanted <= contentWidth() ? QBoxLayout::LeftToRight
                                                    : QBoxLayout::BottomToTop);
}

void ConflictSheet::answer(ConflictAction action) {
    if (!transfer_ || !transfer_->conflict()) return;
    const ConflictDecision decision{action, applyToAll_->isChecked()};
    transfer_->disconnect(this);
    transfer_->answer(decision);
    finish();
}

void ConflictSheet::escape() { answer(ConflictAction::skip); }

void ConflictSheet::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() == Qt::NoModifier) {
        switch (event->key()) {
            case Qt::Key_R:
                return answer(ConflictAction::replace);
            case Qt::Key_K:
                return answer(ConflictAction::keepBoth);
            case Qt::Key_S:
                return answer(ConflictAction::stop);
            case Qt::Key_M:
                if (conflict_.bothFolders) answer(ConflictAction::merge);
                return;
            case Qt::Key_A:
                applyToAll_->toggle();
                return;
            case Qt::Key_Return:
            case Qt::Key_Enter:
                if (pressFocused()) return;
                return answer(conflict_.bothFolders ? ConflictAction::merge
                                                    : ConflictAction::keepBoth);
            default:
                break;
        }
    }
    Sheet::keyPressEvent(event);
}

}  // namespace tarn
