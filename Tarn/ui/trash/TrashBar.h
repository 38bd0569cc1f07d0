#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QPushButton;

namespace tarn {

class PaneModel;
class QuestionSheet;
class TabularLabel;
class TrashService;
class WindowModel;
struct Location;

/// The line above the rows of the Trash: how much lies in it, the button that empties it, and how
/// far that has come. Also asks before it is emptied from elsewhere in the window.
class TrashBar final : public QWidget {
    Q_OBJECT
public:
    /// Shown where `pane` shows the Trash. Sheets open over `window`.
    TrashBar(WindowModel& model, PaneModel& pane, QWidget& window);

    /// Empties the Trash if the person says so; nothing where it is empty or being emptied.
    void ask();
    static bool isTrash(const Location& location);
    /// “3 items · 12 MB”, as far as it is known.
    static QString contents(const TrashService& trash);
    /// There is something to delete, and nothing is deleting it.
    static bool canEmpty(const TrashService& trash);

private:
    void follow();

    WindowModel& model_;
    PaneModel& pane_;
    QWidget& window_;
    TrashService& trash_;
    TabularLabel* text_;
    QPushButton* button_;
    QPointer<QuestionSheet> question_;
    bool tells_ = false;  ///< Was asked here, and so tells here how it went.
};

}  // namespace tarn
