#include "Tarn/ui/quicksearch/PortalRequest.h"

#include <utility>

#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

QString service() { return u"org.freedesktop.portal.Desktop"_s; }
QString requestInterface() { return u"org.freedesktop.portal.Request"_s; }

/// Where the desktop puts a request, known before it is made so that no answer is missed.
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
}

}  // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, QObject& parent, Answered answered)
    : QObject(&parent), bus_(bus), answered_(std::move(answered)) {}

QString PortalRequest::newToken() {
    static int count = 0;
    return u"tarn%1"_s.arg(++count);
}

void PortalRequest::send(const QDBusConnection& bus, QDBusMessage call, QVariantList arguments,
                         QVariantMap options, QObject& parent, Answered answered) {
    auto* request = new PortalRequest(bus, parent, std::move(answered));
    const QString token = newToken();
    request->listen(requestPath(bus, token));
    options.insert(u"handle_token"_s, token);
    arguments.append(options);
    call.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), request);
    connect(watcher, &QDBusPendingCallWatcher::finished, request, [request, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            request->finish(Answer::failed, {}, reply.error().message());
        else if (reply.value().path() != request->path_)
            request->listen(reply.value().path());  // Desktops before tokens chose one.
    });
}

void PortalRequest::listen(const QString& path) {
    if (!path_.isEmpty())
        bus_.disconnect(service(), path_, requestInterface(), u"Response"_s, this,
                        SLOT(responded(uint, QVariantMap)));
    path_ = path;
    bus_.connect(service(), path_, requestInterface(), u"Response"_s, this,
                 SLOT(responded(uint, QVariantMap)));
}

void PortalRequest::responded(uint response, const QVariantMap& results) {
    finish(response == 0   ? Answer::done
           : response == 1 ? Answer::declined
                           : Answer::failed,
           results, {});
}

void PortalRequest::finish(Answer answer, const QVariantMap& results, const QString& sentence) {
    deleteLater();
    if (const Answered answered = std::exchange(answered_, {})) answered(answer, results, sentence);
}

}  // namespace tarn
