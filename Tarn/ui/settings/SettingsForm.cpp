#include "Tarn/ui/settings/SettingsForm.h"

#include <algorithm>
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

/// A label and the list that it names, beside each other where there is room for both.
class ListRow final : public QWidget {
public:
    ListRow(QLabel* label, QWidget* list)
        : row_(new QBoxLayout(QBoxLayout::LeftToRight, this)), label_(label), list_(list) {
        row_->setContentsMargins(0, 0, 0, 0);
        row_->addWidget(label, 1);
        row_->addWidget(list);
        place();
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        place();
    }
    void changeEvent(QEvent* event) override {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::FontChange) place();
    }

private:
    void place() {
        const int both = Fonts::textWidth(label_->font(), label_->text()) + Metrics::space12 +
                         list_->sizeHint().width();
        const bool isBeside = width() >= std::min(both, 2 * listWidth);
        row_->setDirection(isBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
        row_->setSpacing(isBeside ? Metrics::space12 : Metrics::space4);
    }

    QBoxLayout* row_;
    QLabel* label_;
    QWidget* list_;
};

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
    auto* text = new QLabel(label);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setMinimumWidth(1);
    auto* list = new SteadyList;
    list->setFixedWidth(listWidth);
    list->setAccessibleName(label);
    text->setBuddy(list);
    column_->addWidget(new ListRow(text, list));
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
