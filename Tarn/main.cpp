#include <cstdlib>

#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TerminalCalls.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/transfers/DesktopClipboard.h"
#include "Tarn/ui/transfers/SleepInhibitor.h"
#include "Tarn/ui/transfers/TransferNotifier.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value && std::string_view(value) != "0";
}

void openWindow(tarn::AppModel& app, const tarn::WindowSnapshot& snapshot) {
    (new tarn::BrowserWindow(std::make_unique<tarn::WindowModel>(app, snapshot)))->show();
}

tarn::WindowSnapshot showing(const tarn::URL& folder) {
    return {{{tarn::Location::folder(folder), std::nullopt}}, 0, true, false};
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
            if (!isFile) return openWindow(model, showing(url));
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
    QApplication qt(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarn"));
    QApplication::setDesktopFileName(QStringLiteral("tarn"));
    Theme::install(qt);
    AppModel app;
    app.setClipboard(std::make_unique<DesktopClipboard>());
    const SleepInhibitor inhibitor(app.transfers());
    const TransferNotifier notifier(app.transfers());
    const TerminalCalls calls(app.history());
    app.startBackgroundServices();

    const URL here = URL::fromPath(QDir::currentPath().toStdString());
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        openPath(app, argument.starts_with("file:") ? URL::parse(argument).value_or(here)
                                                    : URL::fromPath(argument, here));
    }
    if (argc <= 1 && isSet("TARN_RESTORE_SESSION")) {
        for (const auto& tabs : app.storedSession().windows) {
            for (const WindowSnapshot& tab : tabs) openWindow(app, tab);
        }
    }
    if (argc <= 1 && app.windows().empty()) openWindow(app, showing(Paths::home()));
    const int result = QApplication::exec();
    app.flush();
    return result;
}
