#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

class TransferList;
class TransferModel;

/// Says through the desktop (org.freedesktop.Notifications) that a long transfer has ended while
/// the person is at another program. Without such a service nothing happens.
class TransferNotifier final : public QObject {
    Q_OBJECT
public:
    /// Seconds; who started a shorter transfer is still there.
    static constexpr double longTransfer = 10;

    /// `list` outlives it. `worthTelling` is how long a transfer must have taken, in seconds.
    explicit TransferNotifier(TransferList& list,
                              QDBusConnection bus = QDBusConnection::sessionBus(),
                              double worthTelling = longTransfer, QObject* parent = nullptr);

private:
    void ended(const TransferModel& transfer, const TransferResult& result);

    QDBusConnection bus_;
    double worthTelling_;
};

}  // namespace tarn
