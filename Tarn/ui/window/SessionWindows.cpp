#include "Tarn/ui/window/SessionWindows.h"

#include <algorithm>

#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/ui/window/BrowserWindow.h"

namespace tarn {

BrowserWindow* SessionWindows::restore(AppModel& app) {
    const SessionState session = app.storedSession();
    const std::vector<WindowLayout> layouts = app.storedLayouts();
    // Half of them would be a session of its own.
    app.setKeepSessionWhileClosing(true);
    BrowserWindow* first = nullptr;
    for (std::size_t i = 0; i < session.windows.size(); ++i) {
        if (session.windows[i].empty()) continue;
        auto group = std::make_unique<TabGroup>(app, session.windows[i]);
        if (i < layouts.size()) {
            group->setLayout(layouts[i]);
            group->setCurrent(layouts[i].currentTab);
        }
        auto* window = new BrowserWindow(std::move(group));
        window->show();
        if (!first) first = window;
    }
    app.setKeepSessionWhileClosing(false);
    return first;
}

void SessionWindows::end(AppModel& app) {
    app.saveSession();
    app.setKeepSessionWhileClosing(true);
    app.transfers().cancelAll();
    app.activities().stopWork();
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<BrowserWindow*>(widget)) window->deleteLater();
    QApplication::quit();
}

}  // namespace tarn
