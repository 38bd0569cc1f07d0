#include "Tarn/ui/desktop/AppInstance.h"

#include <utility>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

#include "Tarn/ui/desktop/AppID.h"
#include "Tarn/ui/desktop/ApplicationAdaptor.h"
#include "Tarn/ui/desktop/FileManagerAdaptor.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Milliseconds between two looks at a name whose owner is about to go.
constexpr int pause = 20;

QStringList uris(const std::vector<URL>& urls) {
    QStringList all;
    for (const URL& url : urls) all.append(QString::fromStdString(url.string()));
    return all;
}

QDBusMessage toApplication(const QString& member) {
    return QDBusMessage::createMethodCall(AppID::busName(), AppID::objectPath(),
                                          QLatin1StringView(ApplicationAdaptor::interface), member);
}

QDBusMessage toFileManager(const QString& member, const std::vector<URL>& urls,
                           const QString& token) {
    // Of the same process, whoever has the name that file managers share.
    QDBusMessage call =
        QDBusMessage::createMethodCall(AppID::busName(), FileManagerAdaptor::path(),
                                       QLatin1StringView(FileManagerAdaptor::interface), member);
    call.setArguments({uris(urls), token});
    return call;
}

/// The calls that ask for all of it.
std::vector<QDBusMessage> calls(const AppRequest& request) {
    std::vector<QDBusMessage> all;
    const QString token = QString::fromStdString(request.activationToken);
    QVariantMap platform;
    if (!token.isEmpty()) platform.insert(u"activation-token"_s, token);
    const auto act = [&](const QString& action, const QVariantList& parameter = {}) {
        all.push_back(toApplication(u"ActivateAction"_s));
        all.back().setArguments({action, parameter, platform});
    };
    if (request.isPlain()) {
        all.push_back(toApplication(u"Activate"_s));
        all.back().setArguments({platform});
    }
    if (request.wantsWindow) act(u"new-window"_s);
    if (request.workspace)
        act(u"open-workspace"_s, {QString::fromStdString(request.workspace->string())});
    if (!request.paths.empty()) {
        all.push_back(toApplication(u"Open"_s));
        all.back().setArguments({uris(request.paths), platform});
    }
    if (!request.folders.empty())
        all.push_back(toFileManager(u"ShowFolders"_s, request.folders, token));
    if (!request.items.empty()) all.push_back(toFileManager(u"ShowItems"_s, request.items, token));
    if (!request.properties.empty())
        all.push_back(toFileManager(u"ShowItemProperties"_s, request.properties, token));
    if (request.wantsQuickSearch) act(u"quick-search"_s);
    for (QDBusMessage& call : all) call.setAutoStartService(false);
    return all;
}

}  // namespace

AppInstance::AppInstance(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {
    if (!bus_.isConnected()) return;
    new ApplicationAdaptor(*this);
    new FileManagerAdaptor(fileManager_, *this);
    // Before the name is ours, so that nobody finds it empty.
    bus_.registerObject(AppID::objectPath(), this);
    bus_.registerObject(FileManagerAdaptor::path(), &fileManager_);
}

bool AppInstance::handOver(const AppRequest& request, int patience) {
    if (!bus_.isConnected()) return false;
    const QDeadlineTimer deadline(patience);
    while (!bus_.registerService(AppID::busName())) {
        const Answer answer = send(request, patience);
        if (answer == Answer::done) return true;
        // It is there and silent, or the bus refuses.
        if (answer == Answer::none || deadline.hasExpired()) return false;
        QThread::msleep(pause);
    }
    return false;
}

void AppInstance::offerAsFileManager() {
    if (!bus_.isConnected() || Paths::isIsolated()) return;
    bus_.interface()->registerService(FileManagerAdaptor::name(),
                                      QDBusConnectionInterface::QueueService,
                                      QDBusConnectionInterface::DontAllowReplacement);
}

AppInstance::Answer AppInstance::send(const AppRequest& request, int patience) const {
    // The bus has started a program that runs by now.
    if (request.isService) return Answer::done;
    for (const QDBusMessage& call : calls(request)) {
        const QDBusMessage reply = bus_.call(call, QDBus::Block, patience);
        if (reply.type() != QDBusMessage::ErrorMessage) continue;
        switch (QDBusError(reply).type()) {
            case QDBusError::ServiceUnknown:
            case QDBusError::UnknownObject:  // It is ending, and answers for nothing any more.
            case QDBusError::UnknownMethod:
            case QDBusError::Disconnected:
                return Answer::gone;
            case QDBusError::NoReply:
            case QDBusError::Timeout:
            case QDBusError::TimedOut:
                return isOwned() ? Answer::none : Answer::gone;
            default:
                return Answer::none;
        }
    }
    return Answer::done;
}

bool AppInstance::isOwned() const {
    return bus_.interface()->isServiceRegistered(AppID::busName()).value();
}

void AppInstance::begin() {
    hasBegun_ = true;
    for (const AppRequest& request : std::exchange(waiting_, {})) emit requested(request);
}

void AppInstance::take(AppRequest request) {
    if (!hasBegun_)
        waiting_.push_back(std::move(request));
    else
        emit requested(request);
}

}  // namespace tarn
