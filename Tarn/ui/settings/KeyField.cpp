#include "Tarn/ui/settings/KeyField.h"

#include <algorithm>

#include <QtGui/QKeyEvent>

#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
           key == Qt::Key_Super_R || key == Qt::Key_CapsLock;
}

}  // namespace

KeyField::KeyField(QWidget* parent) : QPushButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] {
        if (isRecording_)
            end();
        else
            begin();
    });
}

QSize KeyField::sizeHint() const {
    // All fields are equally wide, wide enough for the longest of the defaults.
    const int room = Fonts::textWidth(font(), KeyText::shown("Ctrl+Alt+Shift+M"));
    return {room + 2 * Metrics::space16,
            std::max(Metrics::rowCompact, fontMetrics().height() + Metrics::space8)};
}

void KeyField::begin() {
    isRecording_ = true;
    setDown(true);
    showKeys();
}

void KeyField::end() {
    isRecording_ = false;
    setDown(false);
    showKeys();
}

void KeyField::showKeys() { setText(isRecording_ ? tr("Press keys…") : keysText()); }

void KeyField::press(const QKeyEvent& event) {
    const bool isAlone = !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (event.key() == Qt::Key_Escape && isAlone) return end();
    if (isAlone && (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete)) {
        end();
        takeAway();
        return;
    }
    if (!isModifier(event.key())) take(event);
}

bool KeyField::event(QEvent* event) {
    if (!isRecording_) return QPushButton::event(event);
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            event->accept();
            return true;
        case QEvent::KeyPress: {
            // Before Tab is taken for going on to the next control.
            const auto* key = static_cast<QKeyEvent*>(event);
            const bool isHeld =
                key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
            if (isHeld || (key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab)) {
                press(*key);
                event->accept();
                return true;
            }
            end();
            break;
        }
        default:
            break;
    }
    return QPushButton::event(event);
}

void KeyField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        event->accept();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void KeyField::keyReleaseEvent(QKeyEvent* event) {
    // The release of what began the recording does not end it.
    if (isRecording_)
        event->accept();
    else
        QPushButton::keyReleaseEvent(event);
}

void KeyField::focusOutEvent(QFocusEvent* event) {
    if (isRecording_) end();
    QPushButton::focusOutEvent(event);
}

}  // namespace tarn
