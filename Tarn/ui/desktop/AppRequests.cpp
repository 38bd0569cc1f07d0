#include "Tarn/ui/desktop/AppRequests.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/AppRequest.h"
#include "Tarn/ui/desktop/FileOpener.h"
#include "Tarn/ui/desktop/StartupNotice.h"
#include "Tarn/ui/desktop/WindowSystem.h"
#include "Tarn/ui/onboarding/OnboardingSheet.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/XDisplay.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {
namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value && std::string_view(value) != "0";
}

BrowserWindow* openWindow(AppModel& app, const Location& location) {
    return new BrowserWindow(std::make_unique<WindowModel>(app, location));
}

/// Selects items once the pane lists its place; those that are hidden are shown for that.
void select(WindowModel& tab, const std::vector<URL>& items, bool reloads) {
    const auto isHidden = [](const URL& item) { return item.name().starts_with('.'); };
    if (std::ranges::any_of(items, isHidden)) tab.setShowHidden(true);
    PaneModel& pane = tab.active();
    pane.navigate(pane.location(), reloads, items);
}

/// A pane that shows a folder, and not what was searched for in it.
struct Shown {
    TabGroup* group = nullptr;
    int tab = 0;
    int pane = 0;
};

bool shows(const PaneModel& pane, const Location& location) {
    return pane.location() == location && !pane.query();
}

/// The panes that are seen go before those of tabs at the back.
std::optional<Shown> find(const AppModel& app, const Location& location) {
    std::optional<Shown> found;
    for (TabGroup* group : app.groups()) {
        for (int tab = 0; tab < group->count(); ++tab) {
            const auto& panes = group->tab(tab).panes();
            for (std::size_t pane = 0; pane < panes.size(); ++pane) {
                if (!shows(*panes[pane], location)) continue;
                const Shown here = {group, tab, static_cast<int>(pane)};
                if (tab == group->currentIndex()) return here;
                if (!found) found = here;
            }
        }
    }
    return found;
}

BrowserWindow* windowOf(const TabGroup& group) {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<BrowserWindow*>(widget);
            window && &window->group() == &group)
            return window;
    return nullptr;
}

/// Brings a pane to the front of its window, and the window to the front.
WindowModel& bringForward(const Shown& shown, const std::string& token) {
    shown.group->setCurrent(shown.tab);
    WindowModel& tab = shown.group->tab(shown.tab);
    tab.setActiveIndex(shown.pane);
    if (BrowserWindow* window = windowOf(*shown.group)) AppRequests::raise(*window, token);
    return tab;
}

}  // namespace

AppRequests::AppRequests(AppModel& app, QObject* parent) : QObject(parent), app_(app) {}

void AppRequests::carryOut(const AppRequest& request) {
    const std::string& token = request.activationToken;
    if (request.isPlain()) {
        // Where windows are open, starting the program again means another one.
        return app_.groups().empty() ? openFirst(token) : openHome(token);
    }
    if (request.wantsWindow) openHome(token);
    if (request.workspace) openWorkspace(request);
    for (const URL& path : request.paths) openPath(path, token);
    for (const URL& folder : request.folders) showFolder(folder, token);
    if (!request.items.empty()) showItems(request.items, false, token);
    if (!request.properties.empty()) showItems(request.properties, true, token);
    if (request.wantsQuickSearch) emit quickSearchRequested(token);
}

void AppRequests::serve(QuickSearch& search) {
    connect(&search, &QuickSearch::placeRequested, this,
            [this](const Location& place, const std::vector<URL>& select) {
                if (!select.empty())
                    showItems(select, false, {});
                else if (place.isFolder())
                    showFolder(place.url, {});
                else
                    show(place, {});
            });
    connect(&search, &QuickSearch::fileRequested, this, [this](const URL& file) {
        FileOpener::open(app_, {file}, [self = QPointer(this)](const URL& one) {
            return self ? &self->show(Location::folder(one.parent()), {one}) : nullptr;
        });
    });
    connect(this, &AppRequests::quickSearchRequested, &search, &QuickSearch::open);
}

WindowModel& AppRequests::show(const Location& place, const std::vector<URL>& items) {
    auto window = std::make_unique<WindowModel>(app_, place);
    if (!items.empty()) select(*window, items, false);
    WindowModel& shown = *window;
    raise(*new BrowserWindow(std::move(window)), {});
    return shown;
}

void AppRequests::raise(QWidget& window, const std::string& activationToken) {
    // Where Qt looks for it; it is used up by the next window that is activated.
    if (!activationToken.empty())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
    // Under X11 it is an id with the time of the input that led here.
    if (const auto time = StartupNotice::time(activationToken); time && *time > 0)
        WindowSystem::noteInputTime(*time);
    if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    // Puts it on top, too.
    window.activateWindow();
    // Programs that are started from here are not meant by it.
    qunsetenv("XDG_ACTIVATION_TOKEN");
    if (xcb_connection_t* const x = XDisplay::connection(); x && !activationToken.empty())
        StartupNotice::end(x, activationToken);
}

void AppRequests::openFirst(const std::string& token) {
    BrowserWindow* first = nullptr;
    const bool restores = std::getenv("TARN_RESTORE_SESSION") ? isSet("TARN_RESTORE_SESSION")
                                                              : app_.settings().restoreWindows;
    if (restores) first = SessionWindows::restore(app_);
    if (!first) first = openWindow(app_, Location::home());
    raise(*first, token);
    if (isSet("TARN_SHOW_ONBOARDING") || !app_.settings().hasOnboarded) {
        auto* sheet = new OnboardingSheet(app_, *first);
        sheet->open(sheet->next());
    }
}

void AppRequests::openHome(const std::string& token) {
    raise(*openWindow(app_, Location::home()), token);
}

void AppRequests::openWorkspace(const AppRequest& request) {
    const Workspace* workspace = app_.lists().workspace(*request.workspace);
    // It may be gone by now.
    if (!workspace || workspace->tabs.empty()) return openHome(request.activationToken);
    auto* window = new BrowserWindow(std::make_unique<TabGroup>(app_, workspace->tabs));
    raise(*window, request.activationToken);
}

/// The path may lie on a disk that is slow to answer, so the window comes once it is known whether
/// it is a folder.
void AppRequests::openPath(const URL& url, const std::string& token) {
    app_.pool().run([url, token, target = QPointer<AppModel>(&app_)] {
        const auto item = FileItem::load(url);
        const bool isFile = item && !item->isDirectory;
        MainThread::post(target, [url, isFile, token](AppModel& app) {
            const Location place = Location::folder(isFile ? url.parent() : url);
            auto window = std::make_unique<WindowModel>(app, place);
            if (isFile) select(*window, {url}, false);
            raise(*new BrowserWindow(std::move(window)), token);
        });
    });
}

void AppRequests::showFolder(const URL& folder, const std::string& token) {
    const Location location = Location::folder(folder);
    if (const auto shown = find(app_, location))
        bringForward(*shown, token).panes()[static_cast<std::size_t>(shown->pane)]->reload();
    else
        raise(*openWindow(app_, location), token);
}

void AppRequests::showItems(const std::vector<URL>& items, bool withProperties,
                            const std::string& token) {
    std::vector<std::pair<Location, std::vector<URL>>> places;
    for (const URL& item : items) {
        const Location place = Location::folder(item.parent());
        auto known = std::ranges::find(places, place, &decltype(places)::value_type::first);
        if (known == places.end()) known = places.insert(known, {place, {}});
        known->second.push_back(item);
    }
    std::vector<WindowSnapshot> missing;
    std::vector<std::vector<URL>> missingItems;
    for (auto& [place, selected] : places) {
        const auto shown = find(app_, place);
        if (!shown) {
            missing.push_back(WindowSnapshot::of(place));
            missing.back().showInspector = withProperties;
            missingItems.push_back(std::move(selected));
            continue;
        }
        WindowModel& tab = bringForward(*shown, token);
        if (withProperties) tab.setShowsInspector(true);
        // Looked at afresh: what is to be shown has often just come.
        select(tab, selected, true);
    }
    if (missing.empty()) return;
    auto group = std::make_unique<TabGroup>(app_, missing);
    for (int i = 0; i < group->count(); ++i)
        select(group->tab(i), missingItems[static_cast<std::size_t>(i)], false);
    raise(*new BrowserWindow(std::move(group)), token);
}

}  // namespace tarn
