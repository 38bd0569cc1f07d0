#include "TarnCore/index/readers/PictureText.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/readers/TextBuilder.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::PictureText {
namespace {

using TextExtractor::Reading;
using TextExtractor::Tool;

/// Pixels; a line of the smallest letters that can be read is as high.
constexpr int smallestSide = 8;
/// Of 255 shades; text that nobody can tell from its ground is none.
constexpr int leastContrast = 16;
/// Seconds of processor time for the pages of one document. A scanned book is read from its
/// beginning as far as that goes, about 100 pages.
constexpr double mostRecognition = 120;

std::vector<std::string> languages(const Options& options) {
    if (!options.languages.empty()) return {options.languages.begin(), options.languages.end()};
    return {std::begin(TextExtractor::defaultOCRLanguages),
            std::end(TextExtractor::defaultOCRLanguages)};
}

bool canRecognize(const Options& options) {
    const auto& service = Platform::current().recognition;
    return service && service->isAvailable(languages(options));
}

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
    return service->recognize(picture, languages(options));
}

Reading document(std::string_view bytes, const Options& options) {
    const auto& service = Platform::current().documents;
    if (!service || !service->isAvailable()) return {.missing = Tool::documents};
    const bool recognizes = options.ocr && canRecognize(options);
    Reading reading;
    std::function<std::string(const GrayPicture&)> drawn;
    double recognitionTime = 0;
    if (recognizes)
        drawn = [&](const GrayPicture& page) -> std::string {
            reading.hasPictures = true;
            if (recognitionTime > mostRecognition) return {};
            const double begin = processorSeconds();
            std::string lines = recognize(page, options);
            recognitionTime += processorSeconds() - begin;
            return lines;
        };
    TextBuilder text;
    const auto onPage = [&](std::string_view page) {
        if (Text::trimmed(page).empty()) reading.hasPictures = true;
        text.addLines(page);
        text.lineBreak();
        if (options.afterPage) options.afterPage();
        return !text.isFull();
    };
    if (!service->read(bytes, onPage, drawn)) return {};
    if (reading.hasPictures && options.ocr && !recognizes) reading.missing = Tool::recognition;
    reading.text = text.take();
    return reading;
}

Reading picture(std::string_view bytes, const Options& options) {
    if (!options.ocr) return {.hasPictures = true};
    if (!canRecognize(options)) return {.hasPictures = true, .missing = Tool::recognition};
    const auto picture = Platform::current().recognition->load(bytes, longestSide);
    if (!picture) return {};
    Reading reading{.hasPictures = true};
    if (std::string text = recognize(*picture, options); !text.empty())
        reading.text = std::move(text);
    return reading;
}

}  // namespace tarn::PictureText
