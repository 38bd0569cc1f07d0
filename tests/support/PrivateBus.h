#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QTemporaryFile>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>
#include <QtTest/QTest>
#include <gtest/gtest.h>

namespace tarn {

/// A message bus of the test's own, which starts no services of the machine, with a connection for
/// the one who answers and one for the one who asks. There may be no daemon to run it: then
/// isRunning() is false.
class PrivateBus {
public:
    PrivateBus() {
        if (!config_.open()) return;
        config_.write(
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
            "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        config_.close();
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--config-file=") + config_.fileName(),
                       QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (!daemon_.waitForStarted() || !daemon_.waitForReadyRead()) return;
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
        server_ = QDBusConnection::connectToBus(address_, QStringLiteral("server"));
        client_ = QDBusConnection::connectToBus(address_, QStringLiteral("client"));
    }
    ~PrivateBus() {
        QDBusConnection::disconnectFromBus(QStringLiteral("server"));
        QDBusConnection::disconnectFromBus(QStringLiteral("client"));
        daemon_.kill();
        daemon_.waitForFinished();
    }

    bool isRunning() const { return server_.isConnected() && client_.isConnected(); }
    const QString& address() const { return address_; }
    QDBusConnection server() const { return server_; }
    const QDBusConnection& client() const { return client_; }

    /// The answer to a call of the client, while events are handled.
    QDBusMessage ask(const QDBusMessage& call) const {
        QDBusPendingCall pending = client_.asyncCall(call);
        EXPECT_TRUE(QTest::qWaitFor([&pending] { return pending.isFinished(); })) << "no answer";
        return pending.reply();
    }

private:
    QTemporaryFile config_;
    QProcess daemon_;
    QString address_;
    QDBusConnection server_{QString()};
    QDBusConnection client_{QString()};
};

}  // namespace tarn
