#include "Tarn/ui/settings/ShortcutField.h"

#include <algorithm>
#include <string>

#include <QtCore/QLocale>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QKeyEvent>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/records/Shortcuts.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// What Shift makes of the keys of the American keyboard, and the keys.
constexpr std::string_view shifted = "~!@#$%^&*()_+{}|:\"<>?";
constexpr std::string_view plain = "`1234567890-=[]\\;',./";

/// Shortcuts name the key without Shift, and Qt tells the character. Which key it is on depends on
/// the keyboard: it is known for the American one. Elsewhere the character itself stands, which
/// the same keys give again.
QString withoutShift(const QString& character) {
    const QLocale keyboard = QGuiApplication::inputMethod()->locale();
    if (keyboard.language() != QLocale::English || keyboard.territory() != QLocale::UnitedStates)
        return character;
    const std::string text = character.toStdString();
    const std::size_t at = text.size() == 1 ? shifted.find(text[0]) : shifted.npos;
    return at == shifted.npos ? character : QString(QLatin1Char(plain[at]));
}

bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
           key == Qt::Key_Super_R || key == Qt::Key_CapsLock;
}

std::string keyName(const QKeyEvent& event) {
    switch (event.key()) {
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
            break;
    }
    // Characters have the number that Unicode gives them; other keys lie above.
    if (event.key() <= 0x20 || event.key() >= 0x01000000) return {};
    const char32_t unicode = static_cast<char32_t>(event.key());
    QString character = QString::fromUcs4(&unicode, 1).toLower();
    if (event.modifiers() & Qt::ShiftModifier) character = withoutShift(character);
    return character.toStdString();
}

}  // namespace

ShortcutField::ShortcutField(QWidget* parent) : QPushButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] {
        if (isRecording_)
            end();
        else
            begin();
    });
    showKeys();
}

void ShortcutField::setShortcut(const std::optional<Shortcut>& shortcut) {
    shortcut_ = shortcut;
    if (!isRecording_) showKeys();
}

std::optional<Shortcut> ShortcutField::fromKeys(const QKeyEvent& event) {
    if (isModifier(event.key())) return std::nullopt;
    Shortcut shortcut;
    shortcut.key = keyName(event);
    shortcut.command = event.modifiers() & Qt::ControlModifier;
    shortcut.control = event.modifiers() & Qt::MetaModifier;
    shortcut.option = event.modifiers() & Qt::AltModifier;
    shortcut.shift = event.modifiers() & Qt::ShiftModifier;
    if (!Shortcuts::isKey(shortcut.key)) return std::nullopt;
    return shortcut;
}

QSize ShortcutField::sizeHint() const {
    // All fields are equally wide, wide enough for the longest of the defaults.
    const int room = Fonts::textWidth(font(), KeyText::shown("Ctrl+Alt+Shift+M"));
    return {room + 2 * Metrics::space16,
            std::max(Metrics::rowCompact, fontMetrics().height() + Metrics::space8)};
}

void ShortcutField::begin() {
    isRecording_ = true;
    setDown(true);
    showKeys();
}

void ShortcutField::end() {
    isRecording_ = false;
    setDown(false);
    showKeys();
}

void ShortcutField::showKeys() {
    if (isRecording_) return setText(tr("Press keys…"));
    setText(shortcut_ ? KeyText::shown(CommandRegistry::portableText(*shortcut_)) : tr("None"));
}

void ShortcutField::take(const QKeyEvent& event) {
    const bool isAlone = !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (event.key() == Qt::Key_Escape && isAlone) return end();
    if (isAlone && (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete)) {
        end();
        emit cleared();
        return;
    }
    if (isModifier(event.key())) return;
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

bool ShortcutField::event(QEvent* event) {
    if (!isRecording_) return QPushButton::event(event);
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            event->accept();
            return true;
        case QEvent::KeyPress:
            // Before Tab is taken for going on to the next control.
            if (const auto* key = static_cast<QKeyEvent*>(event);
                key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab) {
                take(*key);
                event->accept();
                return true;
            }
            end();
            break;
        default:
            break;
    }
    return QPushButton::event(event);
}

void ShortcutField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        event->accept();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void ShortcutField::keyReleaseEvent(QKeyEvent* event) {
    // The release of what began the recording does not end it.
    if (isRecording_)
        event->accept();
    else
        QPushButton::keyReleaseEvent(event);
}

void ShortcutField::focusOutEvent(QFocusEvent* event) {
    if (isRecording_) end();
    QPushButton::focusOutEvent(event);
}

}  // namespace tarn
