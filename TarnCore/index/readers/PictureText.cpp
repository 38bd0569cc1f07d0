#include "TarnCore/index/readers/PictureText.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/readers/TextBuilder.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::PictureText {
namespace {

/// Pixels; a line of the smallest letters that can be read is as high.
constexpr int smallestSide = 8;
/// Of 255 shades; text that nobody can tell from its ground is none.
constexpr int leastContrast = 16;
/// Seconds of processor time for the pages of one document. A scanned book is read from its
/// beginning as far as that goes, about 100 pages.
constexpr double mostRecognition = 120;

double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

}  // namespace

bool isOpaque(const GrayPicture& picture) {
    if (picture.width < smallestSide || picture.height < smallestSide || picture.pixels.empty())
        return false;
    const auto [darkest, lightest] = std::ranges::minmax_element(picture.pixels);
    return *lightest - *darkest >= leastContrast;
}

std::string recognize(const GrayPicture& picture, const Options& options) {
    const auto& service = Platform::current().recognition;
    if (!service || !isOpaque(picture)) return {};
    std::vector<std::string> languages(options.languages.begin(), options.languages.end());
    if (languages.empty()) {
        languages.assign(std::begin(TextExtractor::defaultOCRLanguages),
                         std::end(TextExtractor::defaultOCRLanguages));
    }
    return service->recognize(picture, languages);
}

std::optional<std::string> document(std::string_view bytes, const Options& options) {
    const auto& platform = Platform::current();
    if (!platform.documents) return std::nullopt;
    std::function<std::string(const GrayPicture&)> drawn;
    double recognitionTime = 0;
    if (options.ocr && platform.recognition)
        drawn = [&](const GrayPicture& page) -> std::string {
            if (recognitionTime > mostRecognition) return {};
            const double begin = processorSeconds();
            std::string lines = recognize(page, options);
            recognitionTime += processorSeconds() - begin;
            return lines;
        };
    TextBuilder text;
    const auto onPage = [&](std::string_view page) {
        text.addLines(page);
        text.lineBreak();
        return !text.isFull();
    };
    if (!platform.documents->read(bytes, onPage, drawn)) return std::nullopt;
    return text.take();
}

std::optional<std::string> picture(std::string_view bytes, const Options& options) {
    const auto& service = Platform::current().recognition;
    if (!service || !options.ocr) return std::nullopt;
    const auto picture = service->load(bytes, longestSide);
    if (!picture) return std::nullopt;
    std::string text = recognize(*picture, options);
    if (text.empty()) return std::nullopt;
    return text;
}

}  // namespace tarn::PictureText
