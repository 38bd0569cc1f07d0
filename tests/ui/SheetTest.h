#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/ui/sheets/Sheet.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "tests/ui/Shown.h"

namespace tarn {

/// A window with a sheet over it.
class SheetTest : public testing::Test {
protected:
    /// Before what they are about goes.
    void TearDown() override {
        qDeleteAll(window.findChildren<Sheet*>(Qt::FindDirectChildrenOnly));
    }
    template <class Which>
    void open(Which* which) {
        sheet = which;
        show(window);
        which->open(which->firstField());
    }
    QPushButton* button(const char* text) const {
        for (QPushButton* one : sheet->findChildren<QPushButton*>())
            if (one->text() == QString::fromUtf8(text)) return one;
        return nullptr;
    }
    bool says(const QString& text) const {
        for (const QLabel* label : sheet->findChildren<QLabel*>())
            if (label->isVisible() && label->text() == text) return true;
        for (const ElidedLabel* label : sheet->findChildren<ElidedLabel*>())
            if (label->isVisible() && label->text() == text) return true;
        return false;
    }
    bool isOpen() const { return sheet && sheet->isVisible(); }

    QWidget window;
    QPointer<Sheet> sheet;
};

}  // namespace tarn
