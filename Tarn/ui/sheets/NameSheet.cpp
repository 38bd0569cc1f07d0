#include "Tarn/ui/sheets/NameSheet.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 400;

}  // namespace

NameSheet::NameSheet(QWidget& window, const Words& words)
    : Sheet(window, sheetWidth),
      field_(new QLineEdit),
      note_(new QLabel),
      apply_(new QPushButton(words.apply)),
      applyText_(words.apply) {
    setTitle(words.title);
    field_->setAccessibleName(words.field);
    note_->setTextFormat(Qt::PlainText);
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->setWordWrap(true);
    note_->setMinimumWidth(1);
    column()->addWidget(field_);
    column()->addWidget(note_);
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space8);
    auto* cancel = new QPushButton(tr("Cancel"));
    apply_->setDefault(true);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(apply_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(row);
    connect(cancel, &QPushButton::clicked, this, &Sheet::finish);
    connect(apply_, &QPushButton::clicked, this, &NameSheet::apply);
    connect(field_, &QLineEdit::returnPressed, this, &NameSheet::apply);
    connect(field_, &QLineEdit::textChanged, this, &NameSheet::check);
}

QWidget* NameSheet::firstField() const { return field_; }

void NameSheet::start(const QString& name, const QString& placeholder) {
    field_->setPlaceholderText(placeholder);
    field_->setText(name);
    field_->selectAll();
    check();
}

std::string NameSheet::name() const { return field_->text().trimmed().toStdString(); }

void NameSheet::check() {
    const Verdict verdict = judge(name());
    apply_->setEnabled(verdict.isFine);
    apply_->setText(verdict.apply.isEmpty() ? applyText_ : verdict.apply);
    note_->setText(verdict.note);
    note_->setVisible(!verdict.note.isEmpty());
    field_->setAccessibleDescription(verdict.note);
}

void NameSheet::apply() {
    if (!judge(name()).isFine) return;
    take(name());
    finish();
}

}  // namespace tarn
