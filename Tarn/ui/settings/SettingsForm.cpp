#include "Tarn/ui/settings/SettingsForm.h"

#include <algorithm>
#include <utility>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/settings/FoldingRow.h"
#include "Tarn/ui/text/ChoiceList.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// Lists of one page are equally wide, so that their edges make a line; between these bounds.
constexpr int listWidth = 200;
constexpr int widestList = 240;
/// From this width on a row is one line.
constexpr int besideFrom = 2 * listWidth;

}  // namespace

SettingsForm::SettingsForm(AppModel& app, QWidget* parent)
    : QWidget(parent), app_(app), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(Metrics::space8);
}

void SettingsForm::start() {
    connect(&app_, &AppModel::settingsChanged, this, [this] { showSettings(); });
    showSettings();
}

QLabel* SettingsForm::makeNote(const QString& text) {
    auto* note = new QLabel(text);
    note->setTextFormat(Qt::PlainText);
    note->setFont(Fonts::small());
    note->setForegroundRole(QPalette::PlaceholderText);
    note->setWordWrap(true);
    note->setMinimumWidth(1);
    return note;
}

WrappingCheckBox* SettingsForm::addSwitch(const QString& text) {
    auto* box = new WrappingCheckBox(text);
    column_->addWidget(box);
    return box;
}

QLabel* SettingsForm::addNoteOf(const WrappingCheckBox& box) {
    QLabel* note = makeNote();
    // Below the text of the switch, not below its box.
    note->setIndent(box.textLeft());
    column_->addWidget(note);
    return note;
}

QCheckBox* SettingsForm::addSwitch(const QString& text, bool AppSettings::*field,
                                   const QString& note) {
    WrappingCheckBox* box = addSwitch(text);
    if (!note.isEmpty()) {
        addNoteOf(*box)->setText(note);
        box->setAccessibleDescription(note);
    }
    connect(box, &QCheckBox::clicked, this, [this, field](bool isOn) {
        change([field, isOn](AppSettings& settings) { settings.*field = isOn; });
    });
    rows_.push_back(
        [box, field](const AppSettings& settings) { box->setChecked(settings.*field); });
    return box;
}

QComboBox* SettingsForm::addList(const QString& label) {
    auto* text = new QLabel(label);
    auto* list = new ChoiceList;
    list->setAccessibleName(label);
    lists_.push_back(list);
    addRow(*text, *list);
    return list;
}

void SettingsForm::addRow(QLabel& label, QWidget& control) {
    label.setTextFormat(Qt::PlainText);
    label.setWordWrap(true);
    label.setMinimumWidth(1);
    label.setBuddy(&control);
    column_->addWidget(new FoldingRow(label, control, besideFrom));
}

void SettingsForm::fitLists() {
    int width = listWidth;
    for (const QComboBox* list : lists_) width = std::max(width, list->sizeHint().width());
    for (QComboBox* list : lists_) list->setFixedWidth(std::min(width, widestList));
}

QComboBox* SettingsForm::addChoices(const QString& label, const std::vector<Choice>& choices,
                                    std::function<int(const AppSettings&)> read,
                                    std::function<void(AppSettings&, int)> write) {
    QComboBox* list = addList(label);
    for (const Choice& choice : choices) list->addItem(choice.title, choice.value);
    connect(list, &QComboBox::activated, this, [this, list, write = std::move(write)] {
        change([&write, value = list->currentData().toInt()](AppSettings& settings) {
            write(settings, value);
        });
    });
    rows_.push_back([list, read = std::move(read)](const AppSettings& settings) {
        list->setCurrentIndex(list->findData(read(settings)));
    });
    return list;
}

void SettingsForm::addNote(const QString& text) { column_->addWidget(makeNote(text)); }

void SettingsForm::addGap() { column_->addSpacing(Metrics::space8); }

void SettingsForm::change(const std::function<void(AppSettings&)>& change) {
    AppSettings settings = app_.settings();
    change(settings);
    app_.setSettings(settings);
}

void SettingsForm::showSettings() {
    for (const auto& row : rows_) row(app_.settings());
    fitLists();
}

}  // namespace tarn
