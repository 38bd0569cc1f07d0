#include "Tarn/ui/transfers/TransferNotifier.h"

#include <QtDBus/QDBusMessage>
#include <QtGui/QGuiApplication>

#include "Tarn/model/TransferList.h"
#include "Tarn/model/TransferOutcome.h"

namespace tarn {

TransferNotifier::TransferNotifier(TransferList& list, QDBusConnection bus, double worthTelling,
                                   QObject* parent)
    : QObject(parent), bus_(std::move(bus)), worthTelling_(worthTelling) {
    connect(&list, &TransferList::transferEnded, this, &TransferNotifier::ended);
}

void TransferNotifier::ended(const TransferModel& transfer, const TransferResult& result) {
    if (QGuiApplication::focusWindow()) return;
    // Who stopped it knows.
    if (transfer.secondsSinceStart() < worthTelling_ || transfer.wasCancelled()) return;
    const bool isFailure = TransferOutcome::isFailure(result);
    const QString heading = isFailure                               ? tr("Not Everything Worked")
                            : transfer.kind() == TransferKind::copy ? tr("Copying Finished")
                                                                    : tr("Moving Finished");
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // The body is markup.
    call.setArguments(
        {QGuiApplication::applicationName(), 0U, QGuiApplication::desktopFileName(), heading,
         TransferOutcome::sentence(transfer, result).toHtmlEscaped(), QStringList(),
         QVariantMap{{QStringLiteral("desktop-entry"), QGuiApplication::desktopFileName()}}, -1});
    bus_.send(call);
}

}  // namespace tarn
