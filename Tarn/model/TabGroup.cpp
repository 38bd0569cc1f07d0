#include "Tarn/model/TabGroup.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"

namespace tarn {

TabGroup::TabGroup(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    app_.groupOpened(this);
}

TabGroup::TabGroup(AppModel& app, const std::vector<WindowSnapshot>& tabs, QObject* parent)
    : TabGroup(app, parent) {
    for (const WindowSnapshot& snapshot : tabs)
        insert(count(), std::make_unique<WindowModel>(app_, snapshot), count() == 0);
}

TabGroup::~TabGroup() {
    app_.groupClosed(this);
    // The one in front is the first to be reopened.
    if (current_ >= 0)
        std::rotate(tabs_.begin() + current_, tabs_.begin() + current_ + 1, tabs_.end());
    current_ = -1;
    for (auto& tab : std::exchange(tabs_, {})) tab.reset();
}

int TabGroup::indexOf(const WindowModel& tab) const {
    const auto found = std::find_if(tabs_.begin(), tabs_.end(),
                                    [&tab](const auto& own) { return own.get() == &tab; });
    return found == tabs_.end() ? -1 : static_cast<int>(found - tabs_.begin());
}

void TabGroup::setCurrent(int index) {
    if (index == current_ || index < 0 || index >= count()) return;
    current_ = index;
    emit currentChanged();
    app_.saveSession();
}

WindowModel& TabGroup::open(const WindowSnapshot& snapshot, bool makeCurrent) {
    const int index = current_ + 1;
    insert(index, std::make_unique<WindowModel>(app_, snapshot), makeCurrent);
    return tab(index);
}

void TabGroup::open(const std::vector<WindowSnapshot>& tabs) {
    const int first = current_ + 1;
    for (int i = 0; i < std::ssize(tabs); ++i)
        insert(first + i, std::make_unique<WindowModel>(app_, tabs[static_cast<std::size_t>(i)]),
               false);
    if (!tabs.empty()) setCurrent(first);
}

bool TabGroup::openWorkspace(const UUID& id) {
    const Workspace* workspace = app_.lists().workspace(id);
    if (!workspace) return false;
    open(workspace->tabs);
    return true;
}

WindowModel& TabGroup::add(std::unique_ptr<WindowModel> tab, bool makeCurrent) {
    insert(count(), std::move(tab), makeCurrent);
    return *tabs_.back();
}

void TabGroup::insert(int index, std::unique_ptr<WindowModel> tab, bool makeCurrent) {
    tab->setGroup(this);
    // The sidebar belongs to the window, though each tab remembers it.
    if (const WindowModel* shown = current()) tab->setSidebarVisible(shown->sidebarVisible());
    connect(tab.get(), &WindowModel::sidebarVisibleChanged, this, [this, changed = tab.get()] {
        for (const auto& other : tabs_) other->setSidebarVisible(changed->sidebarVisible());
    });
    tabs_.insert(tabs_.begin() + index, std::move(tab));
    if (current_ >= index) ++current_;
    emit tabOpened(index);
    app_.saveSession();
    if (makeCurrent || current_ < 0) setCurrent(index);
}

std::unique_ptr<WindowModel> TabGroup::take(int index) {
    if (index < 0 || index >= count()) return nullptr;
    std::unique_ptr<WindowModel> taken = std::move(tabs_[static_cast<std::size_t>(index)]);
    tabs_.erase(tabs_.begin() + index);
    const bool wasCurrent = index == current_;
    if (index < current_ || current_ == count()) --current_;
    disconnect(taken.get(), nullptr, this, nullptr);
    emit tabClosing(index, *taken);
    if (wasCurrent) emit currentChanged();
    if (tabs_.empty()) emit emptied();
    taken->setGroup(nullptr);
    return taken;
}

void TabGroup::close(int index) { take(index).reset(); }

void TabGroup::move(int from, int to) {
    if (from == to || from < 0 || to < 0 || from >= count() || to >= count()) return;
    WindowModel* const shown = current();
    auto moving = std::move(tabs_[static_cast<std::size_t>(from)]);
    tabs_.erase(tabs_.begin() + from);
    tabs_.insert(tabs_.begin() + to, std::move(moving));
    current_ = indexOf(*shown);
    emit tabMoved(from, to);
    app_.saveSession();
}

void TabGroup::showNext() {
    if (count() > 1) setCurrent((current_ + 1) % count());
}

void TabGroup::showPrevious() {
    if (count() > 1) setCurrent((current_ + count() - 1) % count());
}

void TabGroup::setLayout(const WindowLayout& layout) {
    layout_ = layout;
    app_.setLastLayout(layout);
    app_.saveSession();
}

std::vector<WindowSnapshot> TabGroup::snapshots() const {
    std::vector<WindowSnapshot> snapshots;
    for (const auto& tab : tabs_) snapshots.push_back(tab->snapshot());
    return snapshots;
}

}  // namespace tarn
