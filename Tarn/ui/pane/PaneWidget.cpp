#include "Tarn/ui/pane/PaneWidget.h"

#include <QtGui/QDropEvent>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStackedLayout>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrag.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/pane/PaneGridView.h"
#include "Tarn/ui/pane/PaneListView.h"
#include "Tarn/ui/pane/PaneMenu.h"
#include "Tarn/ui/places/OverviewPage.h"
#include "Tarn/ui/states/SkeletonRows.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr int sayDuration = 6000;  // milliseconds

}  // namespace

PaneWidget::PaneWidget(WindowModel& window, PaneModel& pane, QWidget* parent)
    : QWidget(parent),
      window_(window),
      pane_(pane),
      pages_(new QStackedLayout(this)),
      list_(new PaneListView(pane, this)),
      grid_(new PaneGridView(pane, this)),
      skeleton_(new SkeletonRows(this)),
      state_(new StatePage(this)),
      overview_(new OverviewPage(pane.overview(), this)),
      pill_(new StatusPill(this)) {
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    for (QWidget* page : {static_cast<QWidget*>(list_), static_cast<QWidget*>(grid_),
                          static_cast<QWidget*>(skeleton_), static_cast<QWidget*>(state_),
                          static_cast<QWidget*>(overview_)})
        pages_->addWidget(page);
    setAcceptDrops(true);
    watch(list_);
    watch(grid_);
    connectThumbnails();
    sayTimer_.setSingleShot(true);
    connect(&sayTimer_, &QTimer::timeout, this, [this] {
        said_.clear();
        showStatus();
    });
    connect(&loading_, &LoadingGate::shownChanged, this, &PaneWidget::showState);
    connect(&taking_, &LoadingGate::shownChanged, this, &PaneWidget::showStatus);
    connect(&window.edits(), &WindowEdits::takingChanged, this,
            [this] { taking_.setLoading(!window_.edits().taking().isEmpty()); });
    connect(&pane.overview(), &PlaceOverview::changed, this, &PaneWidget::showState);
    connect(overview_, &OverviewPage::chosen, this,
            [this](const Location& place) { pane_.navigate(place); });
    connect(state_, &StatePage::actionTriggered, this, &PaneWidget::act);
    connect(&pane, &PaneModel::stateChanged, this, &PaneWidget::showState);
    connect(&pane, &PaneModel::rowsChanged, this, &PaneWidget::showState);
    connect(&pane, &PaneModel::viewModeChanged, this, [this] {
        const bool hadFocus = list_->hasFocus() || grid_->hasFocus();
        const PaneView* before = list_;
        if (view() == list_) before = grid_;
        const auto seen = before->visibleRows();
        showState();
        if (hadFocus) view()->setFocus();
        // What was in sight stays so; above all what the keyboard is at.
        const int current = view()->currentIndex().row();
        if (seen && (current < seen->first || current > seen->last))
            view()->scrollTo(pane_.items().index(seen->first, 0), PaneView::PositionAtTop);
        else
            view()->scrollTo(view()->currentIndex());
    });
    connect(&pane, &PaneModel::locationChanged, this, &PaneWidget::showState);
    connect(&pane, &PaneModel::unfoldingFailed, this, &PaneWidget::say);
    connect(&pane.selection(), &QItemSelectionModel::selectionChanged, this,
            &PaneWidget::showStatus);
    showState();
}

void PaneWidget::watch(PaneView* view) {
    connect(view, &PaneView::activated, this, [this] { window_.openSelection(); });
    connect(view, &PaneView::openedAside, this, [this](const std::vector<FileItem>& items) {
        for (const FileItem& item : items)
            if (const auto place = pane_.inside(item)) window_.openAside(*place);
    });
    connect(view, &PaneView::renamePressed, this, [this] { window_.edits().renameSelection(); });
    connect(view, &PaneView::membersDragged, this, &PaneWidget::dragMembers);
    connect(view, &PaneView::nameEdited, this, &PaneWidget::giveName);
    connect(view, &PaneView::leftAtTop, this, &PaneWidget::leftAtTop);
    connect(view, &PaneView::dropped, this,
            [this](const FileDrop& drop) { drop.perform(window_.operations()); });
    view->setDragPictures([this](const FileItem& item) {
        if (!item.modified || !ThumbnailLoader::canThumbnail(item)) return QPixmap();
        return thumbnails_.cached(item.url, *item.modified);
    });
    connect(view, &PaneView::customContextMenuRequested, this, [this, view](const QPoint& point) {
        // Beside the rows, the place itself is meant.
        if (!view->indexAt(point).isValid()) view->clearSelection();
        openMenu(view->viewport()->mapToGlobal(point));
    });
}

void PaneWidget::connectThumbnails() {
    grid_->setThumbnails([this](const FileItem& item, int pixels) {
        // What lies in an archive is no file that could be looked into.
        if (pane_.location().isArchive() && !pane_.showsResults()) return QPixmap();
        QPixmap picture = thumbnails_.picture(item, pixels);
        picture.setDevicePixelRatio(devicePixelRatioF());
        return picture;
    });
    connect(&thumbnails_, &ThumbnailLoader::ready, grid_,
            [this](const URL& file) { grid_->showThumbnail(file); });
    connect(&pane_, &PaneModel::locationChanged, this, [this] { thumbnails_.cancelAll(); });
    connect(&pane_, &PaneModel::reloaded, this, [this](bool clearThumbnails) {
        if (!clearThumbnails) return;
        thumbnails_.forgetAll();
        grid_->viewport()->update();
    });
    // What has been scrolled past is not worth a picture any more.
    connect(grid_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        std::vector<URL> seen;
        if (const auto rows = grid_->visibleRows())
            for (int row = rows->first; row <= rows->last; ++row)
                seen.push_back(pane_.items().item(row).url);
        thumbnails_.setVisible(seen);
    });
}

PaneView* PaneWidget::view() const {
    if (pane_.viewMode() == ViewMode::list) return list_;
    return grid_;
}

void PaneWidget::enter() {
    if (pages_->currentWidget() == overview_)
        overview_->enter();
    else
        view()->enter();
}

void PaneWidget::say(const QString& sentence) {
    said_ = sentence;
    sayTimer_.start(sayDuration);
    showStatus();
}

void PaneWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    showStatus();
}

bool PaneWidget::stopWaiting() {
    if (!window_.edits().taking().isEmpty()) {
        window_.edits().stopTaking();
        return true;
    }
    if (!pane_.location().isArchive() || !pane_.isLoading() || !pane_.items().isEmpty())
        return false;
    if (pane_.canGoBack())
        pane_.goBack();
    else
        pane_.goUp();
    return true;
}

// --- Drops on a page without rows

void PaneWidget::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void PaneWidget::dragMoveEvent(QDragMoveEvent* event) {
    const auto drop = pane_.location().isFolder() && !pane_.showsResults()
                          ? FileDrop::of(*event, pane_.location().url)
                          : std::nullopt;
    state_->setDropTarget(drop.has_value());
    if (!drop) {
        DropLabel::hide(*this);
        event->ignore();
        return;
    }
    drop->accept(*event);
    DropLabel::show(*this, event->position().toPoint(), *drop);
}

void PaneWidget::dragLeaveEvent(QDragLeaveEvent*) {
    state_->setDropTarget(false);
    DropLabel::hide(*this);
}

void PaneWidget::dropEvent(QDropEvent* event) {
    state_->setDropTarget(false);
    DropLabel::hide(*this);
    const auto drop = FileDrop::of(*event, pane_.location().url);
    if (!drop) return;
    drop->accept(*event);
    drop->perform(window_.operations());
}

// --- What is shown

void PaneWidget::showState() {
    const bool showsOverview =
        !pane_.showsResults() && (pane_.location().which == Location::Case::tags ||
                                  pane_.location().which == Location::Case::sources);
    loading_.setLoading(showsOverview ? overview_->isWaiting()
                                      : pane_.isLoading() && pane_.items().isEmpty());
    if (loading_.isShown())
        show(Page::skeleton);
    else if (showsOverview)
        showOverview();
    else if (!pane_.items().isEmpty() || pane_.isLoading() || pane_.isSearching() ||
             !pane_.groups().empty())
        show(Page::rows);
    else if (pane_.showsResults() && pane_.search().rows()->size() > 0)
        showNothingFiltered();
    else if (pane_.showsResults())
        showNothingFound();
    else if (pane_.listingError())
        showError();
    else if (pane_.cloudFilter() != CloudFilter::all)
        showNothingFiltered();
    else if (pane_.location().isFolder() || pane_.location().isArchive())
        showEmptyFolder();
    else if (pane_.location().isQuery())
        showEmptyQuery();
    else if (pane_.location().which == Location::Case::cleanup ||
             pane_.location().which == Location::Case::duplicates)
        showNotBuiltIn();
    else
        show(Page::rows);
    showStatus();
}

void PaneWidget::show(Page page) {
    QWidget* wanted = view();
    if (page == Page::skeleton) wanted = skeleton_;
    if (page == Page::state) wanted = state_;
    if (page == Page::overview) wanted = overview_;
    if (pages_->currentWidget() == wanted) return;
    const bool hadFocus = isAncestorOf(focusWidget()) && focusWidget() && focusWidget()->hasFocus();
    pages_->setCurrentWidget(wanted);
    if (hadFocus && (page == Page::rows || page == Page::overview)) wanted->setFocus();
    pill_->raise();
}

void PaneWidget::showError() {
    const ListingError& error = *pane_.listingError();
    const QString sentence = coreSentence(error.what());
    const bool isArchive = pane_.location().isArchive();
    if (pane_.location().isQuery()) {
        state_->setContent({"folder.badge.gearshape", tr("Smart Folder Not Found"), sentence,
                            tr("Go to Home Folder")});
        action_ = [this] { pane_.navigate(Location::folder(Paths::home())); };
        return show(Page::state);
    }
    switch (error.reason()) {
        case ListingError::Reason::permissionDenied:
            state_->setContent({"lock", tr("No Permission"), sentence, tr("Try Again")});
            action_ = [this] { pane_.reload(); };
            break;
        case ListingError::Reason::notFound:
            state_->setContent({"folder.badge.questionmark",
                                isArchive ? tr("Archive Not Found") : tr("Folder Not Found"),
                                sentence, tr("Go to Enclosing Folder")});
            action_ = [this] { pane_.goUp(); };
            break;
        case ListingError::Reason::notAFolder:
        case ListingError::Reason::other:
            if (isArchive) {
                state_->setContent({"archivebox", tr("Can’t Open This Archive"), sentence,
                                    tr("Go to Enclosing Folder")});
                action_ = [this] { pane_.goUp(); };
                break;
            }
            state_->setContent({"exclamationmark.triangle", tr("Can’t Show This Folder"), sentence,
                                tr("Try Again")});
            action_ = [this] { pane_.reload(); };
            break;
    }
    show(Page::state);
}

void PaneWidget::showNothingFound() {
    const QString place = placeText(pane_.location(), pane_.title());
    // From the start screen, the home folder is what is searched.
    const bool isHome =
        pane_.location() == Location::folder(Paths::home()) || pane_.location() == Location::home();
    const SearchScopeSetting scope = isHome && pane_.searchScope() != SearchScopeSetting::thisMac
                                         ? SearchScopeSetting::home
                                         : pane_.searchScope();
    switch (scope) {
        case SearchScopeSetting::currentFolder:
            state_->setContent({"magnifyingglass", tr("No Results"),
                                tr("Nothing in “%1” matches.").arg(place), tr("Search Home")});
            action_ = [this] { pane_.setScope(SearchScopeSetting::home); };
            break;
        case SearchScopeSetting::home:
            state_->setContent({"magnifyingglass", tr("No Results"),
                                tr("Nothing in your home folder matches."),
                                tr("Search This Computer")});
            action_ = [this] { pane_.setScope(SearchScopeSetting::thisMac); };
            break;
        case SearchScopeSetting::thisMac:
            state_->setContent({"magnifyingglass", tr("No Results"),
                                tr("Nothing on this computer matches."), tr("Clear Search")});
            action_ = [this] { pane_.clearSearch(false); };
            break;
    }
    show(Page::state);
}

void PaneWidget::showEmptyFolder() {
    if (TrashBar::isTrash(pane_.location())) {
        state_->setContent(
            {"trash", tr("Trash Is Empty"), tr("What is deleted comes here first."), {}});
        action_ = {};
    } else if (pane_.location().isArchive() && pane_.showsHidden()) {
        state_->setContent(
            {"archivebox",
             pane_.location().text.empty() ? tr("Archive Is Empty") : tr("Folder Is Empty"),
             tr("There is nothing in it to unpack."), tr("Go to Enclosing Folder")});
        action_ = [this] { pane_.goUp(); };
    } else if (pane_.showsHidden()) {
        state_->setContent({"folder", tr("Folder Is Empty"),
                            tr("What is put here shows up at once."),
                            tr("Go to Enclosing Folder")});
        action_ = [this] { pane_.goUp(); };
    } else {
        state_->setContent({"folder", tr("Folder Is Empty"),
                            tr("There is nothing here, unless it is hidden."),
                            tr("Show Hidden Files")});
        action_ = [this] { window_.setShowHidden(true); };
    }
    show(Page::state);
}

void PaneWidget::showOverview() {
    if (pane_.overview().rowCount() > 0 || pane_.overview().isLoading()) {
        show(Page::overview);
        return;
    }
    state_->setContent({std::string(pane_.location().symbol()),
                        tr("No Sources"),
                        tr("Files that remember where they were downloaded from show up here, "
                           "each under its website or app."),
                        {}});
    action_ = {};
    show(Page::state);
}

void PaneWidget::showNotBuiltIn() {
    const Location& place = pane_.location();
    state_->setContent({std::string(place.symbol()), placeText(place, place.title()),
                        place.which == Location::Case::cleanup
                            ? tr("Finding what can be cleaned up is not built in yet.")
                            : tr("Finding duplicates is not built in yet."),
                        tr("Go to Home Folder")});
    action_ = [this] { pane_.navigate(Location::folder(Paths::home())); };
    show(Page::state);
}

void PaneWidget::showNothingFiltered() {
    const bool isCloudOnly = pane_.cloudFilter() == CloudFilter::cloudOnly;
    state_->setContent({"icloud",
                        isCloudOnly ? tr("Nothing Only in the Cloud") : tr("Nothing Here"),
                        isCloudOnly ? tr("Everything here is on this computer.")
                                    : tr("Everything here is only in the cloud."),
                        tr("Show Everything")});
    action_ = [this] { pane_.setCloudFilter(CloudFilter::all); };
    show(Page::state);
}

void PaneWidget::showEmptyQuery() {
    const Location& place = pane_.location();
    const std::string symbol(place.symbol());
    const QString title = placeText(place, pane_.title());
    const auto [heading, sentence] = [&]() -> std::pair<QString, QString> {
        switch (place.which) {
            case Location::Case::library:
                return emptyLibrary(place.libraryItem);
            case Location::Case::tag:
                return {tr("Nothing Tagged “%1”").arg(title),
                        tr("Files and folders that get this tag show up here.")};
            case Location::Case::source:
                return {tr("Nothing from %1").arg(title),
                        tr("What you download from there shows up here.")};
            default:
                return {tr("Nothing Found"),
                        tr("Nothing matches “%1” now. What will, shows up here.").arg(title)};
        }
    }();
    state_->setContent({symbol, heading, sentence, {}});
    action_ = {};
    show(Page::state);
}

std::pair<QString, QString> PaneWidget::emptyLibrary(LibraryItem item) {
    switch (item) {
        case LibraryItem::recents:
            return {tr("No Recent Files"), tr("Files you open show up here for 30 days.")};
        case LibraryItem::images:
            return {tr("No Images"), tr("Pictures in your home folder show up here.")};
        case LibraryItem::videos:
            return {tr("No Videos"), tr("Films and clips in your home folder show up here.")};
        case LibraryItem::music:
            return {tr("No Music"), tr("Songs and recordings in your home folder show up here.")};
        case LibraryItem::documents:
            return {tr("No Documents"),
                    tr("Texts, spreadsheets and presentations in your home folder show up here.")};
        case LibraryItem::archives:
            return {tr("No Archives"),
                    tr("Archives and installers in your home folder show up here.")};
        case LibraryItem::apps:
            return {tr("No Apps"), tr("Programs kept in your home folder show up here.")};
    }
    return {};
}

void PaneWidget::act() {
    // The action may replace itself while it runs.
    const auto action = action_;
    if (action) action();
}

// --- Status

QString PaneWidget::statusText() const {
    if (!said_.isEmpty()) return said_;
    if (const QString taking = window_.edits().taking(); taking_.isShown() && !taking.isEmpty())
        return tr("%1 Esc stops it").arg(taking);
    if (loading_.isShown() && pane_.location().isArchive())
        return tr("Reading “%1”… Esc stops it").arg(displayText(pane_.location().url.name()));
    if (pages_->currentWidget() == overview_) {
        const auto rows = static_cast<std::int64_t>(pane_.overview().rowCount());
        return pane_.location().which == Location::Case::tags ? Counts::tags(rows)
                                                              : Counts::sources(rows);
    }
    const auto count = static_cast<std::int64_t>(pane_.items().count());
    if (pane_.hasSelection()) {
        std::int64_t selected = 0;
        std::int64_t bytes = 0;
        bool hasSize = false;
        constexpr std::int64_t mostSummed = 5000;
        for (const QItemSelectionRange& range : pane_.selection().selection()) {
            selected += range.height();
            for (int row = range.top(); row <= range.bottom() && selected <= mostSummed; ++row) {
                const auto size = pane_.items().item(row).size;
                hasSize |= size.has_value();
                bytes += size.value_or(0);
            }
        }
        const QString text = selected == count && count > 1
                                 ? tr("All %1 selected").arg(Counts::items(count))
                                 : tr("%1 of %2 selected").arg(selected).arg(Counts::items(count));
        if (!hasSize || selected > mostSummed) return text;
        return text + QStringLiteral(" · ") + Counts::bytes(bytes);
    }
    if (pane_.showsResults()) {
        const QString found = Counts::results(itemCount());
        if (pane_.isSearching()) return tr("%1 so far").arg(found);
        const QString visited = Counts::files(pane_.search().visitedCount());
        constexpr double shortest = 0.1;
        const bool isQuick = pane_.search().elapsed() < shortest;
        const QString seconds =
            QLocale().toString(isQuick ? shortest : pane_.search().elapsed(), 'f', 1);
        const QString searched =
            (isQuick ? tr("%1 · searched %2 in under %3 s") : tr("%1 · searched %2 in %3 s"))
                .arg(found, visited, seconds);
        const std::int64_t unread = pane_.search().tooLargeCount();
        if (unread == 0) return searched;
        return tr("%1 · %2").arg(searched,
                                 tr("%1 too large to be read").arg(Counts::files(unread)));
    }
    if (pane_.location().isQuery() && pane_.isSearching())
        return count == 0 ? tr("Searching…") : tr("%1 so far").arg(Counts::items(count));
    if (pane_.isPartial()) return tr("Loading…");
    if (pane_.items().isEmpty() && pane_.groups().empty()) return {};
    if (pane_.isCut()) return tr("The first %1").arg(Counts::items(count));
    return Counts::items(itemCount());
}

std::int64_t PaneWidget::itemCount() const {
    // What is folded away is here all the same.
    if (pane_.groups().empty()) return pane_.items().count();
    std::int64_t count = 0;
    for (const RowGroup& group : pane_.groups()) count += group.itemCount;
    return count;
}

void PaneWidget::showStatus() {
    pill_->setText(statusText());
    pill_->raise();
}

// --- Menu and names

void PaneWidget::openMenu(const QPoint& globalPosition) {
    const auto menu = PaneMenu::make(window_, this);
    menu->exec(globalPosition);
}

void PaneWidget::dragMembers(const QPixmap& image) {
    window_.edits().takeMembers(
        pane_.selectedMembers(), false,
        [self = QPointer<PaneWidget>(this), image](const std::vector<URL>& taken) {
            // Whoever has let go by now has seen that it takes a while, and begins again.
            if (!self || !QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) return;
            FileDrag::start(*self->view(), taken, image, Qt::CopyAction);
        });
}

void PaneWidget::giveName(const URL& item, const QString& name) {
    window_.edits().rename(
        item, name.toStdString(),
        [self = QPointer<PaneWidget>(this), item, name](const QString& refusal) {
            if (!self) return;
            PaneView* view = self->view();
            if (!refusal.isEmpty()) return view->refuseName(refusal);
            view->acceptName(name);
            // Results know their files by the names they had.
            if (self->pane_.showsResults())
                self->pane_.lookAgain({item, item.parent().appending(name.toStdString())});
        });
}

}  // namespace tarn
