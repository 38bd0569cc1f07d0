#include "Tarn/ui/desktop/ApplicationAdaptor.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>

#include "Tarn/ui/desktop/AppInstance.h"
#include "Tarn/ui/desktop/BusCalls.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

QString firstText(const QVariantList& parameter) {
    if (parameter.isEmpty()) return {};
    const QVariant& first = parameter.front();
    if (first.canConvert<QDBusVariant>()) return first.value<QDBusVariant>().variant().toString();
    return first.toString();
}

}  // namespace

ApplicationAdaptor::ApplicationAdaptor(AppInstance& instance)
    : QDBusAbstractAdaptor(&instance), instance_(instance) {}

void ApplicationAdaptor::Activate(const QVariantMap& platformData) {
    AppRequest request;
    request.activationToken = BusCalls::token(platformData);
    instance_.take(std::move(request));
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& platformData,
                              const QDBusMessage& message) {
    auto places = BusCalls::places(uris, message, instance_.bus());
    if (!places) return;
    AppRequest request;
    request.paths = *std::move(places);
    request.activationToken = BusCalls::token(platformData);
    instance_.take(std::move(request));
}

void ApplicationAdaptor::ActivateAction(const QString& action, const QVariantList& parameter,
                                        const QVariantMap& platformData,
                                        const QDBusMessage& message) {
    AppRequest request;
    request.activationToken = BusCalls::token(platformData);
    if (action == u"new-window"_s)
        request.wantsWindow = true;
    else if (action == u"quick-search"_s)
        request.wantsQuickSearch = true;
    else if (action == u"open-workspace"_s)
        request.workspace = UUID::parse(firstText(parameter).toStdString());
    if (request.isPlain())
        return BusCalls::refuse(message, instance_.bus(), u"There is no such action."_s);
    instance_.take(std::move(request));
}

}  // namespace tarn
