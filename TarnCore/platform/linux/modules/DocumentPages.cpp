// The text of PDF documents, by Poppler; part of the module tarn-documents.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

#include <cairo.h>
#include <poppler.h>

#include "TarnCore/platform/linux/LinuxDocumentText.h"

namespace tarn {
namespace {

/// Letters of 8 points are 22 pixels high then, which is what Tesseract was taught with.
constexpr double dotsPerPoint = 200.0 / 72;
constexpr double longestSide = 2400;  // pixels

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Release>;

/// Empty when the page has no size that can be drawn.
GrayPicture draw(PopplerPage* page) {
    double width = 0;
    double height = 0;
    poppler_page_get_size(page, &width, &height);
    const double longer = std::max(width, height);
    if (!(width > 0) || !(height > 0) || !std::isfinite(longer)) return {};
    const double scale = std::min(dotsPerPoint, longestSide / longer);
    GrayPicture picture;
    picture.width = static_cast<int>(std::clamp(std::lround(width * scale), 1L, 2400L));
    picture.height = static_cast<int>(std::clamp(std::lround(height * scale), 1L, 2400L));
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width, picture.height));
    const Owned<cairo_t> context(cairo_create(surface.get()));
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return {};
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    cairo_scale(context.get(), scale, scale);
    poppler_page_render(page, context.get());
    cairo_surface_flush(surface.get());
    const unsigned char* row = cairo_image_surface_get_data(surface.get());
    if (!row) return {};
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    picture.pixels.resize(static_cast<std::size_t>(picture.width) *
                          static_cast<std::size_t>(picture.height));
    auto into = picture.pixels.begin();
    for (int y = 0; y < picture.height; ++y, row += stride) {
        const auto* pixel = reinterpret_cast<const guint32*>(row);
        for (int x = 0; x < picture.width; ++x, ++pixel) {
            // The weights of ITU-R BT.601 in 256ths.
            const guint32 light =
                77 * (*pixel >> 16 & 255) + 150 * (*pixel >> 8 & 255) + 29 * (*pixel & 255);
            *into++ = static_cast<std::uint8_t>(light >> 8);
        }
    }
    return picture;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n\f\v") == std::string_view::npos;
}

class PopplerDocumentText final : public DocumentText {
public:
    bool isAvailable() const override { return true; }

    bool read(std::string_view bytes, const std::function<bool(std::string_view text)>& onPage,
              const std::function<std::string(const GrayPicture&)>& recognize) const override {
        const Owned<GBytes> content(g_bytes_new_static(bytes.data(), bytes.size()));
        const Owned<PopplerDocument> document(
            poppler_document_new_from_bytes(content.get(), nullptr, nullptr));
        if (!document) return false;
        const int count = poppler_document_get_n_pages(document.get());
        for (int i = 0; i < count; ++i) {
            const Owned<PopplerPage> page(poppler_document_get_page(document.get(), i));
            if (!page) continue;
            const Owned<char> text(poppler_page_get_text(page.get()));
            const std::string_view said = text ? text.get() : "";
            const bool goesOn =
                isBlank(said) && recognize ? onPage(recognize(draw(page.get()))) : onPage(said);
            if (!goesOn) break;
        }
        return true;
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::DocumentText* tarnDocumentText(
    int version) {
    static const tarn::PopplerDocumentText reader;
    return version == tarn::documentTextVersion ? &reader : nullptr;
}
