#include "Tarn/ui/quicksearch/ShortcutPortal.h"

#include <optional>
#include <utility>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusServiceWatcher>
#include <QtDBus/QDBusVariant>
#include <QtGui/QGuiApplication>

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// As it travels: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
using PortalShortcuts = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& out, const PortalShortcut& shortcut) {
    out.beginStructure();
    out << shortcut.id << shortcut.properties;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalShortcut& shortcut) {
    in.beginStructure();
    in >> shortcut.id >> shortcut.properties;
    in.endStructure();
    return in;
}

QString service() { return u"org.freedesktop.portal.Desktop"_s; }
QString objectPath() { return u"/org/freedesktop/portal/desktop"_s; }
QString shortcutsInterface() { return u"org.freedesktop.portal.GlobalShortcuts"_s; }
QString sessionInterface() { return u"org.freedesktop.portal.Session"_s; }
QString shortcutID() { return u"quick-search"_s; }

QDBusMessage call(const QString& interface, const QString& member) {
    return QDBusMessage::createMethodCall(service(), objectPath(), interface, member);
}

/// What the desktop calls the keys of our shortcut; absent when it is not among them.
std::optional<QString> keysOf(const QVariant& list) {
    for (const PortalShortcut& one : qdbus_cast<PortalShortcuts>(list))
        if (one.id == shortcutID())
            return one.properties.value(u"trigger_description"_s).toString();
    return std::nullopt;
}

}  // namespace

ShortcutPortal::ShortcutPortal(QDBusConnection bus, QObject* parent)
    : QObject(parent),
      bus_(std::move(bus)),
      owner_(new QDBusServiceWatcher(service(), bus_, QDBusServiceWatcher::WatchForOwnerChange,
                                     this)) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
    // Qt looks the types of a slot up by name and silently connects none with an unknown one.
    qRegisterMetaType<QDBusObjectPath>();
    bus_.connect(service(), objectPath(), shortcutsInterface(), u"Activated"_s, this,
                 SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    bus_.connect(service(), objectPath(), shortcutsInterface(), u"ShortcutsChanged"_s, this,
                 SLOT(shortcutsChanged(QDBusMessage)));
    connect(owner_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString& before, const QString& now) {
                // What it knew has gone with it. It may also just have been started by find().
                if (before.isEmpty()) return;
                forget();
                if (now.isEmpty())
                    setVersion(0);
                else
                    find();
            });
}

ShortcutPortal::~ShortcutPortal() { unbind(); }

// --- Whether there is one

void ShortcutPortal::find() {
    if (!bus_.isConnected()) return setVersion(0);
    QDBusMessage message = call(u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    message << QGuiApplication::desktopFileName() << QVariantMap();
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    // Desktops without the registry, and those that know the program by its sandbox, refuse this
    // and go on nonetheless.
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        askVersion();
    });
}

void ShortcutPortal::askVersion() {
    QDBusMessage message = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << shortcutsInterface() << u"version"_s;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        setVersion(reply.isError() ? 0 : reply.value().variant().toUInt());
    });
}

void ShortcutPortal::setVersion(uint version) {
    version_ = version;
    emit found();
}

// --- The key

void ShortcutPortal::bind(const QString& description, const QString& trigger) {
    unbind();
    const auto attempt = ++attempt_;
    PortalRequest::send(
        bus_, call(shortcutsInterface(), u"CreateSession"_s), {},
        {{u"session_handle_token"_s, PortalRequest::newToken()}}, *this,
        [this, attempt, description, trigger](PortalRequest::Answer answer,
                                              const QVariantMap& results, const QString& sentence) {
            if (attempt != attempt_) return;
            const QVariant handle = results.value(u"session_handle"_s);
            const QString path = handle.canConvert<QDBusObjectPath>()
                                     ? handle.value<QDBusObjectPath>().path()
                                     : handle.toString();
            if (answer != PortalRequest::Answer::done || path.isEmpty())
                return refuse(answer, sentence);
            bindIn(QDBusObjectPath(path), description, trigger);
        });
}

void ShortcutPortal::bindIn(const QDBusObjectPath& session, const QString& description,
                            const QString& trigger) {
    session_ = session;
    bus_.connect(service(), session_.path(), sessionInterface(), u"Closed"_s, this,
                 SLOT(sessionClosed()));
    QVariantMap properties{{u"description"_s, description}};
    if (!trigger.isEmpty()) properties.insert(u"preferred_trigger"_s, trigger);
    const PortalShortcuts shortcuts{{shortcutID(), properties}};
    PortalRequest::send(
        bus_, call(shortcutsInterface(), u"BindShortcuts"_s),
        {QVariant::fromValue(session_), QVariant::fromValue(shortcuts), QString()}, {}, *this,
        [this, attempt = attempt_](PortalRequest::Answer answer, const QVariantMap& results,
                                   const QString& sentence) {
            if (attempt != attempt_) return;
            const auto keys = keysOf(results.value(u"shortcuts"_s));
            if (answer != PortalRequest::Answer::done) return refuse(answer, sentence);
            // The user may have said yes to none of what was asked for.
            if (!keys) return refuse(PortalRequest::Answer::declined, {});
            isBound_ = true;
            emit bound(*keys);
        });
}

void ShortcutPortal::refuse(PortalRequest::Answer answer, const QString& sentence) {
    unbind();
    if (answer == PortalRequest::Answer::declined)
        emit refused(tr("The desktop gave it no keys, since that was declined."), true);
    else if (sentence.isEmpty())
        emit refused(tr("The desktop gave it no keys."), false);
    else
        emit refused(tr("The desktop gave it no keys: “%1”").arg(sentence), false);
}

void ShortcutPortal::unbind() {
    const QDBusObjectPath session = session_;
    forget();
    if (session.path().isEmpty()) return;
    bus_.asyncCall(
        QDBusMessage::createMethodCall(service(), session.path(), sessionInterface(), u"Close"_s));
}

void ShortcutPortal::forget() {
    ++attempt_;
    isBound_ = false;
    if (session_.path().isEmpty()) return;
    bus_.disconnect(service(), session_.path(), sessionInterface(), u"Closed"_s, this,
                    SLOT(sessionClosed()));
    session_ = QDBusObjectPath();
}

void ShortcutPortal::configure() {
    if (!canConfigure()) return;
    QDBusMessage message = call(shortcutsInterface(), u"ConfigureShortcuts"_s);
    message << QVariant::fromValue(session_) << QString() << QVariantMap();
    bus_.asyncCall(message);
}

// --- What the desktop says

void ShortcutPortal::activated(const QDBusObjectPath& session, const QString& id, qulonglong,
                               const QVariantMap& options) {
    if (session != session_ || id != shortcutID()) return;
    emit pressed(options.value(u"activation_token"_s).toString().toStdString());
}

void ShortcutPortal::shortcutsChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2 || !isBound_ || arguments.at(0).value<QDBusObjectPath>() != session_)
        return;
    if (const auto keys = keysOf(arguments.at(1))) emit bound(*keys);
}

void ShortcutPortal::sessionClosed() {
    forget();
    emit refused(tr("The desktop has taken the keys back."), true);
}

}  // namespace tarn
