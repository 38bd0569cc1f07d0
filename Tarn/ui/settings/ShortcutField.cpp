#include "Tarn/ui/settings/ShortcutField.h"

#include <string>

#include <QtGui/QKeyEvent>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/records/Shortcuts.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/settings/KeyboardLayout.h"

namespace tarn {
namespace {

/// Of a key that has one instead of a character; empty for all others.
std::string nameOf(int key) {
    switch (key) {
        case Qt::Key_Up:
            return "up";
        case Qt::Key_Down:
            return "down";
        case Qt::Key_Left:
            return "left";
        case Qt::Key_Right:
            return "right";
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return "delete";
        default:
            return {};
    }
}

}  // namespace

ShortcutField::ShortcutField(QWidget* parent) : KeyField(parent) { showKeys(); }

void ShortcutField::setShortcut(const std::optional<Shortcut>& shortcut) {
    shortcut_ = shortcut;
    showKeys();
}

std::optional<Shortcut> ShortcutField::fromKeys(const QKeyEvent& event) {
    Shortcut shortcut;
    shortcut.command = event.modifiers() & Qt::ControlModifier;
    shortcut.control = event.modifiers() & Qt::MetaModifier;
    shortcut.option = event.modifiers() & Qt::AltModifier;
    shortcut.shift = event.modifiers() & Qt::ShiftModifier;
    shortcut.key = nameOf(event.key());
    if (shortcut.key.empty()) {
        // Characters have the number that Unicode gives them; other keys lie above.
        if (event.key() <= 0x20 || event.key() >= 0x01000000) return std::nullopt;
        auto character = static_cast<char32_t>(event.key());
        if (shortcut.shift && !QChar::isLetter(character)) {
            const auto plain = KeyboardLayout::withoutShift(event);
            character = plain.value_or(character);
            shortcut.shift = plain.has_value();
        }
        shortcut.key = QString::fromUcs4(&character, 1).toLower().toStdString();
    }
    if (!Shortcuts::isKey(shortcut.key)) return std::nullopt;
    return shortcut;
}

QString ShortcutField::keysText() const {
    return shortcut_ ? KeyText::shown(CommandRegistry::portableText(*shortcut_)) : tr("None");
}

void ShortcutField::take(const QKeyEvent& event) {
    const auto pressed = fromKeys(event);
    if (!pressed) {
        emit refused(tr("A shortcut ends with a character, an arrow or the Delete key."));
        return;
    }
    if (!Shortcuts::isUsable(*pressed)) {
        emit refused(tr("Hold Ctrl, Alt or the Super key, so that the key still types."));
        return;
    }
    end();
    emit recorded(*pressed);
}

}  // namespace tarn
