#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/platform/TextRecognition.h"

/// Text that the services of the platform get out of PDF documents and pictures. Without such a
/// service there is none. Callable from any thread.
namespace tarn::PictureText {

/// Pixels; pictures that are larger are made smaller before they are recognised.
inline constexpr int longestSide = 2400;

struct Options {
    bool ocr = false;
    std::span<const std::string> languages{};  ///< Empty: those of TextExtractor.
    std::function<void()> afterPage{};         ///< Of a document; for who lets go of its bytes.
};

/// The pages of a PDF document with a line break behind each. Pages without text are drawn and
/// recognised with `ocr`.
TextExtractor::Reading document(std::string_view bytes, const Options& options);

/// A picture file; without `ocr` it has no text.
TextExtractor::Reading picture(std::string_view bytes, const Options& options);

/// Something can be seen in the picture: it is not tiny, and not all of one shade, as a picture is
/// that is wholly transparent.
bool isOpaque(const GrayPicture& picture);

/// The lines of a picture, joined with line breaks; empty when nothing is to be seen in it.
std::string recognize(const GrayPicture& picture, const Options& options);

}  // namespace tarn::PictureText
