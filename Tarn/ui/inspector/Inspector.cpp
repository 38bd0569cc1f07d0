#include "Tarn/ui/inspector/Inspector.h"

#include <algorithm>
#include <utility>

#include <QtCore/QLocale>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/HistoryModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/PreviewFolderSize.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/inspector/FactList.h"
#include "Tarn/ui/inspector/FactText.h"
#include "Tarn/ui/inspector/ItemStack.h"
#include "Tarn/ui/inspector/TagEditor.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// Height of previews that take what they get: text, lists, pages.
constexpr double usualShape = 0.9;  // of the width
constexpr int shortest = 96;

bool isSameFile(const FileItem& a, const FileItem& b) {
    return a.url == b.url && a.modified == b.modified && a.size == b.size;
}

}  // namespace

Inspector::Inspector(QWidget* parent)
    : QWidget(parent),
      scroll_(new QScrollArea(this)),
      preview_(new PreviewWidget(PreviewPlace::inspector)),
      stack_(new ItemStack),
      name_(new FactText),
      caption_(new FactText),
      tags_(new TagEditor),
      facts_(new FactList),
      measure_(new QPushButton(tr("Calculate Size"))),
      permissions_(new QPushButton(tr("Permissions…"))) {
    setAccessibleName(tr("Inspector"));
    setMinimumWidth(Metrics::inspectorMinimum);
    setMaximumWidth(Metrics::inspectorMaximum);
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(Metrics::space16, Metrics::space16, Metrics::space16,
                               Metrics::space16);
    column->setSpacing(Metrics::space12);
    column->addWidget(preview_);
    column->addWidget(stack_);
    auto* titles = new QVBoxLayout;
    titles->setSpacing(Metrics::space2);
    titles->addWidget(name_);
    titles->addWidget(caption_);
    column->addLayout(titles);
    column->addWidget(tags_);
    column->addWidget(facts_);
    column->addWidget(measure_, 0, Qt::AlignLeading);
    column->addWidget(permissions_, 0, Qt::AlignLeading);
    column->addStretch(1);
    scroll_->setWidget(content);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    for (QWidget* ground : {static_cast<QWidget*>(scroll_), scroll_->viewport(), content})
        ground->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll_);
    applyFonts();
    soon_.setSingleShot(true);
    soon_.setInterval(0);
    connect(&soon_, &QTimer::timeout, this, &Inspector::update);
    connect(preview_, &PreviewWidget::changed, this, &Inspector::layOutPreview);
    connect(preview_, &PreviewWidget::factChanged, this, [this] {
        layOutPreview();
        showFacts();
    });
    // Return presses it, as the space bar does.
    measure_->setAutoDefault(true);
    connect(measure_, &QPushButton::clicked, this, &Inspector::measureFolder);
    connect(permissions_, &QPushButton::clicked, this, [this] {
        std::vector<URL> urls;
        for (const FileItem& item : items_) urls.push_back(item.url);
        if (window_) window_->showSheet({WindowSheet::Which::permissions, urls});
    });
    showNothing();
}

Inspector::~Inspector() { token_.cancel(); }

void Inspector::applyFonts() {
    name_->setFontAndAlign(Fonts::title(), Qt::AlignLeading);
    caption_->setFontAndAlign(Fonts::small(), Qt::AlignLeading);
    QPalette palette = caption_->palette();
    palette.setColor(QPalette::Text, Colors::current().secondary);
    caption_->setPalette(palette);
}

const std::vector<PreviewFact>& Inspector::facts() const { return facts_->facts(); }
QString Inspector::title() const { return name_->value(); }

void Inspector::setPane(WindowModel* window, PaneModel* pane) {
    if (pane_) {
        disconnect(pane_, nullptr, this, nullptr);
        disconnect(&pane_->selection(), nullptr, this, nullptr);
    }
    window_ = window;
    pane_ = pane;
    // Whether folders are measured.
    if (window) {
        connect(&window->app(), &AppModel::settingsChanged, &soon_, qOverload<>(&QTimer::start),
                Qt::UniqueConnection);
        connect(&window->app().history(), &HistoryModel::changed, this, &Inspector::readAgain,
                Qt::UniqueConnection);
    }
    if (pane) {
        const auto later = [this] { soon_.start(); };
        connect(&pane->selection(), &QItemSelectionModel::selectionChanged, this, later);
        connect(pane, &PaneModel::rowsChanged, this, later);
        connect(pane, &PaneModel::locationChanged, this, later);
        connect(pane, &PaneModel::tagColorsChanged, this, later);
    }
    soon_.start();
}

void Inspector::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    soon_.start();
}

void Inspector::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    soon_.stop();
    showNothing();
}

void Inspector::moveOn() {
    token_.cancel();
    token_ = CancelToken();
    ++generation_;
    isMeasuring_ = false;
}

void Inspector::update() {
    if (!isVisible()) return;
    if (!pane_) {
        showNothing();
        return;
    }
    std::vector<FileItem> items = pane_->selectedItems();
    if (items.empty())
        loadFolder();
    else
        showItems(std::move(items), /*isPlace=*/false);
}

void Inspector::loadFolder() {
    const Location& location = pane_->location();
    if (!location.isFolder() && !location.isArchive()) {
        showNothing();
        return;
    }
    if (isPlace_ && items_.size() == 1 && items_.front().url == location.url) return;
    moveOn();
    TaskPool::shared().run([url = location.url, generation = generation_, self = QPointer(this)] {
        auto item = FileItem::load(url);
        MainThread::post(self, [generation, item = std::move(item)](Inspector& there) {
            if (generation != there.generation_) return;
            if (item)
                there.showItems({*item}, /*isPlace=*/true);
            else
                there.showNothing();
        });
    });
}

void Inspector::showNothing() {
    moveOn();
    items_.clear();
    isPlace_ = false;
    read_.reset();
    folderSize_.reset();
    preview_->clear();
    preview_->hide();
    stack_->hide();
    name_->setValue(pane_ && isVisible() ? tr("Nothing selected") : QString());
    caption_->hide();
    tags_->hide();
    facts_->setFacts({});
    measure_->hide();
    permissions_->hide();
}

void Inspector::showItems(std::vector<FileItem> items, bool isPlace) {
    const bool isSame =
        items.size() == 1 && items_.size() == 1 && isSameFile(items.front(), items_.front());
    const bool isOne = items.size() == 1;
    items_ = std::move(items);
    isPlace_ = isPlace;
    preview_->setVisible(isOne);
    stack_->setVisible(!isOne);
    caption_->show();
    tags_->setItems(isPlace || pane_->showsMembers() ? nullptr : window_.data(), items_);
    tags_->setVisible(!isPlace && !pane_->showsMembers());
    if (isOne) {
        const FileItem& item = items_.front();
        name_->setValue(displayText(item.name.empty() ? item.url.path() : item.name));
        if (!isSame) {
            moveOn();
            read_.reset();
            folderSize_.reset();
            if (pane_->showsMembers())
                preview_->show(item, PreviewKind::icon);
            else
                preview_->show(item);
            readFacts();
            layOutPreview();
        }
    } else {
        moveOn();
        read_.reset();
        folderSize_.reset();
        preview_->clear();
        stack_->setItems(items_);
        name_->setValue(Counts::items(static_cast<std::int64_t>(items_.size())));
    }
    permissions_->setVisible(!pane_->showsMembers());
    showFacts();
    const bool showsSizes = window_ && window_->app().settings().showFolderSizes;
    const bool isFolder = isOne && items_.front().isDirectory && !pane_->showsMembers();
    if (isFolder && !isPlace && showsSizes && !folderSize_ && !isMeasuring_) measureFolder();
}

void Inspector::readAgain() {
    // Permissions may have changed, which the item does not show.
    if (isVisible() && pane_ && items_.size() == 1) readFacts();
}

void Inspector::readFacts() {
    if (pane_->showsMembers()) return;
    TaskPool::shared().run(
        [item = items_.front(), generation = generation_, token = token_, self = QPointer(this)] {
            if (token.isCancelled()) return;
            PreviewFacts facts = PreviewFacts::read(item);
            MainThread::post(self, [generation, facts = std::move(facts)](Inspector& there) {
                if (generation != there.generation_) return;
                there.read_ = facts;
                there.showFacts();
            });
        });
}

void Inspector::showFacts() {
    if (items_.empty()) return;
    if (items_.size() > 1) {
        std::vector<PreviewFact> lines = PreviewFacts::lines(items_);
        caption_->setValue(tr("Selected"));
        caption_->hide();
        facts_->setFacts(lines);
        measure_->hide();
        return;
    }
    const FileItem& item = items_.front();
    std::vector<PreviewFact> lines =
        PreviewFacts::lines(item, read_ ? &*read_ : nullptr, preview_->fact());
    QString caption = kindText(item);
    if (item.isDirectory) {
        QString size;
        if (isMeasuring_) size = tr("Calculating…");
        if (folderSize_) {
            const QString bytes = Counts::bytes(folderSize_->bytes);
            const QString items = Counts::items(folderSize_->items);
            size = folderSize_->isWhole
                       ? tr("%1 (%2)").arg(bytes, items)
                       : tr("More than %1: some folders cannot be read").arg(bytes);
        }
        if (!size.isEmpty() && !lines.empty()) lines.insert(lines.begin() + 1, {tr("Size"), size});
    } else if (item.size) {
        caption = tr("%1 · %2").arg(caption, Counts::bytes(*item.size));
    }
    caption_->setValue(caption);
    measure_->setVisible(item.isDirectory && !folderSize_ && !isMeasuring_ &&
                         !(pane_ && pane_->showsMembers()));
    facts_->setFacts(lines);
}

void Inspector::measureFolder() {
    if (items_.size() != 1) return;
    isMeasuring_ = true;
    showFacts();
    TaskPool::shared().run(
        [url = items_.front().url, generation = generation_, token = token_,
         self = QPointer(this)] {
            const PreviewFolderSize size = PreviewFolderSize::measure(url, token);
            if (token.isCancelled()) return;
            MainThread::post(self, [generation, size](Inspector& there) {
                if (generation != there.generation_) return;
                there.isMeasuring_ = false;
                there.folderSize_ = std::make_unique<PreviewFolderSize>(size);
                there.showFacts();
            });
        },
        TaskPriority::background);
}

void Inspector::layOutPreview() {
    const int room = width() - 2 * Metrics::space16;
    const int wanted = preview_->heightFor(room);
    const int usual = static_cast<int>(room * usualShape);
    preview_->setFixedHeight(std::clamp(wanted > 0 ? wanted : usual, shortest, 2 * usual));
}

void Inspector::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOutPreview();
}

void Inspector::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::PaletteChange)
        applyFonts();
    QWidget::changeEvent(event);
}

void Inspector::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    painter.fillRect(rect(), colors.window);
    const int x = isRightToLeft() ? width() - Metrics::hairline : 0;
    painter.fillRect(x, 0, Metrics::hairline, height(), colors.separator);
}

}  // namespace tarn
