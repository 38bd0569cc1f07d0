#include "Tarn/ui/desktop/FileManagerAdaptor.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include "Tarn/ui/desktop/AppInstance.h"
#include "Tarn/ui/desktop/BusCalls.h"

namespace tarn {

FileManagerAdaptor::FileManagerAdaptor(QObject& object, AppInstance& instance)
    : QDBusAbstractAdaptor(&object), instance_(instance) {}

void FileManagerAdaptor::ShowFolders(const QStringList& uris, const QString& startupID,
                                     const QDBusMessage& message) {
    show(&AppRequest::folders, uris, startupID, message);
}

void FileManagerAdaptor::ShowItems(const QStringList& uris, const QString& startupID,
                                   const QDBusMessage& message) {
    show(&AppRequest::items, uris, startupID, message);
}

void FileManagerAdaptor::ShowItemProperties(const QStringList& uris, const QString& startupID,
                                            const QDBusMessage& message) {
    show(&AppRequest::properties, uris, startupID, message);
}

void FileManagerAdaptor::show(std::vector<URL> AppRequest::*list, const QStringList& uris,
                              const QString& startupID, const QDBusMessage& message) {
    auto places = BusCalls::places(uris, message, instance_.bus());
    // None were named: then there is nothing to show, and nothing wrong either.
    if (!places || places->empty()) return;
    AppRequest request;
    request.*list = *std::move(places);
    request.activationToken = startupID.toStdString();
    instance_.take(std::move(request));
}

}  // namespace tarn
