#pragma once

#include <memory>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/PaneModel.h"
#include "Tarn/model/Toast.h"
#include "Tarn/model/WindowSheet.h"
#include "Tarn/model/records/SessionState.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

class AppModel;
class TabGroup;
class WindowOperations;
class WindowEdits;

/// What one window shows: its panes and switches. Main thread only; `app` outlives it.
class WindowModel final : public QObject {
    Q_OBJECT
public:
    WindowModel(AppModel& app, const Location& start, QObject* parent = nullptr);
    WindowModel(AppModel& app, const WindowSnapshot& snapshot, QObject* parent = nullptr);
    ~WindowModel() override;

    AppModel& app() { return app_; }
    const AppModel& app() const { return app_; }
    UUID id() const { return id_; }

    PaneModel& active() { return *panes_[static_cast<std::size_t>(activeIndex_)]; }
    const PaneModel& active() const { return *panes_[static_cast<std::size_t>(activeIndex_)]; }
    const std::vector<std::unique_ptr<PaneModel>>& panes() const { return panes_; }
    int activeIndex() const { return activeIndex_; }
    void setActiveIndex(int index);
    /// Two panes beside each other. The second one begins where the active one is; the active one
    /// stays when there is to be one again.
    bool isSplit() const { return panes_.size() > 1; }
    void setSplit(bool split);
    /// The pane that is not active; null when there is one only.
    PaneModel* otherPane();

    /// Of which it is a tab; null for one on its own.
    TabGroup* group() const { return group_; }
    void setGroup(TabGroup* group) { group_ = group; }

    bool showHidden() const { return showHidden_; }
    void setShowHidden(bool show);
    bool sidebarVisible() const { return sidebarVisible_; }
    void setSidebarVisible(bool visible);

    bool showsInspector() const { return showsInspector_; }
    void setShowsInspector(bool shows);
    bool showsPalette() const { return showsPalette_; }
    void setShowsPalette(bool shows);
    bool showsActivity() const { return showsActivity_; }
    void setShowsActivity(bool shows);
    bool showsQuickLook() const { return showsQuickLook_; }
    void setShowsQuickLook(bool shows);

    /// Follows the active pane's location.
    const QString& title() const { return title_; }

    WindowSnapshot snapshot() const;

    /// The changes to files that are made here.
    WindowOperations& operations() { return *operations_; }

    /// The message that is shown now; absent for none.
    const std::optional<Toast>& toast() const { return toast_; }
    /// Takes the place of the one that is shown.
    void showToast(Toast toast);
    /// Nothing when another one is shown by now.
    void dismissToast(const UUID& id);

    bool showsTransfers() const { return showsTransfers_; }
    void setShowsTransfers(bool shows);
    bool showsHistory() const { return showsHistory_; }
    void setShowsHistory(bool shows);
    /// The changes to files that begin with what is shown and selected.
    WindowEdits& edits() { return *edits_; }

    /// The question that is put; absent for none.
    const std::optional<WindowSheet>& sheet() const { return sheet_; }
    void showSheet(WindowSheet sheet);
    void closeSheet();

    /// Opens what is selected: one folder in the pane, anything else with its program.
    void openSelection();
    /// In a tab of its own, behind this one; in a window where there are no tabs.
    void openAside(const Location& place);

    /// Ask the view to put the focus into its path field or its search field.
    void editPath() { emit editPathRequested(); }
    void focusSearch() { emit focusSearchRequested(); }

signals:
    void titleChanged();
    /// Before a pane goes, and after one has come.
    void paneClosing(tarn::PaneModel& pane);
    void panesChanged();
    /// Another pane is active, or the active one is another.
    void activePaneChanged();
    void showsInspectorChanged();
    void showsPaletteChanged();
    void showsActivityChanged();
    void showsQuickLookChanged();
    void showHiddenChanged();
    void sidebarVisibleChanged();
    void toastChanged();
    void showsTransfersChanged();
    void showsHistoryChanged();
    void sheetChanged();
    void editPathRequested();
    void focusSearchRequested();
    /// Files are to be opened with the desktop's programs for them.
    void openFilesRequested(const std::vector<tarn::URL>& files);
    void openWindowRequested(const tarn::URL& folder);
    /// The desktop's file manager is to show these files in their folders.
    void revealRequested(const std::vector<tarn::URL>& urls);

private:
    void addPane(const Location& location, std::optional<ViewMode> viewMode);
    void updateTitle();
    /// False when it was so already.
    bool set(bool& flag, bool value, void (WindowModel::*changed)());

    AppModel& app_;
    TabGroup* group_ = nullptr;
    UUID id_ = UUID::random();
    std::vector<std::unique_ptr<PaneModel>> panes_;
    int activeIndex_ = 0;
    bool showHidden_ = false;
    bool sidebarVisible_ = true;
    QString title_;
    std::optional<Toast> toast_;
    bool showsTransfers_ = false;
    bool showsHistory_ = false;
    bool showsInspector_ = false;
    bool showsPalette_ = false;
    bool showsActivity_ = false;
    bool showsQuickLook_ = false;
    std::unique_ptr<WindowOperations> operations_;
    std::optional<WindowSheet> sheet_;
    std::unique_ptr<WindowEdits> edits_;
};

}  // namespace tarn
