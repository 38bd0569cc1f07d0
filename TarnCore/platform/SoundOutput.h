#pragma once

#include <memory>
#include <string_view>

namespace tarn {

/// Sound on its way to the loudspeakers. For one thread at a time.
class SoundStream {
public:
    virtual ~SoundStream() = default;
    /// Interleaved samples of 16 bits in the machine's order. Waits while more than a fraction of a
    /// second has not been heard; false when the sound system is gone.
    virtual bool write(std::string_view samples) = 0;
    /// Seconds of what was written that nobody has heard yet.
    virtual double latency() const = 0;
    /// What was not heard never will be.
    virtual void drop() = 0;
};

/// The machine's sound. Callable from any thread.
class SoundOutput {
public:
    virtual ~SoundOutput() = default;
    /// Null when there is no sound system, or it has no room.
    virtual std::unique_ptr<SoundStream> open(int rate, int channels) const = 0;

    /// That of this process; null where nothing is to be heard. Set once in `main`, before the
    /// first thread.
    static const SoundOutput* current();
    static void setCurrent(std::shared_ptr<SoundOutput> output);
};

}  // namespace tarn
