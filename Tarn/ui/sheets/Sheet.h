#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace tarn {

/// A question or a list that stands over a window and is dealt with before anything else there.
///
/// It covers the window that is its parent: the ground darkens, the keyboard stays inside the card,
/// and no shortcut of the window works. Escape leaves it. Deletes itself once it is closed.
class Sheet : public QWidget {
    Q_OBJECT
public:
    /// `width` is what the card takes where the window has the room, in logical pixels.
    Sheet(QWidget& window, int width);
    ~Sheet() override;

    /// Shows it, with the keyboard in `first`, or in the first control that takes it.
    void open(QWidget* first = nullptr);
    /// Takes it away and gives the keyboard back.
    void finish();
    /// Hides it for a while, as it is; the keyboard is the caller's affair.
    void suspend();
    /// Shows it again, with the keyboard where it was.
    void resume();
    /// A part of the window that stays visible and can be clicked: the tabs of the window, where
    /// the sheet belongs to one of them. The keys that go from tab to tab work as well.
    void leaveOut(QWidget& part);

signals:
    void finished();

protected:
    /// Where a sheet puts its parts, below its title.
    QVBoxLayout* column() const { return column_; }
    void setTitle(const QString& title);
    QString title() const;
    /// Gives the room below the title to `content`, which scrolls in `area`, above `done`, which
    /// closes the sheet and is pressed by Return.
    void addScrolling(QScrollArea& area, QWidget& content, QPushButton& done);
    /// Width that the parts have.
    int contentWidth() const;
    /// Escape was pressed.
    virtual void escape() { finish(); }
    /// The card has got another width.
    virtual void layOut() {}

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    /// Presses the button that has the keyboard; false when none has.
    bool pressFocused();
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void updateMask();

    int width_;
    QWidget* card_;
    QVBoxLayout* column_;
    QLabel* title_;
    QPointer<QWidget> before_;  ///< Had the keyboard.
    QPointer<QWidget> within_;  ///< Had it in the sheet when that was hidden for a while.
    QPointer<QWidget> leftOut_;
    bool isSuspended_ = false;
};

}  // namespace tarn
