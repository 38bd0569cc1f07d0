#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusUnixFileDescriptor>

namespace tarn {

class TransferList;

/// Keeps the computer from going to sleep while files are transferred, as far as the login manager
/// lets it (org.freedesktop.login1). Without one nothing happens.
class SleepInhibitor final : public QObject {
    Q_OBJECT
public:
    /// `list` outlives it.
    explicit SleepInhibitor(TransferList& list, QObject* parent = nullptr);

private:
    void follow();

    TransferList& list_;
    QDBusUnixFileDescriptor lock_;  ///< Sleep is held off while it is open.
    bool isWanted_ = false;
};

}  // namespace tarn
