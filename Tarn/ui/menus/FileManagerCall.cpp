#include "Tarn/ui/menus/FileManagerCall.h"

#include <utility>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace tarn {

void FileManagerCall::showItems(const QDBusConnection& session, const std::vector<URL>& urls,
                                QObject& context, std::function<void()> refused) {
    QStringList uris;
    for (const URL& url : urls) uris.append(QString::fromStdString(url.string()));
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
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
