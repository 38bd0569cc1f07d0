#pragma once

#include <optional>

#include <QtWidgets/QApplication>

#include "Tarn/model/EventWatch.h"

namespace tarn {

/// An application that knows how long its events take: for tests, benchmarks and daily work on the
/// program itself. What users run is a plain QApplication.
class WatchedApplication final : public QApplication {
public:
    WatchedApplication(int& argc, char** argv) : QApplication(argc, argv) {
        watch_.emplace();
        connect(&*watch_, &EventWatch::tookLong, this, [](const EventWatch::Event& event) {
            qWarning("The main thread was kept for %.0f ms: %s", event.seconds * 1000,
                     qPrintable(event.name));
        });
    }

    EventWatch& watch() { return *watch_; }

    bool notify(QObject* receiver, QEvent* event) override {
        // Some events are handled before there is a watch.
        if (!watch_) return QApplication::notify(receiver, event);
        return watch_->watch(receiver, event,
                             [&] { return QApplication::notify(receiver, event); });
    }

private:
    std::optional<EventWatch> watch_;
};

}  // namespace tarn
