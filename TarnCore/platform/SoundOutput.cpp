#include "TarnCore/platform/SoundOutput.h"

#include <utility>

namespace tarn {
namespace {

std::shared_ptr<SoundOutput>& output() {
    static std::shared_ptr<SoundOutput> output;
    return output;
}

}  // namespace

const SoundOutput* SoundOutput::current() { return output().get(); }
void SoundOutput::setCurrent(std::shared_ptr<SoundOutput> current) {
    output() = std::move(current);
}

}  // namespace tarn
