#pragma once

#include <QtWidgets/QWidget>

class QStackedLayout;

namespace tarn {

class BusyLine;
class PaneHeader;
class PaneModel;
class PaneWidget;
class StartScreen;
class TrashBar;
class WindowModel;

/// One pane of a tab with what stands around its rows: its name where it has a neighbour, the line
/// of the Trash, the line of a search, and the start screen in place of rows.
class PaneFrame final : public QWidget {
    Q_OBJECT
public:
    /// Sheets open over `window`.
    PaneFrame(WindowModel& tab, PaneModel& pane, QWidget& window);

    PaneModel& pane() const { return pane_; }
    PaneWidget& rows() const { return *rows_; }
    TrashBar& trash() const { return *trash_; }

    /// There are two panes, and this is the one that commands are for.
    void setInSplit(bool inSplit, bool active);
    /// Gives the keyboard to what is shown.
    void takeFocus();
    /// The same, at the first row where none is selected.
    void enter();
    /// What is shown has the keyboard, and not one of the controls around it.
    bool hasKeyboard() const;

signals:
    void pressed();
    /// The Tab key, in the rows of one of two panes: the other one is meant. The way out of them is
    /// Shift and Tab.
    void tabPressed();
    void closePressed();
    /// A search that was begun on the start screen shows its results: what is typed next belongs to
    /// the window's field.
    void searchLeftStart();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    bool takesTab(const QEvent& event);
    void showPage();

    WindowModel& tab_;
    PaneModel& pane_;
    bool isInSplit_ = false;
    PaneHeader* header_;
    TrashBar* trash_;
    BusyLine* busy_;
    QStackedLayout* pages_;
    PaneWidget* rows_;
    StartScreen* start_ = nullptr;  ///< Made when it is first shown.
};

}  // namespace tarn
