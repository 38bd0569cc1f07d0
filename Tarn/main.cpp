#include <cstdlib>
#include <optional>

#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/TerminalCalls.h"
#include "Tarn/model/TerminationSignals.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/onboarding/OnboardingSheet.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/transfers/DesktopClipboard.h"
#include "Tarn/ui/transfers/SleepInhibitor.h"
#include "Tarn/ui/transfers/TransferNotifier.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/linux/LinuxSoundOutput.h"

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value && std::string_view(value) != "0";
}

tarn::BrowserWindow* openWindow(tarn::AppModel& app, const tarn::Location& location) {
    auto* window = new tarn::BrowserWindow(std::make_unique<tarn::WindowModel>(app, location));
    window->show();
    return window;
}

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

/// Opens the tabs of a workspace in a window of their own; the home where it is gone by now.
void openWorkspace(tarn::AppModel& app, const std::optional<tarn::UUID>& id) {
    using namespace tarn;
    const Workspace* workspace = id ? app.lists().workspace(*id) : nullptr;
    if (!workspace || workspace->tabs.empty()) {
        openWindow(app, Location::home());
        return;
    }
    (new BrowserWindow(std::make_unique<TabGroup>(app, workspace->tabs)))->show();
}

/// Opens a window on a path from the command line: a folder is shown, anything else is shown
/// selected in its folder. The path may lie on a disk that is slow to answer, so the window comes
/// once that is known.
void openPath(tarn::AppModel& app, const tarn::URL& url) {
    using namespace tarn;
    app.pool().run([url, target = QPointer<AppModel>(&app)] {
        const auto item = FileItem::load(url);
        const bool isFile = item && !item->isDirectory;
        MainThread::post(target, [url, isFile](AppModel& model) {
            if (!isFile) return (void)openWindow(model, Location::folder(url));
            auto window = std::make_unique<WindowModel>(model, Location::folder(url.parent()));
            window->active().navigate(Location::folder(url.parent()), false, {url});
            (new BrowserWindow(std::move(window)))->show();
        });
    });
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tarn;
    Platform::setCurrent(makeLinuxPlatform());
    SoundOutput::setCurrent(std::make_shared<LinuxSoundOutput>());
    QApplication qt(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarn"));
    QApplication::setDesktopFileName(QStringLiteral("tarn"));
    Theme::install(qt);
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

    const URL here = URL::fromPath(QDir::currentPath().toStdString());
    constexpr std::string_view workspaceOption = "--workspace=";
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with(workspaceOption)) {
            openWorkspace(app, UUID::parse(argument.substr(workspaceOption.size())));
            continue;
        }
        openPath(app, argument.starts_with("file:") ? URL::parse(argument).value_or(here)
                                                    : URL::fromPath(argument, here));
    }
    if (argc <= 1) {
        BrowserWindow* first = nullptr;
        const bool restores = std::getenv("TARN_RESTORE_SESSION") ? isSet("TARN_RESTORE_SESSION")
                                                                  : app.settings().restoreWindows;
        if (restores) first = SessionWindows::restore(app);
        if (!first) first = openWindow(app, Location::home());
        if (isSet("TARN_SHOW_ONBOARDING") || !app.settings().hasOnboarded) {
            auto* sheet = new OnboardingSheet(app, *first);
            sheet->open(sheet->next());
        }
    }
    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::received, &app,
                     [&app] { SessionWindows::end(app); });
    app.startBackgroundServices();
    const int result = QApplication::exec();
    app.flush();
    return result;
}
