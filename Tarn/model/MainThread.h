#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaObject>
#include <QtCore/QPointer>
#include <QtCore/QThread>

/// The thread of the window. Everything that models and views touch is touched there, and post()
/// is the only way back to it.
namespace tarn::MainThread {

inline bool isCurrent() { return qApp && QThread::currentThread() == qApp->thread(); }

/// Runs `work` on the main thread, in the order of the calls. From any thread. Dropped when there
/// is no application any more.
inline void post(std::function<void()> work) {
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(work), Qt::QueuedConnection);
}

/// Runs `work(target)` on the main thread; dropped when `target`, an object of that thread, has
/// gone by then. `work` may own what cannot be copied.
template <class Target, class Work>
void post(QPointer<Target> target, Work work) {
    // std::function wants a copy; what travels here often owns 100,000 rows.
    auto shared = std::make_shared<Work>(std::move(work));
    post([target = std::move(target), shared = std::move(shared)] {
        if (target) (*shared)(*target);
    });
}

}  // namespace tarn::MainThread
