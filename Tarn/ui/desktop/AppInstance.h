#pragma once

#include <vector>

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "Tarn/ui/desktop/AppRequest.h"

namespace tarn {

/// The one process of the user, as the session bus knows it: whoever starts first owns the name of
/// the program there, and is handed what the later ones were started for.
///
/// It answers org.freedesktop.Application (with the actions "new-window", "quick-search" and
/// "open-workspace", which takes the id) and org.freedesktop.FileManager1. Main thread only.
/// Without a session bus every process stands by itself.
class AppInstance final : public QObject {
    Q_OBJECT
public:
    explicit AppInstance(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                         QObject* parent = nullptr);

    /// Takes the name, or has the process that has it carry out `request`. True when that was done,
    /// and this process has nothing left to do. Waits for the other one; one that does not answer
    /// for `patience` milliseconds is left alone.
    bool handOver(const AppRequest& request, int patience = 10'000);
    /// Other programs look for a file manager under a name of its own. It is ours from the moment
    /// on when no other has it. Not in an isolated run, which nobody else knows of.
    void offerAsFileManager();

    /// From now on requests are told by requested(); those that came before at once.
    void begin();

    /// What came through the bus.
    void take(AppRequest request);
    const QDBusConnection& bus() const { return bus_; }

signals:
    void requested(const tarn::AppRequest& request);

private:
    enum class Answer { done, gone, none };
    /// Sends `request` to the process that has the name.
    Answer send(const AppRequest& request, int patience) const;
    bool isOwned() const;

    QDBusConnection bus_;
    QObject fileManager_;  ///< Stands at the path that other programs expect.
    std::vector<AppRequest> waiting_;
    bool hasBegun_ = false;
};

}  // namespace tarn
