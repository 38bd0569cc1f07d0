#pragma once

#include <string>

namespace tarn {

/// Pixels as they are handed from one process to another, row by row without padding.
struct DrawnPicture {
    enum class Form : unsigned char {
        colour,    ///< 4 bytes a pixel: blue, green, red, alpha; the colours times the alpha.
        coverage,  ///< 1 byte a pixel: how much of it is covered.
    };
    int width = 0;
    int height = 0;
    Form form = Form::colour;
    std::string pixels;
    bool operator==(const DrawnPicture&) const = default;
};

}  // namespace tarn
