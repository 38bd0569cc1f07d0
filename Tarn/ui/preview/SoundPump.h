#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/SoundOutput.h"

namespace tarn {

/// Hands sound to the machine on a thread of its own, and tells which moment of it is heard.
/// Main thread only; the destructor waits for the stretch that is being written, some 0.2 s.
class SoundPump {
public:
    SoundPump();
    ~SoundPump();
    SoundPump(const SoundPump&) = delete;
    SoundPump& operator=(const SoundPump&) = delete;

    /// Samples whose first one belongs to `time`, behind those that were given before.
    void play(double time, std::string samples);
    /// Nothing of what was given before is heard any more.
    void drop();

    /// The same, and the machine's sound is given back until more is played.
    void close();

    /// The moment that is heard now, in seconds; negative before the first one is.
    double heard() const;
    /// False once the sound system has failed, or when there is none.
    bool works() const { return works_; }

private:
    std::unique_ptr<SoundStream> stream_;  ///< Of the queue's thread.
    std::atomic<bool> works_ = true;
    std::atomic<std::uint64_t> drops_ = 0;
    /// Of the last stretch: the moment that was heard when it had been written, and when that was.
    std::atomic<double> heardThen_ = -1;
    std::atomic<double> then_ = 0;
    std::atomic<double> writtenUntil_ = 0;
    SerialQueue queue_{"tarn.sound"};  ///< The last member: it ends before what it uses.
};

}  // namespace tarn
