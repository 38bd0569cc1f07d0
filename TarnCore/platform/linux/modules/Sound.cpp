// Sound through PulseAudio's simple interface; the module tarn-sound.
#include <cstdint>
#include <memory>

#include <pulse/simple.h>

#include "TarnCore/platform/linux/LinuxSoundOutput.h"

namespace tarn {
namespace {

/// Milliseconds that may be on their way; more makes pausing sluggish.
constexpr int mostAhead = 200;

struct Release {
    void operator()(pa_simple* stream) const { pa_simple_free(stream); }
};

class PulseStream final : public SoundStream {
public:
    explicit PulseStream(pa_simple* stream) : stream_(stream) {}
    bool write(std::string_view samples) override {
        return pa_simple_write(stream_.get(), samples.data(), samples.size(), nullptr) >= 0;
    }
    double latency() const override {
        return static_cast<double>(pa_simple_get_latency(stream_.get(), nullptr)) * 1e-6;
    }
    void drop() override { pa_simple_flush(stream_.get(), nullptr); }

private:
    std::unique_ptr<pa_simple, Release> stream_;
};

class PulseOutput final : public SoundOutput {
public:
    std::unique_ptr<SoundStream> open(int rate, int channels) const override {
        pa_sample_spec form{};
        form.format = PA_SAMPLE_S16NE;
        form.rate = static_cast<std::uint32_t>(rate);
        form.channels = static_cast<std::uint8_t>(channels);
        constexpr auto any = static_cast<std::uint32_t>(-1);
        const auto ahead = static_cast<std::uint32_t>(
            pa_usec_to_bytes(static_cast<pa_usec_t>(mostAhead) * 1000, &form));
        const pa_buffer_attr room = {any, ahead, any, any, any};
        pa_simple* stream = pa_simple_new(nullptr, "Tarn", PA_STREAM_PLAYBACK, nullptr, "Preview",
                                          &form, nullptr, &room, nullptr);
        return stream ? std::make_unique<PulseStream>(stream) : nullptr;
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::SoundOutput* tarnSoundOutput(
    int version) {
    static const tarn::PulseOutput output;
    return version == tarn::soundOutputVersion ? &output : nullptr;
}
