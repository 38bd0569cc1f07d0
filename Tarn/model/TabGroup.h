#pragma once

#include <memory>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/records/SessionState.h"
#include "Tarn/model/records/WindowLayout.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

class AppModel;
class WindowModel;

/// The tabs of one window, in their order; each is a WindowModel of its own.
///
/// Main thread only; `app` outlives it. There may be no tab: then the window is about to close.
class TabGroup final : public QObject {
    Q_OBJECT
public:
    explicit TabGroup(AppModel& app, QObject* parent = nullptr);
    /// With these tabs, the first one in front; at least one.
    TabGroup(AppModel& app, const std::vector<WindowSnapshot>& tabs, QObject* parent = nullptr);
    ~TabGroup() override;

    AppModel& app() { return app_; }
    UUID id() const { return id_; }

    int count() const { return static_cast<int>(tabs_.size()); }
    WindowModel& tab(int index) const { return *tabs_[static_cast<std::size_t>(index)]; }
    /// -1 for a tab of another window.
    int indexOf(const WindowModel& tab) const;
    int currentIndex() const { return current_; }
    /// Null only while there is no tab.
    WindowModel* current() const { return current_ < 0 ? nullptr : &tab(current_); }
    void setCurrent(int index);

    /// Adds a tab after the current one.
    WindowModel& open(const WindowSnapshot& snapshot, bool makeCurrent = true);
    /// Adds tabs in their order after the current one, the first of them in front.
    void open(const std::vector<WindowSnapshot>& tabs);
    /// Those of a workspace likewise; false when it has gone.
    bool openWorkspace(const UUID& id);
    /// Adds a tab that was made elsewhere, at the end.
    WindowModel& add(std::unique_ptr<WindowModel> tab, bool makeCurrent = true);
    /// Gives a tab away, as a window of its own; the same then happens as for one that is closed.
    std::unique_ptr<WindowModel> take(int index);
    /// What it showed is remembered by the app. The tab to its right takes its place, else the one
    /// to its left.
    void close(int index);
    void move(int from, int to);
    /// The next one in order; after the last comes the first.
    void showNext();
    void showPrevious();

    std::vector<WindowSnapshot> snapshots() const;
    /// Kept with the session; `currentTab` in it means nothing here.
    const WindowLayout& layout() const { return layout_; }
    void setLayout(const WindowLayout& layout);

signals:
    void tabOpened(int index);
    /// Before it is gone; `current` is another one by then, or null.
    void tabClosing(int index, tarn::WindowModel& tab);
    void tabMoved(int from, int to);
    void currentChanged();
    /// The last tab was closed.
    void emptied();

private:
    void insert(int index, std::unique_ptr<WindowModel> tab, bool makeCurrent);

    AppModel& app_;
    UUID id_ = UUID::random();
    std::vector<std::unique_ptr<WindowModel>> tabs_;
    int current_ = -1;
    WindowLayout layout_;
};

}  // namespace tarn
