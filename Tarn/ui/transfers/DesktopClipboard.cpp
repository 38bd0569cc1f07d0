#include "Tarn/ui/transfers/DesktopClipboard.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace tarn {

DesktopClipboard::DesktopClipboard(QObject* parent) : Clipboard(parent) {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &Clipboard::changed);
}

const QMimeData* DesktopClipboard::data() const { return QGuiApplication::clipboard()->mimeData(); }

void DesktopClipboard::set(std::unique_ptr<QMimeData> data) {
    if (data)
        QGuiApplication::clipboard()->setMimeData(data.release());
    else
        QGuiApplication::clipboard()->clear();
}

}  // namespace tarn
