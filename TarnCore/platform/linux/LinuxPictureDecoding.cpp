#include "TarnCore/platform/linux/LinuxPictureDecoding.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const PictureDecoding* loadDecoder() {
    auto* entry = reinterpret_cast<PictureDecodingEntry*>(
        loadModuleSymbol("tarn-thumbnails", pictureDecodingSymbol));
    return entry ? entry(pictureDecodingVersion) : nullptr;
}

}  // namespace

std::optional<DecodedPicture> LinuxPictureDecoding::decode(const URL& url, int size) const {
    static const PictureDecoding* decoder = loadDecoder();
    return decoder ? decoder->decode(url, size) : std::nullopt;
}

}  // namespace tarn
