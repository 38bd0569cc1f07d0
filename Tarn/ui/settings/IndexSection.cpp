#include "Tarn/ui/settings/IndexSection.h"

#include <algorithm>
#include <iterator>

#include <QtCore/QLocale>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/IndexSettings.h"
#include "Tarn/ui/search/FlowLayout.h"
#include "Tarn/ui/settings/FoldingRow.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/text/ChoiceList.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

/// Decimal megabytes; 0 is no limit.
constexpr std::int64_t budgets[] = {500, 1000, 2000, 5000, 10'000, 0};
constexpr int shownFolders = 4;
constexpr int barSteps = 1000;
/// From this width on a row is one line.
constexpr int besideFrom = 400;

/// The list of folders, as high as a few of them.
class FolderList final : public QListWidget {
public:
    using QListWidget::QListWidget;
    QSize sizeHint() const override {
        const int rows = std::clamp(count(), 2, shownFolders);
        return {QListWidget::sizeHint().width(), rows * Metrics::rowDefault + 2 * frameWidth()};
    }
    QSize minimumSizeHint() const override { return {1, sizeHint().height()}; }
};

/// The outline around a list.
class Well final : public QWidget {
public:
    explicit Well(QWidget* content) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(Metrics::space2, Metrics::space4, Metrics::space2, Metrics::space4);
        box->addWidget(content);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        Paint::outline(painter, rect(), Metrics::radiusRow, Colors::current().border,
                       Metrics::hairline);
    }
};

QLabel* makeNote() {
    auto* note = new QLabel;
    note->setTextFormat(Qt::PlainText);
    note->setForegroundRole(QPalette::PlaceholderText);
    note->setWordWrap(true);
    note->setMinimumWidth(1);
    return note;
}

}  // namespace

IndexSection::IndexSection(WindowModel& model, QWidget& window, QWidget* parent)
    : QWidget(parent),
      model_(model),
      window_(window),
      index_(model.app().contentIndex()),
      on_(new WrappingCheckBox(tr("Find files by the text in them"))),
      ocr_(new WrappingCheckBox(tr("Read text in pictures and scanned pages"))),
      languagesButton_(new QPushButton),
      languagesMenu_(new QMenu(this)),
      list_(new FolderList),
      add_(new QPushButton(tr("Add Folder…"))),
      leaveOut_(new QPushButton(tr("Leave Out…"))),
      remove_(new QPushButton),
      budget_(new ChoiceList),
      contents_(makeNote()),
      activity_(makeNote()),
      bar_(new QProgressBar),
      rebuild_(new QPushButton) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space8);
    makeSwitches();
    makeFolders();
    makeStatus();
    connect(&model.app(), &AppModel::settingsChanged, this, &IndexSection::showSettings);
    connect(&index_, &ContentIndexService::changed, this, &IndexSection::showStatus);
    showSettings();
    showLanguages();
    index_.refreshStatus();
    model.app().pool().run([self = QPointer<IndexSection>(this)] {
        MainThread::post(self, [all = OCRLanguages::available()](IndexSection& section) {
            section.takeLanguages(all);
        });
    });
}

// --- Parts

void IndexSection::makeSwitches() {
    auto* column = static_cast<QVBoxLayout*>(layout());
    auto* about = makeNote();
    about->setText(
        tr("Tarn reads documents in the background and keeps their words on this computer."));
    about->setIndent(on_->textLeft());
    column->addWidget(on_);
    column->addWidget(about);
    column->addWidget(ocr_);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(Margins::directed(ocr_->textLeft(), 0, 0, 0));
    row->addWidget(languagesButton_);
    row->addStretch();
    column->addLayout(row);
    languagesButton_->setMenu(languagesMenu_);
    languagesButton_->setAccessibleName(tr("Languages of text in pictures"));
    connect(on_, &QCheckBox::clicked, this, [this](bool isOn) {
        change([isOn](AppSettings& settings) { settings.indexFileContents = isOn; });
    });
    connect(ocr_, &QCheckBox::clicked, this, [this](bool isOn) {
        change([isOn](AppSettings& settings) { settings.readTextInImages = isOn; });
    });
}

void IndexSection::makeFolders() {
    auto* column = static_cast<QVBoxLayout*>(layout());
    auto* label = new QLabel(tr("Folders"));
    label->setBuddy(list_);
    list_->setAccessibleName(tr("Folders whose files are read"));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    column->addSpacing(Metrics::space4);
    column->addWidget(label);
    column->addWidget(new Well(list_));
    auto* buttons = new FlowLayout(nullptr, Metrics::space8);
    for (QPushButton* button : {add_, leaveOut_, remove_}) buttons->addWidget(button);
    column->addLayout(buttons);
    leaveOut_->setToolTip(tr("Nothing in the folder is read, and what was read is forgotten."));
    connect(list_, &QListWidget::currentRowChanged, this, &IndexSection::followChosen);
    connect(add_, &QPushButton::clicked, this,
            [this] { choose(tr("Add Folder"), &IndexSection::addFolder); });
    connect(leaveOut_, &QPushButton::clicked, this,
            [this] { choose(tr("Leave Out"), &IndexSection::leaveOut); });
    connect(remove_, &QPushButton::clicked, this, &IndexSection::removeChosen);
}

void IndexSection::makeStatus() {
    auto* column = static_cast<QVBoxLayout*>(layout());
    auto* label = new QLabel(tr("The index may take"));
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    label->setBuddy(budget_);
    budget_->setAccessibleName(tr("Room that the index may take"));
    for (const std::int64_t megabytes : budgets)
        budget_->addItem(megabytes == 0 ? tr("any room") : Counts::bytes(megabytes * 1'000'000),
                         static_cast<qlonglong>(megabytes));
    column->addSpacing(Metrics::space4);
    column->addWidget(new FoldingRow(*label, *budget_, besideFrom));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(Metrics::space4);
    texts->addWidget(contents_);
    texts->addWidget(activity_);
    auto* status = new QHBoxLayout;
    status->setSpacing(Metrics::space12);
    status->addLayout(texts, 1);
    status->addWidget(rebuild_, 0, Qt::AlignTop);
    column->addSpacing(Metrics::space4);
    column->addLayout(status);
    bar_->setTextVisible(false);
    bar_->setFixedHeight(Metrics::space8);
    bar_->setAccessibleName(tr("Files read"));
    QSizePolicy policy = bar_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    bar_->setSizePolicy(policy);
    column->addWidget(bar_);
    connect(budget_, &QComboBox::activated, this, [this] {
        const auto megabytes = budget_->currentData().toLongLong();
        change([megabytes](AppSettings& settings) { settings.indexBudgetMB = megabytes; });
    });
    connect(rebuild_, &QPushButton::clicked, this, &IndexSection::rebuild);
}

// --- What is set

void IndexSection::change(const std::function<void(AppSettings&)>& change) {
    AppSettings settings = model_.app().settings();
    change(settings);
    model_.app().setSettings(std::move(settings));
}

void IndexSection::showSettings() {
    const AppSettings& settings = model_.app().settings();
    const bool isOn = settings.indexFileContents;
    on_->setChecked(isOn);
    ocr_->setChecked(settings.readTextInImages);
    ocr_->setEnabled(isOn);
    for (QWidget* part : {static_cast<QWidget*>(list_), static_cast<QWidget*>(add_),
                          static_cast<QWidget*>(leaveOut_), static_cast<QWidget*>(budget_)})
        part->setEnabled(isOn);
    int budget = budget_->findData(static_cast<qlonglong>(settings.indexBudgetMB));
    if (budget < 0) {
        // Set by hand in the file.
        budget_->addItem(Counts::bytes(settings.indexBudgetMB * 1'000'000),
                         static_cast<qlonglong>(settings.indexBudgetMB));
        budget = budget_->count() - 1;
    }
    budget_->setCurrentIndex(budget);
    showFolders();
    showLanguages();
    showStatus();
}

void IndexSection::showFolders() {
    const AppSettings& settings = model_.app().settings();
    const int before = list_->currentRow();
    folders_.clear();
    for (const URL& url : IndexSettings::read(settings.indexFolders))
        folders_.push_back({url, Row::included});
    for (const URL& url : IndexSettings::read(settings.indexExcludedFolders))
        folders_.push_back({url, Row::excluded});
    list_->clear();
    for (const Folder& folder : folders_) {
        const bool isIncluded = folder.kind == Row::included;
        const QString path =
            folder.url == Paths::home() ? tr("Home") : displayText(Paths::abbreviate(folder.url));
        auto* item = new QListWidgetItem(
            Icons::symbol(isIncluded ? "folder" : "eye.slash", Icons::Tint::secondary),
            isIncluded ? path : tr("%1 (left out)").arg(path), list_);
        item->setSizeHint({0, Metrics::rowDefault});
        item->setToolTip(displayText(folder.url.path()));
    }
    if (!folders_.empty())
        list_->setCurrentRow(std::clamp(before, 0, static_cast<int>(folders_.size()) - 1));
    list_->updateGeometry();
    followChosen();
}

void IndexSection::followChosen() {
    const int row = list_->currentRow();
    const bool isChosen = row >= 0 && row < static_cast<int>(folders_.size());
    const bool isExcluded =
        isChosen && folders_[static_cast<std::size_t>(row)].kind == Row::excluded;
    remove_->setText(isExcluded ? tr("Read It Again") : tr("Forget This Folder…"));
    remove_->setEnabled(isChosen && on_->isChecked());
}

void IndexSection::choose(const QString& title, void (IndexSection::*then)(const URL&)) {
    auto* dialog = new QFileDialog(&window_, title, displayText(Paths::home().path()));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this, then](const QString& path) {
        (this->*then)(URL::fromPath(QFile::encodeName(path).toStdString()));
    });
    dialog->open();
}

void IndexSection::addFolder(const URL& folder) {
    change([&folder](AppSettings& settings) { IndexSettings::add(settings, folder); });
}

void IndexSection::leaveOut(const URL& folder) {
    change([&folder](AppSettings& settings) { IndexSettings::exclude(settings, folder); });
    index_.forget(folder);
}

QuestionSheet* IndexSection::ask(const QString& title, const QString& sentence,
                                 const QString& yes) {
    auto* question = new QuestionSheet({title, sentence, yes, tr("Cancel")}, window_);
    question->open(question->no());
    return question;
}

void IndexSection::removeChosen() {
    const int row = list_->currentRow();
    if (row < 0 || row >= static_cast<int>(folders_.size())) return;
    const Folder folder = folders_[static_cast<std::size_t>(row)];
    if (folder.kind == Row::excluded) {
        change([&folder](AppSettings& settings) { IndexSettings::include(settings, folder.url); });
        return;
    }
    const QString name = displayText(Paths::displayName(folder.url));
    connect(ask(tr("Forget “%1”?").arg(name),
                tr("What was read in this folder is removed from the index. Its files stay as "
                   "they are."),
                tr("Forget Folder")),
            &QuestionSheet::accepted, this, [this, url = folder.url] {
                change([&url](AppSettings& settings) { IndexSettings::remove(settings, url); });
                index_.forget(url);
            });
}

void IndexSection::rebuild() {
    const bool isOn = on_->isChecked();
    connect(ask(isOn ? tr("Rebuild the Index?") : tr("Clear the Index?"),
                isOn ? tr("Everything is read again, which may take hours. Until then, searches "
                          "for text take longer.")
                     : tr("Searches for text take longer without it."),
                isOn ? tr("Rebuild") : tr("Clear")),
            &QuestionSheet::accepted, this, [this] { index_.rebuild(); });
}

// --- Languages

void IndexSection::takeLanguages(std::vector<OCRLanguages::Language> languages) {
    languages_ = std::move(languages);
    showLanguages();
}

void IndexSection::showLanguages() {
    const AppSettings& settings = model_.app().settings();
    languagesMenu_->clear();
    QStringList chosen;
    for (const auto& language : languages_) {
        const bool isOn =
            std::ranges::any_of(settings.ocrLanguages, [&language](const std::string& stored) {
                return OCRLanguages::isSame(stored, language.tag);
            });
        if (isOn) chosen << language.title;
        QAction* action = languagesMenu_->addAction(
            language.title, this, [this, tag = language.tag, isOn] { toggleLanguage(tag, !isOn); });
        action->setCheckable(true);
        action->setChecked(isOn);
    }
    // What is set stays set, though its data is not here.
    for (const std::string& stored : settings.ocrLanguages) {
        const bool isHere = std::ranges::any_of(languages_, [&stored](const auto& language) {
            return OCRLanguages::isSame(stored, language.tag);
        });
        if (isHere || languages_.empty()) continue;
        QAction* action =
            languagesMenu_->addAction(tr("%1 (not installed)").arg(OCRLanguages::title(stored)),
                                      this, [this, stored] { toggleLanguage(stored, false); });
        action->setCheckable(true);
        action->setChecked(true);
    }
    languagesButton_->setText(chosen.isEmpty()     ? tr("Languages")
                              : chosen.size() == 1 ? chosen.front()
                                                   : Counts::languages(chosen.size()));
    languagesButton_->setEnabled(settings.indexFileContents && settings.readTextInImages &&
                                 !languages_.empty());
    languagesButton_->setToolTip(languages_.empty()
                                     ? tr("No data for recognising text is installed.")
                                     : chosen.join(QStringLiteral(", ")));
}

void IndexSection::toggleLanguage(const std::string& tag, bool isOn) {
    change([&](AppSettings& settings) {
        std::erase_if(settings.ocrLanguages, [&tag](const std::string& stored) {
            return OCRLanguages::isSame(stored, tag);
        });
        if (isOn) settings.ocrLanguages.push_back(tag == "en" ? "en-US" : tag);
    });
}

// --- What the index holds

QString IndexSection::contents(const ContentIndexService& index) {
    const auto& status = index.status();
    if (!status) return tr("Counting…");
    if (status->files == 0) return tr("Nothing was read yet.");
    QStringList parts = {tr("%1 with text").arg(Counts::files(status->withText)),
                         Counts::bytes(status->bytesOnDisk)};
    if (status->lastIndexed)
        parts << tr("last read: %1")
                     .arg(displayText(Format::date(
                         Date::fromUnix(static_cast<std::int64_t>(*status->lastIndexed)))));
    return parts.join(QStringLiteral(" · "));
}

QString IndexSection::activity(const ContentIndexService& index) {
    using State = ContentIndexService::State;
    QString text;
    switch (index.state()) {
        case State::off:
            text = tr("Nothing is read.");
            break;
        case State::waiting:
            text = tr("Starts in a moment.");
            break;
        case State::upToDate:
            text = tr("Everything is read.");
            break;
        case State::stopped:
            text = tr("Stopped until the next start.");
            break;
        case State::elsewhere:
            text = tr("Another program is reading files for the index.");
            break;
        case State::running:
            text = index.isForgetting() ? tr("Forgetting what was read…")
                   : index.isPaused()   ? tr("Paused")
                   : index.held()       ? ContentIndexService::sentence(*index.held())
                   : index.total() > 0 && index.done() == index.total()
                       ? tr("Writing what was read…")
                   : index.total() > 0
                       ? tr("Reading %1 of %2")
                             .arg(QLocale().toString(static_cast<qlonglong>(index.done())),
                                  Counts::files(index.total()))
                       : tr("Looking for new files…");
            break;
    }
    if (index.reachedBudget())
        text = tr("The index takes all the room it may. Older files are not in it.");
    if (!index.problem().isEmpty()) text = index.problem();
    return text;
}

void IndexSection::showStatus() {
    contents_->setText(contents(index_));
    activity_->setText(activity(index_));
    const bool isReading =
        index_.state() == ContentIndexService::State::running && index_.total() > 0;
    bar_->setVisible(isReading);
    if (isReading) {
        bar_->setRange(0, barSteps);
        bar_->setValue(static_cast<int>(index_.done() * barSteps / index_.total()));
    }
    rebuild_->setText(on_->isChecked() ? tr("Rebuild…") : tr("Clear…"));
    rebuild_->setEnabled(index_.status() && (on_->isChecked() || index_.status()->files > 0));
}

}  // namespace tarn
