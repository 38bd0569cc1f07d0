#include "Tarn/ui/desktop/ProgramLaunch.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusMessage>

#include "Tarn/commands/Programs.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/ui/desktop/StartupNotice.h"
#include "Tarn/ui/desktop/WindowSystem.h"
#include "Tarn/ui/quicksearch/XDisplay.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn::ProgramLaunch {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A compositor answers in a few milliseconds, or is busy. The program starts without a token then.
constexpr std::chrono::milliseconds tokenPatience = 250ms;
/// Milliseconds. A program may have to be started first; it opens the files however late.
constexpr int activationPatience = 10'000;

using Request = std::shared_ptr<ActivationTokens::Request>;

/// What a program under X11 is started with; and who is to hear when it fails.
struct Notice {
    std::string id;
    void end() const {
        if (id.empty()) return;
        MainThread::post([id = id] {
            if (xcb_connection_t* x = XDisplay::connection()) StartupNotice::end(x, id);
        });
    }
};

/// On the pool. `token` is that of the compositor, or the id of the notice.
void launch(const Job& job, const std::string& terminal, const std::string& token,
            const Notice& notice, const Told& told) {
    const auto tell = [job, notice, told](Outcome outcome) {
        if (outcome != Outcome::started) notice.end();
        MainThread::post([job, told, outcome] { told(job, outcome); });
    };
    if (job.program.isActivatable && activate(QDBusConnection::sessionBus(), job, token))
        return tell(Outcome::started);
    std::vector<Programs::Call> calls = Programs::calls(job.program, terminal, job.files);
    const auto start = [&](Programs::Call& call) {
        if (!token.empty())
            call.variables = {{"XDG_ACTIVATION_TOKEN", token}, {"DESKTOP_STARTUP_ID", token}};
        return Programs::start(call, [tell] { tell(Outcome::endedAtOnce); });
    };
    const bool isStarted = !calls.empty() && std::ranges::all_of(calls, start);
    tell(isStarted ? Outcome::started : Outcome::notStarted);
}

void startOnX11(TaskPool& pool, const std::vector<Job>& jobs, const std::string& terminal,
                const Told& told) {
    xcb_connection_t* const x = XDisplay::connection();
    for (const Job& job : jobs) {
        Notice notice;
        if (x) {
            notice.id = StartupNotice::newID(WindowSystem::inputTime());
            StartupNotice::begin(x, notice.id, job.program);
        }
        pool.run([=] { launch(job, terminal, notice.id, notice, told); });
    }
}

void startOnWayland(TaskPool& pool, const std::vector<Job>& jobs, const std::string& terminal,
                    const Told& told) {
    const auto origin = WindowSystem::waylandOrigin();
    for (const Job& job : jobs) {
        const Request request = ActivationTokens::current()->ask(origin, job.program.id);
        pool.run([=] {
            const std::string token = request ? request->wait(tokenPatience) : std::string();
            launch(job, terminal, token, {}, told);
        });
    }
}

QString busName(const DesktopEntry& program) {
    QString name = QString::fromStdString(program.id);
    if (name.endsWith(u".desktop"_s)) name.chop(8);
    return name;
}

QString objectPath(const QString& name) {
    QString path = u'/' + name;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

}  // namespace

void start(TaskPool& pool, const std::vector<Job>& jobs, const std::string& terminal, Told told) {
    wl_display* const display = WindowSystem::waylandDisplay();
    if (!display || !ActivationTokens::current()) return startOnX11(pool, jobs, terminal, told);
    pool.run([display, jobs, terminal, told = std::move(told), &pool] {
        ActivationTokens::current()->prepare(display, tokenPatience);
        MainThread::post([=, &pool] { startOnWayland(pool, jobs, terminal, told); });
    });
}

bool activate(const QDBusConnection& bus, const Job& job, const std::string& token) {
    const QString name = busName(job.program);
    if (!bus.isConnected() || !name.contains(u'.')) return false;
    QStringList uris;
    for (const URL& file : job.files) uris.append(QString::fromStdString(file.string()));
    QVariantMap platform;
    if (!token.empty()) {
        platform.insert(u"activation-token"_s, QString::fromStdString(token));
        platform.insert(u"desktop-startup-id"_s, QString::fromStdString(token));
    }
    QDBusMessage call = QDBusMessage::createMethodCall(name, objectPath(name),
                                                       u"org.freedesktop.Application"_s, u"Open"_s);
    call.setArguments({uris, platform});
    const QDBusMessage reply = bus.call(call, QDBus::Block, activationPatience);
    if (reply.type() != QDBusMessage::ErrorMessage) return true;
    // It is there and busy: it opens them once it looks.
    const QDBusError::ErrorType error = QDBusError(reply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout ||
           error == QDBusError::TimedOut;
}

}  // namespace tarn::ProgramLaunch
