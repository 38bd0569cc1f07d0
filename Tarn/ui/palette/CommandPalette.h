#pragma once

#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;

namespace tarn {

class PaletteModel;
struct PaletteEntry;
class WindowModel;

/// A field over the window in which one types what shall be done, and below it what fits.
///
/// The keyboard stays in the field: the arrows move in the list, Return runs what is marked, Escape
/// and a click beside it close it. Deletes itself once it is closed.
class CommandPalette final : public QWidget {
    Q_OBJECT
public:
    /// `actions` are what the window can do besides the commands.
    CommandPalette(WindowModel& model, std::vector<PaletteEntry> actions, QWidget& window);

    void open();
    /// Closes it and gives the keyboard back.
    void finish();

signals:
    void finished();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void place();
    void filter(const QString& text);
    bool handleKey(int key, Qt::KeyboardModifiers modifiers);
    /// Marks the row that many further down, not counting headings; single steps go round at the
    /// ends.
    void step(int by);
    void mark(int row);
    void run(const QModelIndex& index);
    /// What else can be done with a row than running it.
    void openMenu(const QPoint& position);

    WindowModel& model_;
    PaletteModel* rows_;
    QWidget* card_;
    QLineEdit* field_;
    QListView* list_;
    QLabel* nothing_;
    QPointer<QWidget> before_;  ///< Had the keyboard.
};

}  // namespace tarn
