#include "Tarn/ui/settings/ShortcutSection.h"

#include <algorithm>
#include <set>

#include <QtGui/QAccessible>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/records/CommandList.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/search/FlowLayout.h"
#include "Tarn/ui/settings/FoldingRow.h"
#include "Tarn/ui/settings/ShortcutField.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ClearButton.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// From this width on, a command and its keys stand in one line.
constexpr int besideFrom = 320;

using Keys = std::map<std::string, std::vector<std::string>, std::less<>>;

/// “Ctrl+D was taken from “Duplicate”.” for every key that ran another command before.
QStringList taken(const Keys& before, const Keys& after, std::string_view changed) {
    std::map<std::string, std::string> owners;
    for (const auto& [id, keys] : after)
        for (const std::string& key : keys) owners[key] = id;
    QStringList sentences;
    for (const TarnCommand& command : CommandRegistry::all()) {
        const auto had = before.find(command.id);
        if (command.id == changed || had == before.end()) continue;
        // “delete” stands for two keys, of which one tells all.
        std::set<std::string> told;
        for (const std::string& key : had->second) {
            const auto owner = owners.find(key);
            if (owner == owners.end() || owner->second == command.id) continue;
            if (!told.insert(owner->second).second) continue;
            sentences.append(ShortcutSection::tr("%1 was taken from “%2”.")
                                 .arg(KeyText::shown(key), CommandRegistry::title(command)));
        }
    }
    return sentences;
}

}  // namespace

ShortcutSection::ShortcutSection(AppModel& app, QWidget* parent)
    : QWidget(parent),
      app_(app),
      filter_(new QLineEdit),
      preset_(new QPushButton(tr("Use Finder Keys"))),
      resetAll_(new QPushButton(tr("Reset All"))),
      column_(new QVBoxLayout(this)),
      nothing_(new QLabel(tr("No command fits."))),
      note_(nullptr),
      noteText_(new QLabel),
      noteUndo_(new QPushButton(tr("Undo"))) {
    setObjectName(QStringLiteral("shortcutSection"));
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    column_->addWidget(makeTop());
    note_ = makeNote();
    column_->addWidget(note_);
    nothing_->setForegroundRole(QPalette::PlaceholderText);
    nothing_->setContentsMargins(0, Metrics::space12, 0, 0);
    nothing_->hide();
    column_->addWidget(nothing_);
    std::string_view group;
    for (const TarnCommand& command : CommandRegistry::all()) {
        if (command.group != group) {
            group = command.group;
            auto* heading = new QLabel(CommandRegistry::groupTitle(group));
            heading->setFont(Fonts::semibold(Fonts::small()));
            heading->setForegroundRole(QPalette::PlaceholderText);
            heading->setContentsMargins(0, Metrics::space16, 0, Metrics::space4);
            column_->addWidget(heading);
            groups_.push_back({heading, {}});
        }
        groups_.back().rows.push_back(rows_.size());
        rows_.push_back(makeRow(command));
        // Few of them stand below their headings, and do not share the page.
        rows_.back().widget->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
        column_->addWidget(rows_.back().widget);
    }
    connect(&app, &AppModel::settingsChanged, this, [this] {
        // What the button would bring back is not what there was before this.
        if (!isChanging_) hideNote();
        showSettings();
    });
    showSettings();
}

// --- Parts

QWidget* ShortcutSection::makeTop() {
    auto* top = new QWidget;
    auto* rows = new QVBoxLayout(top);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(Metrics::space8);
    filter_->setPlaceholderText(tr("Find a command or a key"));
    filter_->setAccessibleName(tr("Find a command or a key"));
    ClearButton::add(*filter_);
    preset_->setToolTip(
        tr("Ctrl+Shift+D goes to the desktop; Duplicates and the Command Palette have no keys."));
    auto* buttons = new FlowLayout(nullptr, Metrics::space8);
    buttons->addWidget(preset_);
    buttons->addWidget(resetAll_);
    rows->addWidget(filter_);
    rows->addLayout(buttons);
    connect(filter_, &QLineEdit::textChanged, this, &ShortcutSection::filter);
    connect(preset_, &QPushButton::clicked, this, [this] {
        change(-1, Shortcuts::applyFinderPreset, tr("The Finder keys are in use."));
    });
    connect(resetAll_, &QPushButton::clicked, this, [this] {
        change(
            -1,
            [](Shortcuts::Overrides& overrides) {
                overrides.clear();
                return std::vector<std::string_view>();
            },
            tr("Every command has its own keys again."));
    });
    return top;
}

QWidget* ShortcutSection::makeNote() {
    auto* note = new QWidget;
    note->setObjectName(QStringLiteral("shortcutNote"));
    auto* row = new QHBoxLayout(note);
    row->setContentsMargins(Margins::directed(Metrics::iconSmall + Metrics::space8, Metrics::space4,
                                              0, Metrics::space8));
    row->setSpacing(Metrics::space8);
    noteText_->setWordWrap(true);
    noteText_->setMinimumWidth(1);
    noteText_->setTextFormat(Qt::PlainText);
    row->addWidget(noteText_, 1);
    row->addWidget(noteUndo_, 0, Qt::AlignTop);
    note->hide();
    connect(noteUndo_, &QPushButton::clicked, this, &ShortcutSection::undo);
    return note;
}

ShortcutSection::Row ShortcutSection::makeRow(const TarnCommand& command) {
    const QString title = CommandRegistry::title(command);
    auto* names = new QWidget;
    auto* row = new QHBoxLayout(names);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Metrics::space8);
    auto* symbol = new SymbolView(Metrics::iconSmall, Icons::Tint::secondary);
    symbol->setSymbol(command.symbol);
    auto* name = new ElidedLabel(title);
    name->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* more = new ElidedLabel;
    more->setFont(Fonts::small());
    more->setSecondary(true);
    more->setElideMode(Qt::ElideRight);
    auto* field = new ShortcutField;
    field->setObjectName(QString::fromStdString(std::string(command.id)));
    auto* reset = new QToolButton;
    reset->setAutoRaise(true);
    reset->setIcon(Icons::symbol("arrow.uturn.backward"));
    reset->setFixedSize(Metrics::rowCompact, Metrics::rowCompact);
    reset->setAccessibleName(tr("Reset the keys of “%1”").arg(title));
    // Fields stay in one line whether there is something to reset or not.
    QSizePolicy keepsRoom = reset->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    reset->setSizePolicy(keepsRoom);
    row->addWidget(symbol);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(name);
    texts->addWidget(more);
    texts->addStretch();
    row->addLayout(texts, 1);
    auto* keys = new QWidget;
    keys->setMinimumHeight(Metrics::rowRoomy);
    auto* controls = new QHBoxLayout(keys);
    controls->setContentsMargins(0, 0, 0, 0);
    controls->setSpacing(Metrics::space8);
    controls->addWidget(reset);
    controls->addWidget(field);
    auto* widget = new FoldingRow(*names, *keys, besideFrom);

    const int number = static_cast<int>(rows_.size());
    const std::string_view id = command.id;
    connect(field, &ShortcutField::recorded, this, [this, number, id](const Shortcut& shortcut) {
        change(number, [id, shortcut](Shortcuts::Overrides& overrides) {
            return Shortcuts::set(overrides, id, shortcut);
        });
    });
    connect(field, &ShortcutField::cleared, this, [this, number, id] {
        change(number, [id](Shortcuts::Overrides& overrides) {
            Shortcuts::clear(overrides, id);
            return std::vector<std::string_view>();
        });
    });
    connect(field, &ShortcutField::refused, this,
            [this, number](const QString& sentence) { tell(number, sentence, false); });
    connect(reset, &QToolButton::clicked, this, [this, number, id] {
        change(number,
               [id](Shortcuts::Overrides& overrides) { return Shortcuts::reset(overrides, id); });
    });
    return {&command, widget, name, more, field, reset};
}

// --- What is shown

void ShortcutSection::showSettings() {
    const AppSettings& settings = app_.settings();
    const auto shortcuts = Shortcuts::effective(settings.shortcutOverrides);
    const auto keys = CommandRegistry::keys(settings);
    for (const Row& row : rows_) {
        std::optional<Shortcut> own;
        if (const auto found = shortcuts.find(row.command->id); found != shortcuts.end())
            own = found->second;
        row.field->setShortcut(own);
        const QString title = CommandRegistry::title(*row.command);
        row.field->setAccessibleName(
            own ? tr("Keys of “%1”: %2")
                      .arg(title, KeyText::shown(CommandRegistry::portableText(*own)))
                : tr("Keys of “%1”: none").arg(title));
        QStringList others;
        if (const auto found = keys.find(row.command->id); found != keys.end()) {
            const auto main =
                own ? CommandRegistry::portableTexts(*own) : std::vector<std::string>();
            for (const std::string& key : found->second)
                if (std::find(main.begin(), main.end(), key) == main.end())
                    others.append(KeyText::shown(key));
        }
        row.more->setText(others.isEmpty() ? QString() : tr("also %1").arg(others.join(tr(", "))));
        row.more->setVisible(!others.isEmpty());
        const Shortcut& standard = CommandList::find(row.command->id)->shortcut;
        const bool isChanged = own.value_or(Shortcut()) != standard;
        row.reset->setVisible(isChanged);
        row.reset->setToolTip(
            standard.key.empty()
                ? tr("Take the keys away")
                : tr("Back to %1").arg(KeyText::shown(CommandRegistry::portableText(standard))));
    }
    resetAll_->setEnabled(!settings.shortcutOverrides.empty());
    filter(filter_->text());
}

void ShortcutSection::filter(const QString& text) {
    const QString wanted = text.trimmed();
    bool hasAny = false;
    for (const Group& group : groups_) {
        bool isShown = false;
        for (const std::size_t number : group.rows) {
            const Row& row = rows_[number];
            const bool fits = wanted.isEmpty() ||
                              row.title->text().contains(wanted, Qt::CaseInsensitive) ||
                              row.field->text().contains(wanted, Qt::CaseInsensitive) ||
                              row.more->text().contains(wanted, Qt::CaseInsensitive);
            row.widget->setVisible(fits);
            isShown = isShown || fits;
        }
        group.heading->setVisible(isShown);
        hasAny = hasAny || isShown;
    }
    nothing_->setVisible(!hasAny);
}

// --- Changes

void ShortcutSection::change(int row, const Change& change, const QString& always) {
    AppSettings settings = app_.settings();
    const auto before = CommandRegistry::keys(settings);
    before_ = settings.shortcutOverrides;
    Shortcuts::reconcile(settings);
    change(settings.shortcutOverrides);
    if (settings.shortcutOverrides == before_) return hideNote();
    const auto after = CommandRegistry::keys(settings);
    isChanging_ = true;
    app_.setSettings(settings);
    isChanging_ = false;
    QStringList sentences =
        row < 0 ? QStringList()
                : taken(before, after, rows_[static_cast<std::size_t>(row)].command->id);
    if (!always.isEmpty()) sentences.prepend(always);
    if (sentences.isEmpty()) return hideNote();
    tell(row, sentences.join(u' '), true);
}

void ShortcutSection::tell(int row, const QString& sentence, bool canUndo) {
    column_->removeWidget(note_);
    const int at = row < 0 ? 1 : column_->indexOf(rows_[static_cast<std::size_t>(row)].widget) + 1;
    column_->insertWidget(at, note_);
    noteText_->setText(sentence);
    noteUndo_->setVisible(canUndo);
    note_->show();
    // Said aloud as well.
    noteText_->setAccessibleName(sentence);
    QAccessibleEvent told(noteText_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void ShortcutSection::hideNote() { note_->hide(); }

void ShortcutSection::undo() {
    AppSettings settings = app_.settings();
    settings.shortcutOverrides = before_;
    hideNote();
    app_.setSettings(settings);
}

}  // namespace tarn
