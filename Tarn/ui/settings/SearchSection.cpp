#include "Tarn/ui/settings/SearchSection.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/QuickSearchKey.h"
#include "Tarn/ui/settings/HotKeyField.h"

namespace tarn {

SearchSection::SearchSection(AppModel& app, QWidget* parent)
    : SettingsForm(app, parent),
      key_(QuickSearch::current() ? &QuickSearch::current()->key() : nullptr) {
    addChoice(tr("A search looks in"), &AppSettings::defaultSearchScope,
              {{tr("the current folder"), static_cast<int>(SearchScopeSetting::currentFolder)},
               {tr("the home folder"), static_cast<int>(SearchScopeSetting::home)},
               {tr("the whole computer"), static_cast<int>(SearchScopeSetting::thisMac)}});
    addNote(tr("Until another place is chosen below the search field, or named in the search."));
    addGap();
    addQuickSearch();
    start();
}

void SearchSection::addQuickSearch() {
    QCheckBox* isOn =
        addSwitch(tr("Keys open a quick search from any program"), &AppSettings::quickSearchEnabled,
                  tr("Tarn goes on without a window for them, until it is quit."));
    connect(isOn, &QCheckBox::clicked, this, [this](bool turnedOn) {
        if (turnedOn && key_ && key_->state() == QuickSearchKey::State::mustAsk) key_->askDesktop();
    });
    field_ = new HotKeyField;
    field_->setObjectName(QStringLiteral("quickSearchKeys"));
    addRow(*new QLabel(tr("Keys of the quick search")), *field_);
    state_ = makeNote();
    column()->addWidget(state_);
    ask_ = new QPushButton;
    ask_->setObjectName(QStringLiteral("askDesktop"));
    auto* asking = new QHBoxLayout;
    asking->addWidget(ask_);
    asking->addStretch();
    column()->addLayout(asking);
    connect(field_, &HotKeyField::recorded, this, [this](const HotKey& key) {
        refusal_.clear();
        change([&key](AppSettings& settings) { key.store(settings); });
        showKey();
    });
    connect(field_, &HotKeyField::refused, this, [this](const QString& sentence) {
        refusal_ = sentence;
        showKey();
    });
    connect(ask_, &QPushButton::clicked, this, [this] { key_->askDesktop(); });
    if (key_) connect(key_, &QuickSearchKey::changed, this, &SearchSection::showKey);
}

void SearchSection::showSettings() {
    SettingsForm::showSettings();
    if (field_) showKey();
}

void SearchSection::showKey() {
    const bool isOn = app().settings().quickSearchEnabled;
    const HotKey key = HotKey::of(app().settings());
    field_->setKey(key);
    field_->setAccessibleName(tr("Keys of the quick search: %1").arg(field_->text()));
    field_->setEnabled(isOn && (!key_ || key_->followsSettings()));
    const QString sentence = !refusal_.isEmpty() ? refusal_ : key_ ? key_->sentence() : QString();
    state_->setVisible(isOn && !sentence.isEmpty());
    if (state_->text() != sentence) {
        state_->setText(sentence);
        QAccessibleEvent told(state_, QAccessible::Alert);
        if (state_->isVisible()) QAccessible::updateAccessibility(&told);
    }
    ask_->setVisible(key_ && key_->canAskDesktop());
    ask_->setText(key_ && !key_->followsSettings() ? tr("Choose Other Keys…")
                                                   : tr("Ask the Desktop for Keys…"));
}

}  // namespace tarn
