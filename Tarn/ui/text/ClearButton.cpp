#include "Tarn/ui/text/ClearButton.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QAction>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

namespace tarn::ClearButton {

void add(QLineEdit& field) {
    field.setClearButtonEnabled(true);
    // Qt has no other way to it; it is the last that was added.
    const QList<QToolButton*> buttons = field.findChildren<QToolButton*>();
    if (buttons.isEmpty()) return;
    const QString name = QCoreApplication::translate("tarn::ClearButton", "Clear");
    buttons.last()->setAccessibleName(name);
    buttons.last()->setToolTip(name);
}

}  // namespace tarn::ClearButton
