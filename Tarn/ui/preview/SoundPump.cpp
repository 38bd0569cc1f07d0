#include "Tarn/ui/preview/SoundPump.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "TarnCore/platform/MediaDecoding.h"

namespace tarn {
namespace {

constexpr double bytesPerSecond = 2.0 * MediaDecoding::channels * MediaDecoding::rate;

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

SoundPump::SoundPump() = default;

SoundPump::~SoundPump() {
    close();
    queue_.flush();
}

void SoundPump::play(double time, std::string samples) {
    queue_.run([this, drop = drops_.load(), time, samples = std::move(samples)] {
        if (drop != drops_ || !works_) return;
        if (!stream_) {
            const SoundOutput* output = SoundOutput::current();
            if (output) stream_ = output->open(MediaDecoding::rate, MediaDecoding::channels);
        }
        if (!stream_ || !stream_->write(samples)) {
            works_ = false;
            return;
        }
        if (drop != drops_) return;
        const double end = time + static_cast<double>(samples.size()) / bytesPerSecond;
        writtenUntil_ = end;
        then_ = now();
        heardThen_ = std::max(0.0, end - stream_->latency());
    });
}

void SoundPump::drop() {
    ++drops_;
    heardThen_ = -1;
    queue_.run([this] {
        if (stream_) stream_->drop();
        heardThen_ = -1;
    });
}

void SoundPump::close() {
    drop();
    queue_.run([this] { stream_.reset(); });
}

double SoundPump::heard() const {
    const double moment = heardThen_;
    if (moment < 0) return -1;
    return std::min(moment + now() - then_, writtenUntil_.load());
}

}  // namespace tarn
