#pragma once

#include "TarnCore/platform/SoundOutput.h"

namespace tarn {

/// Sound through the server that the desktop runs (PulseAudio, or PipeWire in its place), by a
/// module that is loaded with the first sound. Without the module or a server nothing is heard.
class LinuxSoundOutput final : public SoundOutput {
public:
    std::unique_ptr<SoundStream> open(int rate, int channels) const override;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using SoundOutputEntry = const SoundOutput*(int version);
inline constexpr int soundOutputVersion = 1;
inline constexpr const char* soundOutputSymbol = "tarnSoundOutput";

}  // namespace tarn
