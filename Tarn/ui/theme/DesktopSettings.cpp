#include "Tarn/ui/theme/DesktopSettings.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>

namespace tarn {
namespace {

using namespace Qt::StringLiterals;
using Groups = QMap<QString, QVariantMap>;

constexpr int patience = 120;  // milliseconds that the first window may wait

QString appearanceGroup() { return u"org.freedesktop.appearance"_s; }
QString interfaceGroup() { return u"org.gnome.desktop.interface"_s; }

/// The value inside any number of D-Bus variants.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<QColor> colorFrom(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s) return std::nullopt;
    double red = 0;
    double green = 0;
    double blue = 0;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    // Out of range means that the user has no accent.
    for (const double channel : {red, green, blue})
        if (!(channel >= 0 && channel <= 1)) return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue));
}

}  // namespace

DesktopSettings::DesktopSettings(QObject* parent)
    : DesktopSettings(QDBusConnection::sessionBus(), parent) {}

DesktopSettings::~DesktopSettings() = default;

DesktopSettings::DesktopSettings(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(std::make_unique<QDBusConnection>(bus)) {
    if (!bus_->isConnected()) return;
    // Qt looks the types of a slot up by name and silently connects none with an unknown one.
    qRegisterMetaType<QDBusVariant>();
    bus_->connect(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                  u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void DesktopSettings::ask() {
    qDBusRegisterMetaType<Groups>();
    auto message = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal.Settings"_s, u"ReadAll"_s);
    message << QStringList{appearanceGroup(), interfaceGroup()};

    const auto takeAll = [this](const Groups& groups) {
        bool isNew = false;
        for (auto group = groups.begin(); group != groups.end(); ++group)
            for (auto key = group->begin(); key != group->end(); ++key)
                isNew |= take(group.key(), key.key(), key.value());
        return isNew;
    };
    const QDBusMessage reply = bus_->call(message, QDBus::Block, patience);
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        takeAll(qdbus_cast<Groups>(reply.arguments().constFirst()));
        return;
    }
    // The portal may be starting just now: take its answer whenever it comes.
    auto* watcher = new QDBusPendingCallWatcher(bus_->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, takeAll] {
        watcher->deleteLater();
        const QDBusPendingReply<Groups> late = *watcher;
        if (late.isValid() && takeAll(late.value())) emit changed();
    });
}

void DesktopSettings::settingChanged(const QString& group, const QString& key,
                                     const QDBusVariant& value) {
    if (take(group, key, value.variant())) emit changed();
}

bool DesktopSettings::take(const QString& group, const QString& key, const QVariant& boxed) {
    const QVariant value = unwrapped(boxed);
    const auto before = std::tuple(scheme_, accent_, highContrast_, animations_);
    if (group == appearanceGroup()) {
        if (key == u"color-scheme"_s) {
            const uint number = value.toUInt();
            scheme_.reset();
            if (number == 1) scheme_ = Scheme::dark;
            if (number == 2) scheme_ = Scheme::light;
        } else if (key == u"contrast"_s) {
            highContrast_ = value.toUInt() == 1;
        } else if (key == u"accent-color"_s) {
            accent_ = colorFrom(value);
        }
    } else if (group == interfaceGroup() && key == u"enable-animations"_s) {
        animations_ = value.toBool();
    }
    return before != std::tuple(scheme_, accent_, highContrast_, animations_);
}

}  // namespace tarn
