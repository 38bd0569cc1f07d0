// Text in pictures, by Tesseract; libvips reads the pictures.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <leptonica/allheaders.h>
#include <omp.h>
#include <tesseract/baseapi.h>
#include <vips/vips.h>

#include "TarnCore/platform/RecognitionLanguages.h"
#include "TarnCore/platform/linux/LinuxTextRecognition.h"

namespace tarn {
namespace {

/// Pixels of a picture file as it is stored. A camera's best has 100 million; a small file that
/// claims more is made to fill memory.
constexpr double mostPixels = 150e6;

/// Of 255; the pictures below it are taken for light letters on a dark ground. Tesseract tries that
/// for each line by itself, after it has failed the other way: it takes half the time to turn the
/// whole picture first, with the same text.
constexpr int darkBelow = 128;

/// Sauvola's, which looks at the light about each pixel: one threshold for the whole picture loses
/// the text of a window that is dimmed behind a white dialog.
constexpr const char* thresholding = "2";

/// Pixels of a side; no letter is smaller. Tesseract loses memory when its thresholds do not fit
/// in.
constexpr int smallestSide = 8;

/// Dots per inch that pictures of screens are taken to have; without a word Tesseract guesses.
constexpr int resolution = 96;

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(unsigned char* bytes) const { g_free(bytes); }
    void operator()(char* text) const { delete[] text; }
    void operator()(Pix* picture) const { pixDestroy(&picture); }
};
using Bitmap = std::unique_ptr<Pix, Unref>;
using Image = std::unique_ptr<VipsImage, Unref>;

/// One of libvips' operations that make a picture from a picture.
template <class Operation>
Image applied(Image image, Operation operation) {
    VipsImage* out = nullptr;
    if (!image || operation(image.get(), &out) != 0) return nullptr;
    return Image(out);
}

/// A bitmap whose header is of a later kind than Leptonica reads, with one that it does read; empty
/// for one that has no simple pixels (MS-WMF 2.2.2.3 to 5). The first 40 bytes of all are the
/// same, and programs put colours in their usual places.
std::string withPlainHeader(std::string_view bytes) {
    constexpr std::size_t fileHeader = 14;
    constexpr std::uint32_t plainHeader = 40;
    const auto number = [&](std::size_t at) {
        std::uint32_t value = 0;
        std::memcpy(&value, &bytes[at], sizeof value);
        return value;
    };
    if (bytes.size() < fileHeader + plainHeader) return {};
    const std::size_t pixels = number(10);
    const std::uint32_t header = number(fileHeader);
    const std::uint32_t bits = number(28) & 0xFFFF;
    const std::uint32_t compression = number(30);
    const bool isSimple = compression == 0 || (compression == 3 && bits == 32);
    if (!isSimple || bits < 24 || header <= plainHeader || pixels > bytes.size()) return {};
    std::string plain(bytes.substr(0, fileHeader + plainHeader));
    const auto put = [&plain](std::size_t at, std::uint32_t value) {
        std::memcpy(&plain[at], &value, sizeof value);
    };
    put(10, static_cast<std::uint32_t>(plain.size()));
    put(fileHeader, plainHeader);
    put(30, 0);  // compression
    put(46, 0);  // colours of a palette
    put(50, 0);
    plain += bytes.substr(pixels);
    put(2, static_cast<std::uint32_t>(plain.size()));
    return plain;
}

/// An engine for some languages; making one takes 60 ms, so each thread keeps its last.
class Engine {
public:
    bool prepare(const std::string& folder, const std::vector<std::string>& data) {
        std::string wanted;
        for (const std::string& name : data) wanted += (wanted.empty() ? "" : "+") + name;
        if (wanted.empty()) return false;
        if (wanted == languages_) return true;
        languages_.clear();
        api_ = std::make_unique<tesseract::TessBaseAPI>();
        api_->SetVariable("debug_file", "/dev/null");
        if (api_->Init(folder.c_str(), wanted.c_str(), tesseract::OEM_LSTM_ONLY) != 0) return false;
        // Lines wherever they stand. The search for columns and paragraphs loses more of a screen,
        // and of a page too: 94 of 100 phrases of three words were found after it, 97 without.
        api_->SetPageSegMode(tesseract::PSM_SPARSE_TEXT);
        api_->SetVariable("thresholding_method", thresholding);
        languages_ = std::move(wanted);
        return true;
    }

    std::string recognize(const GrayPicture& picture) {
        // Its threads wait for each other more than they work: one is seven times as fast as four.
        omp_set_max_active_levels(0);
        const GrayPicture turned = isDark(picture) ? inverted(picture) : GrayPicture();
        const GrayPicture& chosen = turned.pixels.empty() ? picture : turned;
        api_->SetImage(chosen.pixels.data(), chosen.width, chosen.height, 1, chosen.width);
        api_->SetSourceResolution(resolution);
        const std::unique_ptr<char, Unref> text(api_->GetUTF8Text());
        api_->Clear();
        return text ? withoutEmptyLines(text.get()) : std::string();
    }

private:
    static bool isDark(const GrayPicture& picture) {
        const auto sum =
            std::accumulate(picture.pixels.begin(), picture.pixels.end(), std::uint64_t{0});
        return sum < picture.pixels.size() * darkBelow;
    }

    static GrayPicture inverted(GrayPicture picture) {
        for (std::uint8_t& pixel : picture.pixels) pixel = static_cast<std::uint8_t>(~pixel);
        return picture;
    }

    static std::string withoutEmptyLines(std::string_view text) {
        std::string lines;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            const std::string_view line = text.substr(0, end);
            if (line.find_first_not_of(' ') != line.npos) {
                if (!lines.empty()) lines += '\n';
                lines += line;
            }
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return lines;
    }

    std::unique_ptr<tesseract::TessBaseAPI> api_;
    std::string languages_;
};

class TesseractRecognition final : public TextRecognition {
public:
    TesseractRecognition()
        : folder_(RecognitionLanguages::dataFolder()),
          available_(RecognitionLanguages::dataIn(folder_)) {
        setMsgSeverity(L_SEVERITY_NONE);
        // Loaders that run other programs or have a history of holes stay shut.
        readsPictures_ = vips_init("tarn") == 0;
        if (!readsPictures_) return;
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(0);
        vips_concurrency_set(1);  // pictures are read side by side instead
        g_log_set_handler(
            "VIPS", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    }

    bool isAvailable(const std::vector<std::string>& languages) const override {
        return readsPictures_ && !RecognitionLanguages::dataNames(languages, available_).empty();
    }

    std::string recognize(const GrayPicture& picture,
                          const std::vector<std::string>& languages) const override {
        thread_local Engine engine;
        if (picture.width < smallestSide || picture.height < smallestSide) return {};
        if (!engine.prepare(folder_, RecognitionLanguages::dataNames(languages, available_)))
            return {};
        return engine.recognize(picture);
    }

    std::optional<GrayPicture> load(std::string_view bytes, int size) const override {
        if (!readsPictures_) return std::nullopt;
        auto picture = read(bytes, size);
        vips_error_clear();
        vips_thread_shutdown();
        return picture;
    }

    std::vector<std::string> languages() const override {
        std::vector<std::string> tags;
        for (const std::string& name : available_)
            if (std::string tag = RecognitionLanguages::tag(name); !tag.empty())
                tags.push_back(std::move(tag));
        return tags;
    }

private:
    static bool isReasonable(std::string_view bytes) {
        const Image header(vips_image_new_from_buffer(bytes.data(), bytes.size(), "", "access",
                                                      VIPS_ACCESS_SEQUENTIAL, nullptr));
        if (!header) return false;
        const double width = vips_image_get_width(header.get());
        return width * vips_image_get_height(header.get()) <= mostPixels;
    }

    static std::optional<GrayPicture> read(std::string_view bytes, int size) {
        if (bytes.starts_with("BM")) return readBitmap(bytes, size);
        if (!isReasonable(bytes)) return std::nullopt;
        VipsImage* out = nullptr;
        // Only reads, whatever its type says.
        if (vips_thumbnail_buffer(const_cast<char*>(bytes.data()), bytes.size(), &out, size,
                                  "height", size, "size", VIPS_SIZE_DOWN, nullptr) != 0)
            return std::nullopt;
        Image image(out);
        image = applied(std::move(image), [](VipsImage* in, VipsImage** made) {
            return vips_colourspace(in, made, VIPS_INTERPRETATION_B_W, nullptr);
        });
        if (image && vips_image_hasalpha(image.get()))
            image = applied(std::move(image), [](VipsImage* in, VipsImage** made) {
                const std::unique_ptr<VipsArrayDouble, void (*)(VipsArrayDouble*)> white(
                    vips_array_double_newv(1, 255.0),
                    [](VipsArrayDouble* array) { vips_area_unref(VIPS_AREA(array)); });
                return vips_flatten(in, made, "background", white.get(), nullptr);
            });
        image = applied(std::move(image), [](VipsImage* in, VipsImage** made) {
            return vips_cast_uchar(in, made, nullptr);
        });
        if (!image || vips_image_get_bands(image.get()) != 1) return std::nullopt;
        std::size_t length = 0;
        const std::unique_ptr<unsigned char, Unref> pixels(
            static_cast<unsigned char*>(vips_image_write_to_memory(image.get(), &length)));
        if (!pixels) return std::nullopt;
        return GrayPicture{vips_image_get_width(image.get()),
                           vips_image_get_height(image.get()),
                           {pixels.get(), pixels.get() + length}};
    }

    /// libvips has no reader of its own for BMP.
    static std::optional<GrayPicture> readBitmap(std::string_view bytes, int size) {
        const auto number = [&](std::size_t at) {
            std::int32_t value = 0;
            std::memcpy(&value, &bytes[at], sizeof value);
            return std::abs(static_cast<double>(value));
        };
        if (bytes.size() < 26 || number(18) * number(22) > mostPixels) return std::nullopt;
        const std::string plain = withPlainHeader(bytes);
        if (!plain.empty()) bytes = plain;
        const auto* data = reinterpret_cast<const l_uint8*>(bytes.data());
        Bitmap read(pixReadMemBmp(data, bytes.size()));
        if (!read) return std::nullopt;
        Bitmap gray(pixConvertTo8(read.get(), 0));
        read.reset();
        if (!gray) return std::nullopt;
        const int longer = std::max(pixGetWidth(gray.get()), pixGetHeight(gray.get()));
        if (longer > size) {
            const float scale = static_cast<float>(size) / static_cast<float>(longer);
            gray.reset(pixScale(gray.get(), scale, scale));
            if (!gray) return std::nullopt;
        }
        GrayPicture picture = {pixGetWidth(gray.get()), pixGetHeight(gray.get()), {}};
        picture.pixels.reserve(static_cast<std::size_t>(picture.width) *
                               static_cast<std::size_t>(picture.height));
        for (int y = 0; y < picture.height; ++y) {
            const l_uint32* row =
                pixGetData(gray.get()) + std::ptrdiff_t{y} * pixGetWpl(gray.get());
            for (int x = 0; x < picture.width; ++x)
                picture.pixels.push_back(static_cast<std::uint8_t>(GET_DATA_BYTE(row, x)));
        }
        return picture;
    }

    std::string folder_;
    std::vector<std::string> available_;
    bool readsPictures_ = false;
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::TextRecognition* tarnTextRecognition(
    int version) {
    if (version != tarn::textRecognitionVersion) return nullptr;
    static const auto* recognition = new tarn::TesseractRecognition;  // used until the process ends
    return recognition;
}
