#include "TarnCore/platform/linux/LinuxTextRecognition.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const TextRecognition* loadedRecognition() {
    static const TextRecognition* const recognition = [] {
        auto* entry = reinterpret_cast<TextRecognitionEntry*>(
            loadModuleSymbol("tarn-recognition", textRecognitionSymbol));
        return entry ? entry(textRecognitionVersion) : nullptr;
    }();
    return recognition;
}

}  // namespace

bool LinuxTextRecognition::isAvailable(const std::vector<std::string>& languages) const {
    const TextRecognition* recognition = loadedRecognition();
    return recognition && recognition->isAvailable(languages);
}

std::string LinuxTextRecognition::recognize(const GrayPicture& picture,
                                            const std::vector<std::string>& languages) const {
    const TextRecognition* recognition = loadedRecognition();
    return recognition ? recognition->recognize(picture, languages) : std::string();
}

std::optional<GrayPicture> LinuxTextRecognition::load(std::string_view bytes, int size) const {
    const TextRecognition* recognition = loadedRecognition();
    return recognition ? recognition->load(bytes, size) : std::nullopt;
}

std::vector<std::string> LinuxTextRecognition::languages() const {
    const TextRecognition* recognition = loadedRecognition();
    return recognition ? recognition->languages() : std::vector<std::string>();
}

}  // namespace tarn
