#pragma once

#include "TarnCore/platform/PictureDecoding.h"

namespace tarn {

/// Decodes through a module around libvips and Exiv2 that is loaded at the first picture. Without
/// the module nothing can be decoded.
class LinuxPictureDecoding final : public PictureDecoding {
public:
    std::optional<DecodedPicture> decode(const URL& url, int size) const override;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using PictureDecodingEntry = const PictureDecoding*(int version);
inline constexpr int pictureDecodingVersion = 1;
inline constexpr const char* pictureDecodingSymbol = "tarnPictureDecoding";

}  // namespace tarn
