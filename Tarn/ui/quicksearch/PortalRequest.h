#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

namespace tarn {

/// One question to a desktop portal, whose answer comes as a signal of a request object, possibly
/// after the user was asked. Deletes itself with the answer, or with its parent.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    enum class Answer {
        done,
        declined,  ///< By the user.
        failed     ///< In another way.
    };
    /// `results` belong to `done`; `sentence` says what went wrong where the call itself did, and
    /// is empty otherwise.
    using Answered =
        std::function<void(Answer, const QVariantMap& results, const QString& sentence)>;

    /// Calls with `arguments` and behind them `options`, to which the token of the request is
    /// added.
    static void send(const QDBusConnection& bus, QDBusMessage call, QVariantList arguments,
                     QVariantMap options, QObject& parent, Answered answered);

    /// A token that no other object of this program has.
    static QString newToken();

private:
    PortalRequest(const QDBusConnection& bus, QObject& parent, Answered answered);
    void listen(const QString& path);
    void finish(Answer answer, const QVariantMap& results, const QString& sentence);

    QDBusConnection bus_;
    QString path_;
    Answered answered_;

private slots:
    void responded(uint response, const QVariantMap& results);
};

}  // namespace tarn
