#pragma once

#include <cstddef>
#include <latch>

#include "TarnCore/base/TaskPool.h"

namespace tarn {

/// No task of the shared pool begins while this lives.
class BusyPool {
public:
    BusyPool() : begun_(static_cast<std::ptrdiff_t>(TaskPool::shared().threadCount())) {
        for (std::size_t i = 0; i < TaskPool::shared().threadCount(); ++i) {
            TaskPool::shared().run([this] {
                begun_.count_down();
                released_.wait();
                ended_.count_down();
            });
        }
        begun_.wait();
    }
    ~BusyPool() {
        released_.count_down();
        ended_.wait();
    }
    BusyPool(const BusyPool&) = delete;
    BusyPool& operator=(const BusyPool&) = delete;

private:
    std::latch begun_;
    std::latch released_{1};
    std::latch ended_{static_cast<std::ptrdiff_t>(TaskPool::shared().threadCount())};
};

}  // namespace tarn
