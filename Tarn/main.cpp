#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TerminalCalls.h"
#include "Tarn/model/TerminationSignals.h"
#include "Tarn/ui/desktop/AppID.h"
#include "Tarn/ui/desktop/AppInstance.h"
#include "Tarn/ui/desktop/AppRequests.h"
#include "Tarn/ui/desktop/LoginEntry.h"
#include "Tarn/ui/desktop/ServerMounts.h"
#include "Tarn/ui/language/Language.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/XDisplay.h"
#include "Tarn/ui/theme/FallbackFonts.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/thumbnails/ThumbnailPreloader.h"
#include "Tarn/ui/transfers/DesktopClipboard.h"
#include "Tarn/ui/transfers/SleepInhibitor.h"
#include "Tarn/ui/transfers/TransferNotifier.h"
#include "Tarn/ui/window/FirstRows.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "Tarn/ui/window/WatchedApplication.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/platform/linux/LinuxActivationTokens.h"
#include "TarnCore/platform/linux/LinuxOpenedFiles.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/linux/LinuxSoundOutput.h"

namespace {

constexpr int wrongUsage = 2;
/// The bus starts the program for a call that is on its way. Milliseconds until it ends when none
/// has come that needs a window.
constexpr int servicePatience = 10'000;

tarn::Theme::Mode mode(tarn::Appearance appearance) {
    switch (appearance) {
        case tarn::Appearance::light:
            return tarn::Theme::Mode::light;
        case tarn::Appearance::dark:
            return tarn::Theme::Mode::dark;
        case tarn::Appearance::system:
            break;
    }
    return tarn::Theme::Mode::system;
}

/// What the words on the command line and the environment ask for. `startupID` is what launchers
/// give under X11.
tarn::AppRequest requestOf(int argc, char** argv, const std::string& startupID) {
    using tarn::AppRequest;
    const tarn::URL here = tarn::URL::fromPath(QDir::currentPath().toStdString());
    AppRequest request = AppRequest::parse({argv + 1, argv + argc}, here);
    // Programs that are started from here are not meant by it.
    if (const char* token = std::getenv("XDG_ACTIVATION_TOKEN"))
        request.activationToken = token;
    else
        request.activationToken = startupID;
    qunsetenv("XDG_ACTIVATION_TOKEN");
    return request;
}

/// Keeps the entry for logins as the settings want it.
void followLogin(tarn::AppModel& app) {
    using namespace tarn;
    auto apply = [&app, applied = std::optional<bool>()]() mutable {
        const bool opens = app.settings().openAtLogin;
        if (std::exchange(applied, opens) == opens) return;
        app.pool().run([opens, program = QCoreApplication::applicationFilePath().toStdString()] {
            try {
                LoginEntry::set(opens, program);
            } catch (const Error& error) {
                std::fprintf(stderr, "%s\n", error.what());
            }
        });
    };
    apply();
    QObject::connect(&app, &AppModel::settingsChanged, &app, apply);
}

}  // namespace

int main(int argc, char** argv) try {
    using namespace tarn;
    Platform::setCurrent(makeLinuxPlatform());
    SoundOutput::setCurrent(std::make_shared<LinuxSoundOutput>());
    OpenedFiles::setCurrent(std::make_shared<LinuxOpenedFiles>());
    ActivationTokens::setCurrent(std::make_shared<LinuxActivationTokens>());
    // Qt takes it out of the environment.
    const char* startupID = std::getenv("DESKTOP_STARTUP_ID");
    const std::string startedBy = startupID ? startupID : "";
#ifdef NDEBUG
    QApplication qt(argc, argv);
#else
    WatchedApplication qt(argc, argv);  // Tells which events keep the window waiting.
#endif
    QApplication::setApplicationName(QStringLiteral("Tarn"));
    QApplication::setDesktopFileName(AppID::name());
    const AppRequest request = requestOf(argc, argv, startedBy);
    AppInstance instance;
    if (instance.handOver(request)) return EXIT_SUCCESS;

    Theme::install(qt);
    Language::use(QLocale());
    AppModel app;
    const auto showAppearance = [&app] {
        Theme::shared().setMode(mode(app.settings().appearance));
    };
    QObject::connect(&app, &AppModel::settingsChanged, &Theme::shared(), showAppearance);
    showAppearance();
    app.setClipboard(std::make_unique<DesktopClipboard>());
    const SleepInhibitor inhibitor(app.transfers());
    const TransferNotifier notifier(app.transfers());
    const TerminalCalls calls(app.history());
    const ServerMounts servers(app);

    // Before there are windows, whose session would be lost with a signal that ends the process.
    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::received, &app,
                     [&app] { SessionWindows::end(app); });
    AppRequests requests(app);
    if (!request.isService) requests.carryOut(request);
    // Behind the first window, which does not wait for it.
    QuickSearch quickSearch(app,
                            QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                                          QStringLiteral("tarn-quick-search")),
                            XDisplay::connection());
    requests.serve(quickSearch);
    if (request.wantsQuickSearch) quickSearch.open(request.activationToken);
    QObject::connect(&instance, &AppInstance::requested, &requests, &AppRequests::carryOut);
    instance.begin();
    instance.offerAsFileManager();
    if (request.isService)
        QTimer::singleShot(servicePatience, &app, [] {
            if (QApplication::topLevelWidgets().isEmpty()) QApplication::quit();
        });

    followLogin(app);
    ThumbnailPreloader preloader;
    app.setThumbnailPreloading([&preloader](AppModel& model) { preloader.preloadVisited(model); });
    const bool isInitialSetup = request.isPlain() && !app.settings().hasOnboarded;
    FallbackFonts fallbacks;
    const FirstRows shown([&app, &fallbacks, isInitialSetup] {
        fallbacks.learn();
        app.startBackgroundServices(isInitialSetup);
    });
    const int result = QApplication::exec();
    app.flush();
    return result;
} catch (const tarn::Error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return wrongUsage;
}
