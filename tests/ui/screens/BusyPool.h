#pragma once

#include <cstddef>
#include <latch>

#include "TarnCore/base/TaskPool.h"

namespace tarn {

/// No task of the shared pool begins while this lives; its spare threads are kept as well.
class BusyPool {
public:
    BusyPool() {
        for (std::ptrdiff_t i = 0; i < count_; ++i) {
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
    std::ptrdiff_t count_ =
        static_cast<std::ptrdiff_t>(TaskPool::shared().threadCount() + TaskPool::mostSpares);
    std::latch begun_{count_};
    std::latch released_{1};
    std::latch ended_{count_};
};

}  // namespace tarn
