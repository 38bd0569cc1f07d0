#include "Tarn/model/WindowModel.h"

#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr std::size_t mostPanes = 2;

}  // namespace

WindowModel::WindowModel(AppModel& app, const Location& start, QObject* parent)
    : WindowModel(app, WindowSnapshot::of(start), parent) {}

WindowModel::WindowModel(AppModel& app, const WindowSnapshot& snapshot, QObject* parent)
    : QObject(parent),
      app_(app),
      showHidden_(app.settings().showHiddenByDefault),
      sidebarVisible_(snapshot.showSidebar),
      showsInspector_(snapshot.showInspector),
      edits_(std::make_unique<WindowEdits>(*this)) {
    Q_ASSERT(MainThread::isCurrent());
    for (const PaneSnapshot& pane : snapshot.panes)
        if (panes_.size() < mostPanes) addPane(pane.location, pane.viewMode);
    if (panes_.empty()) addPane(Location::folder(Paths::home()), std::nullopt);
    activeIndex_ = std::clamp(snapshot.activePane, 0, static_cast<int>(panes_.size()) - 1);
    operations_ = std::make_unique<WindowOperations>(*this);
    updateTitle();
    app_.windowOpened(this);
}

WindowModel::~WindowModel() { app_.windowClosed(this); }

void WindowModel::addPane(const Location& location, std::optional<ViewMode> viewMode) {
    auto pane = std::make_unique<PaneModel>(app_, showHidden_);
    pane->navigate(location, false);
    if (viewMode) pane->restoreViewMode(*viewMode);
    connect(pane.get(), &PaneModel::locationChanged, this, [this] {
        updateTitle();
        app_.saveSession();
    });
    connect(pane.get(), &PaneModel::viewModeChanged, &app_, &AppModel::saveSession);
    panes_.push_back(std::move(pane));
}

void WindowModel::setActiveIndex(int index) {
    if (index == activeIndex_ || index < 0 || index >= static_cast<int>(panes_.size())) return;
    activeIndex_ = index;
    updateTitle();
    emit activePaneChanged();
    app_.saveSession();
}

void WindowModel::setSplit(bool split) {
    if (split == isSplit()) return;
    if (split) {
        addPane(active().location(), active().viewMode());
        emit panesChanged();
    } else {
        const auto going = panes_.begin() + (1 - activeIndex_);
        emit paneClosing(**going);
        const bool moves = activeIndex_ == 1;
        panes_.erase(going);
        activeIndex_ = 0;
        emit panesChanged();
        if (moves) emit activePaneChanged();
    }
    app_.saveSession();
}

PaneModel* WindowModel::otherPane() {
    return isSplit() ? panes_[static_cast<std::size_t>(1 - activeIndex_)].get() : nullptr;
}

bool WindowModel::set(bool& flag, bool value, void (WindowModel::*changed)()) {
    if (flag == value) return false;
    flag = value;
    emit(this->*changed)();
    return true;
}

void WindowModel::setShowsInspector(bool shows) {
    if (set(showsInspector_, shows, &WindowModel::showsInspectorChanged)) app_.saveSession();
}

void WindowModel::setShowsPalette(bool shows) {
    set(showsPalette_, shows, &WindowModel::showsPaletteChanged);
}

void WindowModel::setShowsActivity(bool shows) {
    set(showsActivity_, shows, &WindowModel::showsActivityChanged);
}

void WindowModel::setShowsQuickLook(bool shows) {
    set(showsQuickLook_, shows, &WindowModel::showsQuickLookChanged);
}

void WindowModel::setShowHidden(bool show) {
    if (show == showHidden_) return;
    showHidden_ = show;
    for (const auto& pane : panes_) pane->setShowsHidden(show);
    emit showHiddenChanged();
}

void WindowModel::setSidebarVisible(bool visible) {
    if (set(sidebarVisible_, visible, &WindowModel::sidebarVisibleChanged)) app_.saveSession();
}

void WindowModel::showToast(Toast toast) {
    toast_ = std::move(toast);
    emit toastChanged();
}

void WindowModel::dismissToast(const UUID& id) {
    if (!toast_ || toast_->id != id) return;
    toast_.reset();
    emit toastChanged();
}

void WindowModel::setShowsTransfers(bool shows) {
    set(showsTransfers_, shows, &WindowModel::showsTransfersChanged);
}

void WindowModel::setShowsHistory(bool shows) {
    set(showsHistory_, shows, &WindowModel::showsHistoryChanged);
}

void WindowModel::showSheet(WindowSheet sheet) {
    sheet_ = std::move(sheet);
    emit sheetChanged();
}

void WindowModel::closeSheet() {
    if (!sheet_) return;
    sheet_.reset();
    emit sheetChanged();
}

void WindowModel::openSelection() {
    const std::vector<FileItem> items = active().selectedItems();
    if (items.size() == 1 && active().browse(items.front())) return;
    if (active().showsMembers()) {
        edits_->openMembers(active().selectedMembers());
        return;
    }
    std::vector<URL> files;
    for (const FileItem& item : items) {
        if (item.isDirectory)
            openAside(Location::folder(item.url));
        else
            files.push_back(item.url);
    }
    if (!files.empty()) emit openFilesRequested(files);
}

void WindowModel::openAside(const Location& place) {
    if (group_)
        group_->open(WindowSnapshot::of(place, sidebarVisible_), false);
    else if (place.isFolder())
        emit openWindowRequested(place.url);
}

void WindowModel::updateTitle() {
    if (panes_.empty()) return;
    QString title = placeText(active().location(), active().title());
    if (title == title_) return;
    title_ = std::move(title);
    emit titleChanged();
}

WindowSnapshot WindowModel::snapshot() const {
    WindowSnapshot snapshot;
    for (const auto& pane : panes_) snapshot.panes.push_back({pane->location(), pane->viewMode()});
    snapshot.activePane = activeIndex_;
    snapshot.showSidebar = sidebarVisible_;
    snapshot.showInspector = showsInspector_;
    return snapshot;
}

}  // namespace tarn
