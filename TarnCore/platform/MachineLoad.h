#pragma once

namespace tarn {

/// Whether the machine has time for work that nobody waits for. Callable from any thread.
class MachineLoad {
public:
    virtual ~MachineLoad() = default;
    /// Runs on a battery that is not being charged.
    virtual bool isOnBattery() const = 0;
    /// Other programs wait for processor, memory or disk.
    virtual bool isBusy() const = 0;
    /// From now on the calling thread, and what it starts, gets processor and disk only when
    /// nothing else wants them. Cannot be taken back.
    virtual void lowerPriorityOfThread() = 0;
};

}  // namespace tarn
