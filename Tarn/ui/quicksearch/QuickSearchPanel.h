#pragma once

#include <memory>

#include <QtWidgets/QWidget>

class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;
class QVBoxLayout;

namespace tarn {

class AppModel;
class BusyLine;
class ChipRow;
class PaneModel;
struct FileItem;

/// A window of its own with one field: what is typed is searched for as in a pane, below the home
/// folder or, where the settings have searches look everywhere, on the whole computer.
///
/// The keyboard stays in the field: the arrows and Tab move in the list, Return opens what is
/// marked, Ctrl+Return shows it in its folder. Escape, and going to another window, close it; it
/// remembers nothing and deletes itself then.
class QuickSearchPanel final : public QWidget {
    Q_OBJECT
public:
    explicit QuickSearchPanel(AppModel& app);
    ~QuickSearchPanel() override;

    /// Puts it on the screen with the pointer, not shown yet.
    void prepare();
    PaneModel& pane() { return *pane_; }

signals:
    void openRequested(const tarn::FileItem& item);
    void revealRequested(const tarn::FileItem& item);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* makeFoot();
    void place();
    void typed(const QString& text);
    void showSearch();
    void showRows();
    /// What is shown answers what was typed.
    bool isCurrent() const;
    bool handleKey(int key, Qt::KeyboardModifiers modifiers);
    void step(int by);
    void mark(int row);
    void choose(const QModelIndex& index, bool reveals);

    std::unique_ptr<PaneModel> pane_;
    bool isComposited_;
    int margin_;  ///< Around the card, for its shadow.
    QLineEdit* field_;
    ChipRow* chips_;
    BusyLine* busy_;
    QListView* list_;
    QLabel* nothing_;
    QWidget* foot_;
    QLabel* count_;
    QVBoxLayout* column_;
    bool hasMoved_ = false;   ///< The person has marked a row.
    bool isWaiting_ = false;  ///< Something was typed and its search has not begun.
};

}  // namespace tarn
