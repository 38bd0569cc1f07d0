#pragma once

#include <optional>

#include "Tarn/model/records/Shortcut.h"
#include "Tarn/ui/settings/KeyField.h"

namespace tarn {

/// Shows and records the keys of a command; Backspace takes them away.
class ShortcutField final : public KeyField {
    Q_OBJECT
public:
    explicit ShortcutField(QWidget* parent = nullptr);

    /// Absent for none.
    void setShortcut(const std::optional<Shortcut>& shortcut);

    /// What a person would have to press, as a shortcut; absent for a modifier alone, or for a key
    /// that no shortcut can have. A key is named by the character that it gives without Shift.
    /// Where that cannot be known, the character that came stands alone: Shift is part of it.
    static std::optional<Shortcut> fromKeys(const QKeyEvent& event);

signals:
    void recorded(const tarn::Shortcut& shortcut);
    /// The keys shall be taken away.
    void cleared();

protected:
    QString keysText() const override;
    void take(const QKeyEvent& event) override;
    void takeAway() override { emit cleared(); }

private:
    std::optional<Shortcut> shortcut_;
};

}  // namespace tarn
