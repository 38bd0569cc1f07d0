// The pages of PDF documents, by Poppler; part of the module tarn-documents.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>

#include <cairo.h>
#include <poppler.h>

#include "TarnCore/platform/linux/DrawingModules.h"

namespace tarn {
namespace {

constexpr double largestPage = 200'000;  // points; PDF allows 14,400 without a unit of its own
constexpr int mostPixels = 40'000'000;   // of one picture
constexpr std::size_t mostCharacters = 500'000;

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(PopplerRectangle* boxes) const { g_free(boxes); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Release>;

class PopplerPages final : public PagedDocument {
public:
    PopplerPages(Owned<GBytes> bytes, Owned<PopplerDocument> document)
        : bytes_(std::move(bytes)), document_(std::move(document)) {}

    int pageCount() const override {
        return std::max(0, poppler_document_get_n_pages(document_.get()));
    }
    std::string title() const override {
        const Owned<char> title(poppler_document_get_title(document_.get()));
        return title ? title.get() : "";
    }

    std::optional<PageSize> size(int page) const override {
        const Owned<PopplerPage> one(poppler_document_get_page(document_.get(), page));
        return one ? size(one.get()) : std::nullopt;
    }

    std::optional<DrawnPicture> draw(int page, int width, int height) const override {
        const Owned<PopplerPage> one(poppler_document_get_page(document_.get(), page));
        const auto points = one ? size(one.get()) : std::nullopt;
        if (!points || width < 1 || height < 1 || width > mostPixels / height) return std::nullopt;
        const Owned<cairo_surface_t> surface(
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
        const Owned<cairo_t> context(cairo_create(surface.get()));
        if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
        cairo_set_source_rgb(context.get(), 1, 1, 1);
        cairo_paint(context.get());
        cairo_scale(context.get(), width / double{points->width}, height / double{points->height});
        poppler_page_render(one.get(), context.get());
        cairo_surface_flush(surface.get());
        const unsigned char* rows = cairo_image_surface_get_data(surface.get());
        if (!rows) return std::nullopt;
        const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
        const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
        DrawnPicture picture{width, height, DrawnPicture::Form::colour, {}};
        picture.pixels.resize(rowBytes * static_cast<std::size_t>(height));
        for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
            std::memcpy(&picture.pixels[y * rowBytes], rows + y * stride, rowBytes);
        return picture;
    }

    std::optional<PageText> text(int page) const override {
        const Owned<PopplerPage> one(poppler_document_get_page(document_.get(), page));
        if (!one) return std::nullopt;
        PageText said;
        const Owned<char> text(poppler_page_get_text(one.get()));
        PopplerRectangle* list = nullptr;
        guint count = 0;
        if (!text || !poppler_page_get_text_layout(one.get(), &list, &count)) return said;
        const Owned<PopplerRectangle> boxes(list);
        if (count > mostCharacters) return said;
        said.text = text.get();
        for (guint i = 0; i < count; ++i)
            said.boxes.push_back({static_cast<float>(list[i].x1), static_cast<float>(list[i].y1),
                                  static_cast<float>(list[i].x2), static_cast<float>(list[i].y2)});
        return said;
    }

private:
    static std::optional<PageSize> size(PopplerPage* page) {
        double width = 0;
        double height = 0;
        poppler_page_get_size(page, &width, &height);
        const bool canBeDrawn = width > 0 && height > 0 && width < largestPage &&
                                height < largestPage;  // and neither is no number
        if (!canBeDrawn) return std::nullopt;
        return PageSize{static_cast<float>(width), static_cast<float>(height)};
    }

    Owned<GBytes> bytes_;
    Owned<PopplerDocument> document_;
};

class PopplerPageDrawing final : public PageDrawing {
public:
    Opened open(std::string_view bytes) const override {
        Owned<GBytes> content(g_bytes_new_static(bytes.data(), bytes.size()));
        GError* failed = nullptr;
        Owned<PopplerDocument> document(
            poppler_document_new_from_bytes(content.get(), nullptr, &failed));
        const Owned<GError> error(failed);
        if (!document)
            return {nullptr, error && error->domain == POPPLER_ERROR &&
                                 error->code == POPPLER_ERROR_ENCRYPTED};
        return {std::make_unique<PopplerPages>(std::move(content), std::move(document)), false};
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::PageDrawing* tarnPageDrawing(
    int version) {
    static const tarn::PopplerPageDrawing drawing;
    return version == tarn::pageDrawingVersion ? &drawing : nullptr;
}
