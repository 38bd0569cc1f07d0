#include "Tarn/ui/sheets/NewSmartFolderSheet.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/ListError.h"
#include "Tarn/model/records/SmartFolders.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/search/QueryParser.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 480;

SmartFolder searching(const std::string& query, SearchScopeSetting scope) {
    SmartFolder folder;
    folder.query = query;
    folder.scope = scope;
    return folder;
}

}  // namespace

NewSmartFolderSheet::NewSmartFolderSheet(QWidget& window, WindowModel& model,
                                         const std::string& query, SearchScopeSetting scope)
    : NewSmartFolderSheet(window, model, searching(query, scope), true) {}

NewSmartFolderSheet::NewSmartFolderSheet(QWidget& window, WindowModel& model,
                                         const SmartFolder& changed)
    : NewSmartFolderSheet(window, model, changed, false) {}

NewSmartFolderSheet::NewSmartFolderSheet(QWidget& window, WindowModel& model,
                                         const SmartFolder& shown, bool isNew)
    : Sheet(window, sheetWidth),
      model_(model),
      changed_(isNew ? std::nullopt : std::optional(shown)),
      name_(new QLineEdit(displayText(shown.name))),
      query_(new QLineEdit(displayText(shown.query))),
      chips_(new ChipRow),
      terms_(new QLabel),
      scope_(new QComboBox),
      note_(new QLabel),
      save_(new QPushButton(tr("Save"))) {
    setObjectName(QStringLiteral("newSmartFolderSheet"));
    setTitle(isNew ? tr("New Smart Folder") : tr("Edit Smart Folder"));
    name_->selectAll();
    name_->setPlaceholderText(tr("Name"));
    query_->setPlaceholderText(tr("pdfs from last week"));
    chips_->setReadOnly(true);
    for (QLabel* label : {terms_, note_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setMinimumWidth(1);
        label->setForegroundRole(QPalette::PlaceholderText);
    }
    terms_->setFont(Fonts::small());
    scope_->addItem(tr("the home folder"), static_cast<int>(SearchScopeSetting::home));
    scope_->addItem(tr("the whole computer"), static_cast<int>(SearchScopeSetting::thisMac));
    // One that was stored for the folder that is shown searches the home folder as well: a smart
    // folder is shown alone.
    scope_->setCurrentIndex(scope_->findData(
        static_cast<int>(shown.scope == SearchScopeSetting::currentFolder ? SearchScopeSetting::home
                                                                          : shown.scope)));

    addRow(tr("Name"), name_);
    addRow(tr("Search for"), query_);
    column()->addWidget(chips_);
    column()->addWidget(terms_);
    addRow(tr("Look in"), scope_);
    column()->addWidget(note_);
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space8);
    auto* cancel = new QPushButton(tr("Cancel"));
    save_->setDefault(true);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(save_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(row);
    connect(cancel, &QPushButton::clicked, this, &Sheet::finish);
    connect(save_, &QPushButton::clicked, this, &NewSmartFolderSheet::apply);
    connect(name_, &QLineEdit::textChanged, this, &NewSmartFolderSheet::check);
    connect(query_, &QLineEdit::textChanged, this, &NewSmartFolderSheet::understand);
    for (QLineEdit* field : {name_, query_})
        connect(field, &QLineEdit::returnPressed, this, &NewSmartFolderSheet::apply);
    understand();
}

void NewSmartFolderSheet::addRow(const QString& label, QWidget* field) {
    auto* part = new QVBoxLayout;
    part->setSpacing(Metrics::space4);
    auto* text = new QLabel(label);
    text->setBuddy(field);
    field->setAccessibleName(label);
    part->addWidget(text);
    part->addWidget(field);
    column()->addLayout(part);
}

QWidget* NewSmartFolderSheet::firstField() const {
    return query_->text().trimmed().isEmpty() ? query_ : name_;
}

void NewSmartFolderSheet::understand() {
    const SearchQuery query = QueryParser::current().parse(query_->text().toStdString());
    chips_->setChips(query.chips());
    QStringList terms;
    for (const std::string& term : query.terms) terms << tr("“%1”").arg(displayText(term));
    terms_->setText(terms.isEmpty() ? QString()
                                    : tr("Names with %1").arg(terms.join(QStringLiteral(", "))));
    terms_->setVisible(!terms.isEmpty());
    check();
}

void NewSmartFolderSheet::check() {
    QString note;
    const bool isFilled = !name_->text().trimmed().isEmpty() && !query_->text().trimmed().isEmpty();
    bool isFine = isFilled;
    if (!name_->text().trimmed().isEmpty()) {
        try {
            SmartFolders::requireName(model_.app().lists().smartFolders(),
                                      name_->text().toStdString(),
                                      changed_ ? changed_->id : UUID());
        } catch (const ListError& error) {
            note = coreSentence(error.what());
            isFine = false;
        }
    }
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
    name_->setAccessibleDescription(note);
    save_->setEnabled(isFine);
}

void NewSmartFolderSheet::apply() {
    if (!save_->isEnabled()) return;
    SmartFolder folder = changed_.value_or(SmartFolder());
    folder.name = name_->text().toStdString();
    folder.query = query_->text().toStdString();
    folder.scope = static_cast<SearchScopeSetting>(scope_->currentData().toInt());
    try {
        if (changed_)
            model_.app().lists().changeSmartFolder(folder);
        else
            model_.app().lists().addSmartFolder(folder.name, folder.query, folder.scope);
    } catch (const ListError&) {
        return check();  // Taken by another process a moment ago.
    }
    finish();
}

}  // namespace tarn
