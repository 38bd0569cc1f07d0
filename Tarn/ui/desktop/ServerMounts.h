#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>

namespace tarn {

class AppModel;

/// Notices servers that other programs connect or let go of: gvfs tells of them on the session bus,
/// and the mount table, which AppModel watches, does not change then. Main thread only.
class ServerMounts final : public QObject {
    Q_OBJECT
public:
    /// `app` outlives it. Without a session bus, or without gvfs, nothing happens.
    explicit ServerMounts(AppModel& app, QDBusConnection bus = QDBusConnection::sessionBus(),
                          QObject* parent = nullptr);

private slots:
    void look();

private:
    AppModel& app_;
    QTimer again_;
};

}  // namespace tarn
