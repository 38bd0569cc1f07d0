#pragma once

#include "TarnCore/platform/TextRecognition.h"

namespace tarn {

/// Recognises text through a module around Tesseract and libvips that is loaded at the first
/// picture. Without the module there is no text in any, and no language.
class LinuxTextRecognition final : public TextRecognition {
public:
    bool isAvailable(const std::vector<std::string>& languages) const override;
    std::string recognize(const GrayPicture& picture,
                          const std::vector<std::string>& languages) const override;
    std::optional<GrayPicture> load(std::string_view bytes, int size) const override;
    std::vector<std::string> languages() const override;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using TextRecognitionEntry = const TextRecognition*(int version);
inline constexpr int textRecognitionVersion = 2;
inline constexpr const char* textRecognitionSymbol = "tarnTextRecognition";

}  // namespace tarn
