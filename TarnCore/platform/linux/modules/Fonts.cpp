// Fonts out of files, by FreeType; the module tarn-fonts.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "TarnCore/platform/linux/DrawingModules.h"

namespace tarn {
namespace {

constexpr int mostPixels = 16'000'000;  // of one picture
constexpr int largestSize = 512;        // pixels
constexpr std::size_t mostCharacters = 70'000;

struct Release {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Library = std::unique_ptr<FT_LibraryRec_, Release>;
using Face = std::unique_ptr<FT_FaceRec_, Release>;

/// Draws the glyph that is loaded, its origin being at (`x`, `y`).
void blend(const FT_GlyphSlot glyph, DrawnPicture& into, int x, int y) {
    const FT_Bitmap& bitmap = glyph->bitmap;
    const int left = x + glyph->bitmap_left;
    const int top = y - glyph->bitmap_top;
    const int pitch = bitmap.pitch;
    for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
        const int to = top + row;
        if (to < 0 || to >= into.height) continue;
        // Rows may be stored from the bottom.
        const unsigned char* line =
            bitmap.buffer + static_cast<std::ptrdiff_t>(row) * pitch -
            (pitch < 0 ? static_cast<std::ptrdiff_t>(bitmap.rows - 1) * pitch : 0);
        for (int column = 0; column < static_cast<int>(bitmap.width); ++column) {
            const int at = left + column;
            if (at < 0 || at >= into.width) continue;
            unsigned char covered = 0;
            if (bitmap.pixel_mode == FT_PIXEL_MODE_GRAY)
                covered = line[column];
            else if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO)
                covered = line[column / 8] >> (7 - column % 8) & 1 ? 255 : 0;
            else if (bitmap.pixel_mode == FT_PIXEL_MODE_BGRA)
                covered = line[column * 4 + 3];
            char& pixel =
                into.pixels[static_cast<std::size_t>(to) * static_cast<std::size_t>(into.width) +
                            static_cast<std::size_t>(at)];
            pixel = static_cast<char>(std::max(static_cast<unsigned char>(pixel), covered));
        }
    }
}

DrawnPicture blank(int width, int height) {
    DrawnPicture picture{width, height, DrawnPicture::Form::coverage, {}};
    picture.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return picture;
}

class FreeTypeFont final : public OpenFont {
public:
    FreeTypeFont(Library library, Face face)
        : library_(std::move(library)), face_(std::move(face)) {}

    FontFacts facts() const override {
        FontFacts facts;
        facts.family = face_->family_name ? face_->family_name : "";
        facts.style = face_->style_name ? face_->style_name : "";
        facts.faces = static_cast<int>(std::clamp<FT_Long>(face_->num_faces, 1, 1000));
        facts.glyphs = static_cast<int>(std::clamp<FT_Long>(face_->num_glyphs, 0, 1'000'000));
        facts.isFixedPitch = FT_IS_FIXED_WIDTH(face_.get());
        FT_UInt glyph = 0;
        FT_ULong character = FT_Get_First_Char(face_.get(), &glyph);
        while (glyph != 0 && facts.characters.size() < mostCharacters) {
            if (character > ' ') facts.characters.push_back(static_cast<char32_t>(character));
            const FT_ULong next = FT_Get_Next_Char(face_.get(), character, &glyph);
            if (next <= character) break;
            character = next;
        }
        return facts;
    }

    std::optional<DrawnPicture> line(std::u32string_view text, int size, int width) override {
        if (width < 1 || !setSize(size)) return std::nullopt;
        const int above = pixels(face_->size->metrics.ascender);
        const int below = -pixels(face_->size->metrics.descender);
        const int height = std::clamp(above + below, size, 4 * size);
        if (width > mostPixels / height) return std::nullopt;
        DrawnPicture picture = blank(width, height);
        const int baseline = std::clamp(above, size / 2, height);
        FT_Pos pen = 0;
        FT_UInt before = 0;
        int used = 0;
        for (const char32_t character : text) {
            const FT_UInt glyph = FT_Get_Char_Index(face_.get(), character);
            FT_Vector kerning{};
            if (before != 0 && glyph != 0)
                FT_Get_Kerning(face_.get(), before, glyph, FT_KERNING_DEFAULT, &kerning);
            pen += kerning.x;
            if (FT_Load_Glyph(face_.get(), glyph, FT_LOAD_RENDER) != 0) continue;
            const FT_GlyphSlot slot = face_->glyph;
            if (pixels(pen + slot->advance.x) > width) break;
            blend(slot, picture, pixels(pen), baseline);
            pen += std::clamp<FT_Pos>(slot->advance.x, 0, 64 * 4 * FT_Pos{largestSize});
            used = pixels(pen);
            before = glyph;
        }
        return used > 0 ? std::optional(picture) : std::nullopt;
    }

    std::optional<DrawnPicture> grid(std::u32string_view characters, int cell,
                                     int columns) override {
        const int size = cell / 2;
        if (columns < 1 || cell < 8 || characters.empty() || !setSize(size)) return std::nullopt;
        const int rows = (static_cast<int>(characters.size()) + columns - 1) / columns;
        if (cell > largestSize || columns > mostPixels / cell ||
            rows > mostPixels / (cell * columns) / cell)
            return std::nullopt;
        DrawnPicture picture = blank(cell * columns, cell * rows);
        const int above = std::clamp(pixels(face_->size->metrics.ascender), size / 2, 2 * size);
        const int below = std::clamp(-pixels(face_->size->metrics.descender), 0, size);
        const int baseline = (cell - above - below) / 2 + above;
        int place = 0;
        for (const char32_t character : characters) {
            const int column = place % columns;
            const int row = place / columns;
            ++place;
            if (FT_Load_Char(face_.get(), character, FT_LOAD_RENDER) != 0) continue;
            const FT_GlyphSlot slot = face_->glyph;
            const int x = column * cell + (cell - static_cast<int>(slot->bitmap.width)) / 2 -
                          slot->bitmap_left;
            blend(slot, picture, x, row * cell + baseline);
        }
        return picture;
    }

private:
    static int pixels(FT_Pos in26Dot6) {
        return static_cast<int>(std::clamp<FT_Pos>(in26Dot6, -(1 << 24), 1 << 24) / 64);
    }

    /// A font of pictures has few sizes: the nearest one is taken.
    bool setSize(int size) {
        if (size < 1 || size > largestSize) return false;
        if (FT_IS_SCALABLE(face_.get()))
            return FT_Set_Pixel_Sizes(face_.get(), 0, static_cast<FT_UInt>(size)) == 0;
        int nearest = -1;
        for (int i = 0; i < face_->num_fixed_sizes; ++i) {
            const auto distance = [&](int one) {
                return std::abs(face_->available_sizes[one].height - size);
            };
            if (nearest < 0 || distance(i) < distance(nearest)) nearest = i;
        }
        return nearest >= 0 && FT_Select_Size(face_.get(), nearest) == 0;
    }

    Library library_;  ///< Outlives the face.
    Face face_;
};

class FreeTypeDrawing final : public FontDrawing {
public:
    std::unique_ptr<OpenFont> open(std::string_view bytes, int face) const override {
        FT_Library library = nullptr;
        if (FT_Init_FreeType(&library) != 0) return nullptr;
        Library owned(library);
        FT_Face opened = nullptr;
        if (FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(bytes.data()),
                               static_cast<FT_Long>(bytes.size()), face, &opened) != 0)
            return nullptr;
        Face ownedFace(opened);
        // A font of symbols has no map for Unicode; the one it has is taken then.
        if (!opened->charmap && opened->num_charmaps > 0)
            FT_Set_Charmap(opened, opened->charmaps[0]);
        return std::make_unique<FreeTypeFont>(std::move(owned), std::move(ownedFace));
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::FontDrawing* tarnFontDrawing(
    int version) {
    static const tarn::FreeTypeDrawing drawing;
    return version == tarn::fontDrawingVersion ? &drawing : nullptr;
}
