#pragma once

#include <QtWidgets/QPushButton>

class QKeyEvent;

namespace tarn {

/// A button that shows keys. Pressed, it takes the next keys that are pressed for new ones; Escape
/// leaves it as it was.
class KeyField : public QPushButton {
    Q_OBJECT
public:
    bool isRecording() const { return isRecording_; }
    QSize sizeHint() const override;

signals:
    /// Why what was pressed cannot be used, as a finished sentence.
    void refused(const QString& sentence);

protected:
    explicit KeyField(QWidget* parent = nullptr);

    /// The keys as they are shown while nothing is recorded.
    virtual QString keysText() const = 0;
    /// What was pressed: no modifier alone and no Escape. Calls end() if that is all.
    virtual void take(const QKeyEvent& event) = 0;
    /// Backspace or Delete was pressed alone.
    virtual void takeAway() {}

    /// Stops recording.
    void end();
    /// After the keys have changed. The constructor of a field ends with it.
    void showKeys();

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void begin();
    void press(const QKeyEvent& event);

    bool isRecording_ = false;
};

}  // namespace tarn
