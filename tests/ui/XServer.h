#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <xcb/xcb.h>

namespace tarn {

/// An X server without a screen, for one test.
class XServer {
public:
    ~XServer() {
        process_.kill();
        process_.waitForFinished();
    }

    /// False where none is installed.
    bool start() {
        process_.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                        // When the last one has gone, it would close the connection of the next.
                        QStringLiteral("-noreset")});
        if (!process_.waitForStarted() || !process_.waitForReadyRead(10'000)) return false;
        display_ = u':' + QString::fromUtf8(process_.readLine()).trimmed();
        return true;
    }

    /// The caller closes it.
    xcb_connection_t* connect() const {
        return xcb_connect(display_.toUtf8().constData(), nullptr);
    }

    /// Whether a program, given with its arguments, worked on it.
    bool runs(QStringList words) const {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display_);
        process.setProcessEnvironment(environment);
        const QString program = words.takeFirst();
        process.start(program, words);
        return process.waitForFinished(10'000) && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

private:
    QProcess process_;
    QString display_;
};

}  // namespace tarn
