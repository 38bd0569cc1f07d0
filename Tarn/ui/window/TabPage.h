#pragma once

#include <array>
#include <memory>
#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QSplitter;

namespace tarn {

class PaneFrame;
class PaneModel;
class TabSheets;
class ToastView;
class WindowModel;

/// What one tab shows: its pane, or two beside each other (one above the other where there is no
/// room for that), its message and its sheet.
class TabPage final : public QWidget {
    Q_OBJECT
public:
    /// `strip` stays usable while a sheet of the tab is open. Both outlive the page.
    TabPage(WindowModel& tab, QWidget& window, QWidget& strip);
    ~TabPage() override;

    WindowModel& tab() const { return tab_; }
    PaneFrame& active() const;
    const std::vector<PaneFrame*>& frames() const { return frames_; }

    /// The tab has come to the front, or has left it.
    void setInFront(bool inFront);
    /// Gives the keyboard to the active pane, unless a sheet of the tab has it.
    void takeFocus();

signals:
    /// Up was pressed on the first row.
    void leftAtTop();
    /// See PaneFrame.
    void searchLeftStart();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void addFrame(PaneModel& pane);
    void removeFrame(const PaneModel& pane);
    void addMissing();
    void showActive();

    WindowModel& tab_;
    QWidget& window_;
    QSplitter* splitter_;
    std::vector<PaneFrame*> frames_;  ///< In the order of the panes.
    QPointer<ToastView> toast_;
    std::unique_ptr<TabSheets> sheets_;
};

}  // namespace tarn
