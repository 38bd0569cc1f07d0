#include "Tarn/ui/tags/NewTagSheet.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/tags/TagDotRow.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 380;

}  // namespace

NewTagSheet::NewTagSheet(QWidget& window, WindowModel& model)
    : Sheet(window, sheetWidth),
      window_(model),
      name_(new QLineEdit),
      note_(new QLabel),
      create_(new QPushButton(tr("Add Tag"))) {
    setObjectName(QStringLiteral("newTagSheet"));
    setTitle(tr("New Tag"));
    name_->setPlaceholderText(tr("Name"));
    name_->setAccessibleName(tr("Name of the tag"));
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->setWordWrap(true);
    column()->addWidget(name_);
    pick(TagColor::none);
    column()->addWidget(note_);
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space8);
    auto* cancel = new QPushButton(tr("Cancel"));
    create_->setDefault(true);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(create_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(row);
    connect(cancel, &QPushButton::clicked, this, &NewTagSheet::finish);
    connect(create_, &QPushButton::clicked, this, &NewTagSheet::apply);
    connect(name_, &QLineEdit::returnPressed, this, &NewTagSheet::apply);
    connect(name_, &QLineEdit::textChanged, this, &NewTagSheet::check);
    check();
}

QWidget* NewTagSheet::firstField() const { return name_; }

void NewTagSheet::pick(TagColor color) {
    color_ = color;
    std::vector<TagDotRow::Entry> entries;
    for (const TagColor one : allTagColors())
        entries.push_back({{coreText(tarn::title(one)).toStdString(), one},
                           one == color ? TagDots::Share::all : TagDots::Share::none});
    if (!colors_) {
        colors_ = new TagDotRow(std::move(entries));
        colors_->setAccessibleName(tr("Colour"));
        colors_->alignWithEdge();
        connect(colors_, &TagDotRow::chosen, this,
                [this](const FinderTag& chosen) { pick(chosen.color); });
        column()->addWidget(colors_, 0, Qt::AlignLeading);
    } else {
        colors_->setEntries(std::move(entries));
    }
    note_->setText(coreText(tarn::title(color)));
}

void NewTagSheet::check() { create_->setEnabled(!name_->text().trimmed().isEmpty()); }

void NewTagSheet::apply() {
    const std::string name = tagNamed(name_->text().trimmed());
    if (name.empty()) return;
    window_.edits().addTag({name, color_});
    finish();
}

}  // namespace tarn
