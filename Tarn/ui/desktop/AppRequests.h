#pragma once

#include <string>
#include <vector>

#include <QtCore/QObject>

#include "TarnCore/base/URL.h"

class QWidget;

namespace tarn {

class AppModel;
struct AppRequest;
class BrowserWindow;
struct Location;
class QuickSearch;
class WindowModel;

/// Carries out in this process what is asked of the program. Main thread only.
class AppRequests final : public QObject {
    Q_OBJECT
public:
    /// `app` outlives it.
    explicit AppRequests(AppModel& app, QObject* parent = nullptr);

    void carryOut(const AppRequest& request);

    /// Shows and opens what is chosen in the quick search, and has it shown when that is asked for.
    void serve(QuickSearch& search);

    /// Shows a window in front of those of other programs, as far as the desktop allows: with a
    /// token of the program that asked, or without.
    static void raise(QWidget& window, const std::string& activationToken);

signals:
    /// The quick search panel is to be shown. The token is for raise().
    void quickSearchRequested(const std::string& activationToken);

private:
    /// The windows of the last session, or one on the home; a greeting where this is the first.
    void openFirst(const std::string& token);
    void openHome(const std::string& token);
    void openWorkspace(const AppRequest& request);
    void openPath(const URL& url, const std::string& token);
    void showFolder(const URL& folder, const std::string& token);
    /// In a window of its own.
    WindowModel& show(const Location& place, const std::vector<URL>& select);
    /// In a tab for each of their folders; those that are not shown yet in one new window.
    void showItems(const std::vector<URL>& items, bool withProperties, const std::string& token);

    AppModel& app_;
};

}  // namespace tarn
