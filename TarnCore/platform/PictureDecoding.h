#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Pixels of a picture, upright.
struct DecodedPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;  ///< sRGB, 4 bytes a pixel, not premultiplied, no padding.
};

/// Reads picture files of all kinds: HEIC, AVIF, TIFF, WebP, the previews in camera raw, and the
/// ordinary ones. Callable from any thread. Never throws.
class PictureDecoding {
public:
    virtual ~PictureDecoding() = default;
    /// Made smaller to fit a square of `size` pixels, never larger. Absent when the file cannot be
    /// read as a picture.
    virtual std::optional<DecodedPicture> decode(const URL& url, int size) const = 0;
};

}  // namespace tarn
