#include "Tarn/ui/settings/HotKeyField.h"

#include <QtGui/QKeyEvent>

#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/settings/KeyboardLayout.h"

namespace tarn {

HotKeyField::HotKeyField(QWidget* parent) : KeyField(parent) { showKeys(); }

void HotKeyField::setKey(const HotKey& key) {
    key_ = key;
    showKeys();
}

std::optional<HotKey> HotKeyField::fromKeys(const QKeyEvent& event) {
    QString name = QKeySequence(event.key()).toString(QKeySequence::PortableText);
    if (event.key() == Qt::Key_Enter) name = QStringLiteral("Return");
    if (event.key() == Qt::Key_Backtab) name = QStringLiteral("Tab");
    std::uint32_t held = 0;
    if (event.modifiers() & Qt::ControlModifier) held |= HotKey::control;
    if (event.modifiers() & Qt::AltModifier) held |= HotKey::alt;
    if (event.modifiers() & Qt::ShiftModifier) held |= HotKey::shift;
    if (event.modifiers() & Qt::MetaModifier) held |= HotKey::super;
    if (event.modifiers() & Qt::ShiftModifier) {
        const char32_t plain = KeyboardLayout::withoutShift(event).value_or(0);
        const QString own = QString::fromUcs4(&plain, 1).toUpper();
        if (const auto key = HotKey::named(own.toStdString(), held)) return key;
    }
    return HotKey::named(name.toStdString(), held);
}

QString HotKeyField::keysText() const {
    const std::string text = key_.text();
    return text.empty() ? tr("None") : KeyText::shown(text);
}

void HotKeyField::take(const QKeyEvent& event) {
    const auto pressed = fromKeys(event);
    if (!pressed) {
        emit refused(
            tr("This key cannot be used everywhere. Letters, digits and the space bar can."));
        return;
    }
    if (!pressed->isUsable()) {
        emit refused(tr("Hold Ctrl, Alt or the Super key, so that the key still types."));
        return;
    }
    end();
    emit recorded(*pressed);
}

}  // namespace tarn
