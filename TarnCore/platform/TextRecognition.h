#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Pixels of a page or a picture, upright, 0 black to 255 white, rows without padding.
struct GrayPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// Recognises text in pictures. Callable from any thread; an object an engine of its own for each
/// thread that calls it.
class TextRecognition {
public:
    virtual ~TextRecognition() = default;
    /// What recognises text is installed, with data for one of the languages or for English.
    virtual bool isAvailable(const std::vector<std::string>& languages) const = 0;
    /// The lines from top to bottom, joined with line breaks; empty without text. `languages` are
    /// BCP 47 tags; those without data on this machine are left out, and English stands in when
    /// none is left.
    virtual std::string recognize(const GrayPicture& picture,
                                  const std::vector<std::string>& languages) const = 0;
    /// A picture file, made smaller to fit a square of `size` pixels; absent when it cannot be
    /// read as a picture.
    virtual std::optional<GrayPicture> load(std::string_view bytes, int size) const = 0;
    /// Tags of the languages with data on this machine.
    virtual std::vector<std::string> languages() const = 0;
};

}  // namespace tarn
