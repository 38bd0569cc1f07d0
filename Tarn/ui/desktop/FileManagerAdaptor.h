#pragma once

#include <vector>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtDBus/QDBusAbstractAdaptor>

#include "TarnCore/base/URL.h"

class QDBusMessage;

namespace tarn {

class AppInstance;
struct AppRequest;

/// org.freedesktop.FileManager1, by which browsers and mail programs show where a file is. The last
/// argument of each method is the token that lets our window come to the front.
class FileManagerAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
    Q_CLASSINFO("D-Bus Introspection",
                "<interface name=\"org.freedesktop.FileManager1\">"
                "<method name=\"ShowFolders\">"
                "<arg type=\"as\" name=\"URIs\" direction=\"in\"/>"
                "<arg type=\"s\" name=\"StartupId\" direction=\"in\"/></method>"
                "<method name=\"ShowItems\">"
                "<arg type=\"as\" name=\"URIs\" direction=\"in\"/>"
                "<arg type=\"s\" name=\"StartupId\" direction=\"in\"/></method>"
                "<method name=\"ShowItemProperties\">"
                "<arg type=\"as\" name=\"URIs\" direction=\"in\"/>"
                "<arg type=\"s\" name=\"StartupId\" direction=\"in\"/></method>"
                "</interface>")
public:
    static constexpr const char* interface = "org.freedesktop.FileManager1";
    static QString name() { return QStringLiteral("org.freedesktop.FileManager1"); }
    static QString path() { return QStringLiteral("/org/freedesktop/FileManager1"); }

    /// A part of `object`.
    FileManagerAdaptor(QObject& object, AppInstance& instance);

public slots:
    void ShowFolders(const QStringList& uris, const QString& startupID,
                     const QDBusMessage& message);
    void ShowItems(const QStringList& uris, const QString& startupID, const QDBusMessage& message);
    void ShowItemProperties(const QStringList& uris, const QString& startupID,
                            const QDBusMessage& message);

private:
    /// Puts the places into that list of a request.
    void show(std::vector<URL> AppRequest::*list, const QStringList& uris, const QString& startupID,
              const QDBusMessage& message);

    AppInstance& instance_;
};

}  // namespace tarn
