#include "Tarn/ui/settings/SettingsForm.h"

#include <utility>

#include <QtGui/QWheelEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// Notes stand below the text of a switch, not below its box.
constexpr int noteIndent = Metrics::space24;
/// Lists of one page are equally wide, so that their edges make a line.
constexpr int listWidth = 200;

/// A list that the wheel does not change in passing, while the settings are scrolled.
class SteadyList final : public QComboBox {
protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

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

QCheckBox* SettingsForm::addSwitch(const QString& text, bool AppSettings::*field,
                                   const QString& note) {
    auto* box = new QCheckBox(text);
    column_->addWidget(box);
    if (!note.isEmpty()) {
        QLabel* label = makeNote(note);
        label->setContentsMargins(noteIndent, 0, 0, 0);
        column_->addWidget(label);
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
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space12);
    auto* text = new QLabel(label);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setMinimumWidth(1);
    auto* list = new SteadyList;
    list->setFixedWidth(listWidth);
    list->setAccessibleName(label);
    text->setBuddy(list);
    row->addWidget(text, 1);
    row->addWidget(list);
    column_->addLayout(row);
    return list;
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
}

}  // namespace tarn
