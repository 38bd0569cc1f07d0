#pragma once

#include <functional>

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "Tarn/model/records/LibraryItem.h"
#include "Tarn/ui/states/LoadingGate.h"
#include "Tarn/ui/thumbnails/ThumbnailLoader.h"

class QStackedLayout;

namespace tarn {

class OverviewPage;
class PaneGridView;
class PaneListView;
class PaneModel;
class PaneView;
class SkeletonRows;
class StatePage;
class StatusPill;
class WindowModel;

/// A pane with all its faces: list or grid, the pages for loading, empty, failed and nothing
/// found, and the status that floats above them.
class PaneWidget final : public QWidget {
    Q_OBJECT
public:
    PaneWidget(WindowModel& window, PaneModel& pane, QWidget* parent = nullptr);

    PaneModel& pane() const { return pane_; }
    /// The one of list and grid that is in use.
    PaneView* view() const;
    /// Puts the keyboard into the rows.
    void enter();
    /// Shows a sentence in place of the status for a few seconds.
    void say(const QString& sentence);

    /// Gives up what the person waits for: an archive that is being read, or a file in it that is
    /// being unpacked. False when there is no such thing.
    bool stopWaiting();

signals:
    /// Up was pressed on the first row.
    void leftAtTop();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    enum class Page { rows, skeleton, state, overview };

    void watch(PaneView* view);
    void connectThumbnails();
    void showState();
    void show(Page page);
    void showError();
    void showNothingFound();
    void showEmptyFolder();
    void showNotBuiltIn();
    void showNothingFiltered();
    void showEmptyQuery();
    void showOverview();
    static std::pair<QString, QString> emptyLibrary(LibraryItem item);
    void showStatus();
    QString statusText() const;
    std::int64_t itemCount() const;
    void act();
    void dragMembers(const QPixmap& image);
    void giveName(const URL& item, const QString& name);
    void openMenu(const QPoint& globalPosition);

    WindowModel& window_;
    PaneModel& pane_;
    QStackedLayout* pages_;
    PaneListView* list_;
    PaneGridView* grid_;
    SkeletonRows* skeleton_;
    StatePage* state_;
    OverviewPage* overview_;
    StatusPill* pill_;
    ThumbnailLoader thumbnails_;
    LoadingGate loading_;
    LoadingGate taking_;  ///< For members that are being unpacked to be opened.
    QTimer sayTimer_;
    QString said_;
    std::function<void()> action_;  ///< Of the page that is shown.
};

}  // namespace tarn
