#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtDBus/QDBusAbstractAdaptor>

class QDBusMessage;

namespace tarn {

class AppInstance;

/// org.freedesktop.Application, by which launchers start the program and its actions (Desktop Entry
/// Specification 1.5, "D-Bus Activation").
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
    Q_CLASSINFO("D-Bus Introspection",
                "<interface name=\"org.freedesktop.Application\">"
                "<method name=\"Activate\">"
                "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
                "<method name=\"Open\">"
                "<arg type=\"as\" name=\"uris\" direction=\"in\"/>"
                "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
                "<method name=\"ActivateAction\">"
                "<arg type=\"s\" name=\"action_name\" direction=\"in\"/>"
                "<arg type=\"av\" name=\"parameter\" direction=\"in\"/>"
                "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
                "</interface>")
public:
    static constexpr const char* interface = "org.freedesktop.Application";

    explicit ApplicationAdaptor(AppInstance& instance);

public slots:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData,
              const QDBusMessage& message);
    void ActivateAction(const QString& action, const QVariantList& parameter,
                        const QVariantMap& platformData, const QDBusMessage& message);

private:
    AppInstance& instance_;
};

}  // namespace tarn
