#pragma once

#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>

class QEvent;

namespace tarn {

/// How long single events keep the main thread, so that whatever makes the window stall is found:
/// in a model, in layout or in painting. Main thread only.
///
/// What counts is the time that the thread works or waits for something (a disk, a lock, another
/// program), not the time that it waits for a processor, or a busy machine would make every event
/// look long. Linux tells the difference in /proc/thread-self/schedstat. Where it does not, only
/// processor time counts, and waits are not seen.
///
/// How long the thread waits still depends on others: on a busy machine the disk and the thread that
/// holds a lock take several times as long. Tests therefore judge the work alone by the limit, and
/// the whole by `waitingAllowed`.
///
/// An event that runs a loop of its own (a menu, a drag) is not judged; those that this loop
/// handles are.
class EventWatch final : public QObject {
    Q_OBJECT
public:
    explicit EventWatch(QObject* parent = nullptr);
    ~EventWatch() override;

    /// Calls `handle`, which hands an event to its receiver.
    template <class Handle>
    bool watch(const QObject* receiver, const QEvent* event, const Handle& handle) {
        if (!begin()) return handle();           // Part of an event that is being watched.
        const Subject subject(receiver, event);  // Which may be gone afterwards.
        const bool result = handle();
        end(subject);
        return result;
    }

    struct Event {
        double seconds = 0;
        QString name;  ///< "Paint of PaneListView “paneList”"
    };
    /// The one that took longest since the last reset().
    const Event& longest() const { return longest_; }
    /// The one that worked longest since then: its processor time.
    const Event& hardest() const { return hardest_; }
    void reset() { longest_ = hardest_ = {}; }

    /// No event may take longer, in seconds, or people feel that it does.
    static constexpr double longestAllowed = 0.05;
    /// Nor with its waits, on a machine that others keep busy.
    static constexpr double waitingAllowed = 0.5;

signals:
    void tookLong(const tarn::EventWatch::Event& event);

private:
    struct Running {
        double begun;
        double workBegun;  ///< Of the thread's processor time.
        bool hasLoop = false;
    };
    struct Subject {
        Subject(const QObject* receiver, const QEvent* event);
        QString name() const;
        const char* className;
        QString objectName;
        int type;
    };
    bool begin();
    void end(const Subject& subject);
    double now() const;

    int schedule_ = -1;  ///< The open schedstat; -1 where there is none.
    std::vector<Running> running_;
    Event longest_;
    Event hardest_;
};

}  // namespace tarn
