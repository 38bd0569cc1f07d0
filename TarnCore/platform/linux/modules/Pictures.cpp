#include <exception>

#include <exiv2/exiv2.hpp>

#include "TarnCore/platform/linux/MediaReader.h"
#include "TarnCore/platform/linux/modules/ExivImage.h"

namespace tarn {
namespace {

/// The text of a tag without the padding that cameras write; absent when nothing is left.
std::optional<std::string> text(const Exiv2::ExifData& exif, Exiv2::ExifData::const_iterator tag,
                                bool isInterpreted = false) {
    if (tag == exif.end()) return std::nullopt;
    std::string value = isInterpreted ? tag->print(&exif) : tag->toString();
    value = value.substr(0, value.find('\0'));
    const std::size_t begin = value.find_first_not_of(" \t\r\n");
    if (begin == value.npos) return std::nullopt;
    return value.substr(begin, value.find_last_not_of(" \t\r\n") - begin + 1);
}

/// Orientations 5 to 8 lie on their side.
bool isSideways(const Exiv2::ExifData& exif) {
    const auto tag = Exiv2::orientation(exif);
    if (tag == exif.end() || tag->count() == 0) return false;
    const float value = tag->toFloat();  // The one conversion that every version has.
    return value >= 5 && value <= 8;
}

class ExivReader final : public MediaReader {
public:
    void read(const LinuxFileBytes& file, const std::string&,
              ItemMetadata& metadata) const override {
        try {
            const auto image = ExivImage::open(file);
            if (!image) return;
            image->readMetadata();
            const Exiv2::ExifData& exif = image->exifData();
            metadata.cameraMake = text(exif, Exiv2::make(exif));
            metadata.cameraModel = text(exif, Exiv2::model(exif));
            metadata.lens = text(exif, Exiv2::lensName(exif), true);
            metadata.photoTaken =
                text(exif, exif.findKey(Exiv2::ExifKey("Exif.Photo.DateTimeOriginal")));
            int width = image->pixelWidth();
            int height = image->pixelHeight();
            if (isSideways(exif)) std::swap(width, height);
            if (width > 0 && height > 0) {
                metadata.pixelWidth = width;
                metadata.pixelHeight = height;
            }
        } catch (const std::exception&) {
            // Not a picture, or one that nobody can read: it has nothing to say.
        }
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::MediaReader* tarnMediaReader(
    int version) {
    static const tarn::ExivReader reader;
    return version == tarn::mediaReaderVersion ? &reader : nullptr;
}
