#include "Tarn/ui/desktop/BusCalls.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include "Tarn/ui/desktop/AppRequest.h"

namespace tarn::BusCalls {

using namespace Qt::StringLiterals;

std::optional<std::vector<URL>> places(const QStringList& uris, const QDBusMessage& message,
                                       const QDBusConnection& bus) {
    std::vector<URL> all;
    for (const QString& uri : uris)
        if (auto place = AppRequest::place(uri.toStdString())) all.push_back(*std::move(place));
    if (all.empty() && !uris.isEmpty()) {
        refuse(message, bus, u"Only files and folders of this computer can be shown."_s);
        return std::nullopt;
    }
    return all;
}

void refuse(const QDBusMessage& message, const QDBusConnection& bus, const QString& sentence) {
    message.setDelayedReply(true);
    bus.send(message.createErrorReply(QDBusError::InvalidArgs, sentence));
}

std::string token(const QVariantMap& platformData) {
    const QString token = platformData.value(u"activation-token"_s).toString();
    if (!token.isEmpty()) return token.toStdString();
    return platformData.value(u"desktop-startup-id"_s).toString().toStdString();
}

}  // namespace tarn::BusCalls
