#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <exiv2/exiv2.hpp>
#include <vips/vips.h>

#include "TarnCore/platform/linux/LinuxFileBytes.h"
#include "TarnCore/platform/linux/LinuxPictureDecoding.h"
#include "TarnCore/platform/linux/modules/ExivImage.h"

namespace tarn {
namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(unsigned char* bytes) const { g_free(bytes); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

/// From a descriptor, because libvips would read options out of a name like "a[n=2].gif".
Image thumbnail(const LinuxFileBytes& file, int size) {
    const std::unique_ptr<VipsSource, Unref> source(
        vips_source_new_from_descriptor(file.descriptor()));
    VipsImage* out = nullptr;
    if (!source || vips_thumbnail_source(source.get(), &out, size, "height", size, "size",
                                         VIPS_SIZE_DOWN, nullptr) != 0)
        return nullptr;
    return Image(out);
}

/// The smallest preview in a camera's file that is large enough, else its largest. `bytes` must
/// live as long as the picture.
Image preview(const LinuxFileBytes& file, int size, std::string& bytes) {
    try {
        const auto image = ExivImage::open(file);
        if (!image) return nullptr;
        image->readMetadata();
        const Exiv2::PreviewManager manager(*image);
        const auto previews = manager.getPreviewProperties();  // smallest first
        if (previews.empty()) return nullptr;
        auto chosen = previews.back();
        for (const auto& one : previews) {
            if (static_cast<int>(std::max(one.width_, one.height_)) < size) continue;
            chosen = one;
            break;
        }
        const Exiv2::PreviewImage data = manager.getPreviewImage(chosen);
        bytes.assign(reinterpret_cast<const char*>(data.pData()), data.size());
    } catch (const std::exception&) {
        return nullptr;
    }
    VipsImage* out = nullptr;
    if (vips_thumbnail_buffer(bytes.data(), bytes.size(), &out, size, "height", size, "size",
                              VIPS_SIZE_DOWN, nullptr) != 0)
        return nullptr;
    return Image(out);
}

/// One of libvips' operations that make a picture from a picture.
template <class Operation>
Image applied(Image image, Operation operation) {
    VipsImage* out = nullptr;
    if (!image || operation(image.get(), &out) != 0) return nullptr;
    return Image(out);
}

class VipsDecoding final : public PictureDecoding {
public:
    VipsDecoding() {
        // Loaders that run other programs or have a history of holes stay shut.
        ready_ = vips_init("tarn") == 0;
        if (!ready_) return;
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(0);
        vips_concurrency_set(1);  // pictures are decoded side by side instead
        g_log_set_handler(
            "VIPS", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    }

    std::optional<DecodedPicture> decode(const URL& url, int size) const override {
        if (!ready_) return std::nullopt;
        std::string bytes;
        Image image;
        try {
            const LinuxFileBytes file(url.c_str());
            image = thumbnail(file, size);
            if (!image) image = preview(file, size, bytes);
        } catch (const std::system_error&) {
            return std::nullopt;  // Gone, or not ours to read.
        }
        image = applied(std::move(image), [](VipsImage* in, VipsImage** out) {
            return vips_colourspace(in, out, VIPS_INTERPRETATION_sRGB, nullptr);
        });
        if (image && !vips_image_hasalpha(image.get()))
            image = applied(std::move(image), [](VipsImage* in, VipsImage** out) {
                return vips_addalpha(in, out, nullptr);
            });
        image = applied(std::move(image), [](VipsImage* in, VipsImage** out) {
            return vips_cast_uchar(in, out, nullptr);
        });
        std::optional<DecodedPicture> picture;
        if (image && vips_image_get_bands(image.get()) == 4) {
            std::size_t length = 0;
            const std::unique_ptr<unsigned char, Unref> pixels(
                static_cast<unsigned char*>(vips_image_write_to_memory(image.get(), &length)));
            if (pixels) {
                picture = DecodedPicture{vips_image_get_width(image.get()),
                                         vips_image_get_height(image.get()),
                                         {pixels.get(), pixels.get() + length}};
            }
        }
        image.reset();
        vips_error_clear();
        vips_thread_shutdown();
        return picture;
    }

private:
    bool ready_ = false;
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::PictureDecoding* tarnPictureDecoding(
    int version) {
    if (version != tarn::pictureDecodingVersion) return nullptr;
    static const auto* decoding = new tarn::VipsDecoding;  // used until the process ends
    return decoding;
}
