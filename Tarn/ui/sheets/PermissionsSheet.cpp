#include "Tarn/ui/sheets/PermissionsSheet.h"

#include <utility>

#include <QtCore/QPointer>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/ButtonRow.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 440;

/// Of a row and a column of the table.
std::uint32_t bit(std::size_t row, std::size_t column) { return 0400U >> (3 * row + column); }

}  // namespace

PermissionsSheet::PermissionsSheet(QWidget& window, WindowModel& model, std::vector<URL> urls)
    : Sheet(window, sheetWidth),
      model_(model),
      urls_(std::move(urls)),
      deep_(new WrappingCheckBox(tr("Apply to everything inside"))),
      note_(new QLabel),
      bits_(new QLabel),
      cancel_(new QPushButton(tr("Cancel"))),
      apply_(new QPushButton(tr("Change"))) {
    setObjectName(QStringLiteral("permissionsSheet"));
    const QString what = urls_.size() == 1 ? tr("“%1”").arg(displayText(urls_.front().name()))
                                           : Counts::items(static_cast<std::int64_t>(urls_.size()));
    setTitle(tr("Permissions of %1").arg(what));
    auto* table = new QGridLayout;
    table->setHorizontalSpacing(Metrics::space16);
    table->setVerticalSpacing(Metrics::space8);
    table->setColumnStretch(0, 1);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i] = new QLabel;
        columns_[i]->setFont(Fonts::small());
        columns_[i]->setForegroundRole(QPalette::PlaceholderText);
        table->addWidget(columns_[i], 0, static_cast<int>(i) + 1, Qt::AlignHCenter);
    }
    const QString names[] = {tr("Owner"), tr("Group"), tr("Others")};
    for (std::size_t i = 0; i < rows_.size(); ++i)
        rows_[i] = makeRow(*table, static_cast<int>(i) + 1, names[i]);
    note_->setWordWrap(true);
    note_->setMinimumWidth(1);
    note_->setTextFormat(Qt::PlainText);
    note_->setForegroundRole(QPalette::PlaceholderText);
    bits_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    bits_->setForegroundRole(QPalette::PlaceholderText);
    bits_->setAccessibleName(tr("Permissions as letters"));
    apply_->setDefault(true);
    column()->addLayout(table);
    column()->addWidget(deep_);
    column()->addWidget(note_);
    auto* buttons = new ButtonRow(bits_);
    buttons->add(*cancel_);
    buttons->add(*apply_);
    column()->addSpacing(Metrics::space4);
    column()->addWidget(buttons);
    connect(deep_, &QCheckBox::toggled, this, &PermissionsSheet::update);
    connect(cancel_, &QPushButton::clicked, this, &Sheet::finish);
    connect(apply_, &QPushButton::clicked, this, &PermissionsSheet::apply);
    show(ItemPermissions());
    model.app().pool().run([urls = urls_, self = QPointer(this)] {
        MainThread::post(self, [found = ItemPermissions::read(urls)](PermissionsSheet& sheet) {
            sheet.show(found);
        });
    });
}

QWidget* PermissionsSheet::firstField() const { return cancel_; }

PermissionsSheet::Row PermissionsSheet::makeRow(QGridLayout& grid, int line, const QString& who) {
    Row row{};
    auto* texts = new QVBoxLayout;
    texts->setSpacing(Metrics::space2);
    texts->addWidget(new ElidedLabel(who));
    row.name = new ElidedLabel;
    row.name->setFont(Fonts::small());
    row.name->setSecondary(true);
    texts->addWidget(row.name);
    grid.addLayout(texts, line, 0, Qt::AlignVCenter);
    for (std::size_t i = 0; i < row.boxes.size(); ++i) {
        auto* box = new WrappingCheckBox({});
        box->setMinimumSize(Metrics::smallestTarget, Metrics::smallestTarget);
        grid.addWidget(box, line, static_cast<int>(i) + 1, Qt::AlignCenter);
        connect(box, &QCheckBox::stateChanged, this, &PermissionsSheet::update);
        row.boxes[i] = box;
    }
    return row;
}

void PermissionsSheet::nameColumns() {
    // For a folder the same right means to go in.
    const QString run = found_.hasFolders ? tr("Open") : tr("Run");
    const QString names[] = {tr("Read"), tr("Write"), run};
    const QString who[] = {tr("Owner"), tr("Group"), tr("Others")};
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        columns_[column]->setText(names[column]);
        for (std::size_t row = 0; row < rows_.size(); ++row)
            rows_[row].boxes[column]->setAccessibleName(tr("%1: %2").arg(who[row], names[column]));
    }
}

void PermissionsSheet::show(const ItemPermissions& found) {
    found_ = found;
    nameColumns();
    rows_[0].name->setText(found.owner);
    rows_[1].name->setText(found.group);
    for (const Row& row : rows_) row.name->setVisible(!row.name->text().isEmpty());
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            QCheckBox& box = *rows_[row].boxes[column];
            const std::uint32_t which = bit(row, column);
            const bool isMixed = ((found.any ^ found.all) & which) != 0;
            const QSignalBlocker quiet(&box);
            box.setTristate(isMixed);
            box.setCheckState(isMixed                    ? Qt::PartiallyChecked
                              : (found.all & which) != 0 ? Qt::Checked
                                                         : Qt::Unchecked);
            box.setEnabled(found.canChange);
        }
    }
    deep_->setVisible(found.hasFolders);
    deep_->setEnabled(found.canChange);
    if (found.canChange && focusWidget() == cancel_)
        rows_[0].boxes[0]->setFocus(Qt::OtherFocusReason);
    update();
}

PermissionChange PermissionsSheet::wanted() const {
    PermissionChange change;
    change.isDeep = found_.hasFolders && deep_->isChecked();
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            const Qt::CheckState state = rows_[row].boxes[column]->checkState();
            if (state == Qt::Checked) change.given |= bit(row, column);
            if (state == Qt::Unchecked) change.taken |= bit(row, column);
        }
    }
    return change;
}

void PermissionsSheet::update() {
    const PermissionChange change = wanted();
    QString note;
    if (found_.count > 0 && !found_.canChange)
        note = found_.owner.isEmpty()
                   ? tr("Only their owners can change this.")
                   : tr("Only the owner, %1, can change this.").arg(found_.owner);
    else if (change.isDeep)
        note = tr("Files inside can be run afterwards only if they could be run before.");
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
    ItemPermissions after = found_;
    after.all = (found_.all & ~change.taken) | change.given;
    after.any = (found_.any & ~change.taken) | change.given;
    bits_->setText(found_.count > 0 ? after.bits() : QString());
    const bool changesAny = after.all != found_.all || after.any != found_.any;
    apply_->setEnabled(found_.canChange && (changesAny || change.isDeep));
}

void PermissionsSheet::apply() {
    model_.edits().changePermissions(urls_, wanted());
    finish();
}

}  // namespace tarn
