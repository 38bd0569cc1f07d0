#pragma once

#include <optional>

#include <QtWidgets/QPushButton>

#include "Tarn/model/records/Shortcut.h"

class QKeyEvent;

namespace tarn {

/// A button that shows the keys of a command. Pressed, it takes the next keys that are pressed for
/// new ones; Escape leaves it as it was, Backspace takes the keys away.
class ShortcutField final : public QPushButton {
    Q_OBJECT
public:
    explicit ShortcutField(QWidget* parent = nullptr);

    /// Absent for none.
    void setShortcut(const std::optional<Shortcut>& shortcut);
    bool isRecording() const { return isRecording_; }

    /// What a person would have to press, as a shortcut; absent for a modifier alone, or for a key
    /// that no shortcut can have.
    static std::optional<Shortcut> fromKeys(const QKeyEvent& event);

    QSize sizeHint() const override;

signals:
    void recorded(const tarn::Shortcut& shortcut);
    /// The keys shall be taken away.
    void cleared();
    /// Why what was pressed cannot be used, as a finished sentence.
    void refused(const QString& sentence);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void begin();
    void end();
    void take(const QKeyEvent& event);
    void showKeys();

    std::optional<Shortcut> shortcut_;
    bool isRecording_ = false;
};

}  // namespace tarn
