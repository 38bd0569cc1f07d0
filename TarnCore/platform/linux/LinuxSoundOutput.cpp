#include "TarnCore/platform/linux/LinuxSoundOutput.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const SoundOutput* loadOutput() {
    auto* entry =
        reinterpret_cast<SoundOutputEntry*>(loadModuleSymbol("tarn-sound", soundOutputSymbol));
    return entry ? entry(soundOutputVersion) : nullptr;
}

}  // namespace

std::unique_ptr<SoundStream> LinuxSoundOutput::open(int rate, int channels) const {
    static const SoundOutput* const output = loadOutput();
    return output ? output->open(rate, channels) : nullptr;
}

}  // namespace tarn
