#pragma once

#include <atomic>

#include "TarnCore/platform/MachineLoad.h"

namespace tarn {

/// A machine whose load a test sets.
class MemoryMachineLoad final : public MachineLoad {
public:
    void setOnBattery(bool isOnBattery) { isOnBattery_ = isOnBattery; }
    void setBusy(bool isBusy) { isBusy_ = isBusy; }
    /// How many threads asked for the lowest priority.
    int loweredThreads() const { return loweredThreads_; }

    bool isOnBattery() const override { return isOnBattery_; }
    bool isBusy() const override { return isBusy_; }
    void lowerPriorityOfThread() override { ++loweredThreads_; }

private:
    std::atomic<bool> isOnBattery_ = false;
    std::atomic<bool> isBusy_ = false;
    std::atomic<int> loweredThreads_ = 0;
};

}  // namespace tarn
