#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/DrawnPicture.h"

namespace tarn {

struct FontFacts {
    std::string family;  ///< UTF-8.
    std::string style;
    int faces = 1;   ///< In the file.
    int glyphs = 0;  ///< Of this face.
    bool isFixedPitch = false;
    std::vector<char32_t> characters;  ///< Those that it has a glyph for, ascending.
    bool operator==(const FontFacts&) const = default;
};

/// A face of a font file that is open. For one thread at a time.
class OpenFont {
public:
    virtual ~OpenFont() = default;
    virtual FontFacts facts() const = 0;
    /// One line of text with the font at `size` pixels, at most `width` wide: what does not fit is
    /// left out. Characters that it lacks show as its mark for these.
    virtual std::optional<DrawnPicture> line(std::u32string_view text, int size, int width) = 0;
    /// Each character in the middle of a square of `cell` pixels, `columns` in a row.
    virtual std::optional<DrawnPicture> grid(std::u32string_view characters, int cell,
                                             int columns) = 0;
};

/// Draws with fonts out of files. Reads what strangers wrote: only for the helper program.
class FontDrawing {
public:
    virtual ~FontDrawing() = default;
    /// Null when it is no font, or has no such face. `bytes` must outlive the font.
    virtual std::unique_ptr<OpenFont> open(std::string_view bytes, int face) const = 0;
};

}  // namespace tarn
