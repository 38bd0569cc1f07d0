#include "Tarn/ui/menus/FileManagerCall.h"

#include <utility>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace tarn {

void FileManagerCall::showItems(const QDBusConnection& session, const std::vector<URL>& urls,
                                QObject& context, std::function<void()> refused) {
    QStringList uris;
    for (const URL& url : urls) uris.append(QString::fromStdString(url.string()));
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    // The desktop's file manager may be this one, which has no need to ask itself.
    const bool isOurs = session.isConnected() &&
                        session.interface()->serviceOwner(name).value() == session.baseService();
    if (isOurs) return refused();
    QDBusMessage call = QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call.setArguments({uris, QString()});
    auto* watcher = new QDBusPendingCallWatcher(session.asyncCall(call), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [watcher, refused = std::move(refused)] {
                         watcher->deleteLater();
                         if (QDBusPendingReply<>(*watcher).isError()) refused();
                     });
}

}  // namespace tarn
