#include "Tarn/ui/transfers/SleepInhibitor.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

#include "Tarn/model/TransferList.h"

namespace tarn {

SleepInhibitor::SleepInhibitor(TransferList& list, QObject* parent) : QObject(parent), list_(list) {
    connect(&list, &TransferList::listChanged, this, &SleepInhibitor::follow);
    connect(&list, &TransferList::transferChanged, this, &SleepInhibitor::follow);
    follow();
}

void SleepInhibitor::follow() {
    const bool isWanted = list_.activeCount() > 0;
    if (isWanted == isWanted_) return;
    isWanted_ = isWanted;
    if (!isWanted) {
        lock_ = QDBusUnixFileDescriptor();
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call.setArguments({QStringLiteral("sleep"), QStringLiteral("Tarn"),
                       tr("Files are being transferred"), QStringLiteral("block")});
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        // The transfer may have ended while the answer was on its way.
        if (!reply.isError() && isWanted_) lock_ = reply.value();
    });
}

}  // namespace tarn
