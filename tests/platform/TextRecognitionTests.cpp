#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/RecognitionLanguages.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const TextRecognition& service() { return *Platform::current().recognition; }

std::string invoiceFile() {
    std::ifstream file(TARN_TEST_PICTURES "/invoice.png", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void append(std::string& bytes, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i & 255);
}

/// As a BMP file: the rows from below, each filled up to a multiple of four bytes.
std::string asFile(const GrayPicture& picture) {
    constexpr std::uint32_t front = 54 + 256 * 4;
    std::string bytes = "BM";
    for (const std::uint32_t number : {0U, 0U, front, 40U}) append(bytes, number, 4);
    append(bytes, static_cast<std::uint32_t>(picture.width), 4);
    append(bytes, static_cast<std::uint32_t>(picture.height), 4);
    append(bytes, 1 | 8 << 16, 4);  // one plane of 8 bits
    for (const std::uint32_t number : {0U, 0U, 2835U, 2835U, 256U, 0U}) append(bytes, number, 4);
    for (std::uint32_t shade = 0; shade < 256; ++shade) append(bytes, shade * 0x010101, 4);
    for (int y = picture.height - 1; y >= 0; --y) {
        bytes.append(picture.pixels.begin() + std::ptrdiff_t{y} * picture.width,
                     picture.pixels.begin() + std::ptrdiff_t{y + 1} * picture.width);
        bytes.append(static_cast<std::size_t>(-picture.width & 3), '\0');
    }
    return bytes;
}

TEST(TextRecognition, readsThePictureOfAText) {
    const auto picture = service().load(invoiceFile(), 2400);
    ASSERT_TRUE(picture);
    EXPECT_EQ(service().recognize(*picture, {"en-US"}), "Invoice 2041\nTotal due: 75 euros");
    // A language that nobody has data for leaves English.
    EXPECT_THAT(service().recognize(*picture, {"tlh"}), HasSubstr("Invoice"));
    EXPECT_THAT(service().recognize(*picture, {}), HasSubstr("Invoice"));
}

TEST(TextRecognition, readsLightTextOnADarkGround) {
    auto picture = service().load(invoiceFile(), 2400);
    ASSERT_TRUE(picture);
    for (auto& pixel : picture->pixels) pixel = static_cast<std::uint8_t>(255 - pixel);
    EXPECT_EQ(service().recognize(*picture, {}), "Invoice 2041\nTotal due: 75 euros");
}

TEST(TextRecognition, worksOnSeveralThreadsAtOnce) {
    const auto picture = service().load(invoiceFile(), 2400);
    ASSERT_TRUE(picture);
    TaskPool pool(2);
    std::vector<std::string> texts(6);
    pool.forEach(texts.size(),
                 [&](std::size_t i) { texts[i] = service().recognize(*picture, {}); });
    EXPECT_THAT(texts, testing::Each("Invoice 2041\nTotal due: 75 euros"));
}

TEST(TextRecognition, picturesOfNothingHaveNoText) {
    for (const int side : {0, 1, 3, 8, 40, 2400}) {
        SCOPED_TRACE(side);
        const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
        EXPECT_EQ(service().recognize({side, side, std::vector<std::uint8_t>(pixels, 255)}, {}),
                  "");
    }
}

TEST(TextRecognition, loadsSmallerNeverLarger) {
    const GrayPicture wide = {3000, 100, std::vector<std::uint8_t>(300'000, 9)};
    const auto picture = service().load(asFile(wide), 300);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 300);
    EXPECT_EQ(picture->height, 10);
    EXPECT_EQ(picture->pixels, std::vector<std::uint8_t>(3000, 9));
    const auto same = service().load(asFile(wide), 4000);
    ASSERT_TRUE(same);
    EXPECT_EQ(same->width, 3000);
}

TEST(TextRecognition, readsBitmapsWithLaterHeaders) {
    for (const std::uint32_t header : {40U, 108U, 124U}) {
        SCOPED_TRACE(header);
        std::string bytes = "BM";
        for (const std::uint32_t number : {0U, 0U, 14U + header, header, 20U, 10U})
            append(bytes, number, 4);
        append(bytes, 1 | 32 << 16, 4);  // one plane of 32 bits
        append(bytes, header == 40 ? 0 : 3, 4);
        bytes.resize(14 + header, '\0');
        for (std::uint32_t i = 0; i < 200; ++i) append(bytes, i < 20 ? 0xFF000000 : 0xFFFFFFFF, 4);
        const auto picture = service().load(bytes, 2400);
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->width, 20);
        EXPECT_EQ(picture->height, 10);
        EXPECT_EQ(picture->pixels.front(), 255);
        EXPECT_EQ(picture->pixels.back(), 0) << "the first row is below";
    }
}

TEST(TextRecognition, refusesWhatIsNoPicture) {
    const std::string whole = invoiceFile();
    // A header that announces what no memory holds, over the pixels of a small picture.
    std::string bomb = whole;
    bomb.replace(16, 8, std::string("\x00\x00\xFF\xFF\x00\x00\xFF\xFF", 8));
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"empty", ""},
        {"nonsense", std::string(3000, 'x')},
        {"only the beginning", whole.substr(0, 30)},
        {"bomb", bomb},
        {"bitmap that is a bomb",
         asFile({2, 2, {1, 2, 3, 4}}).replace(18, 8, std::string(8, '\x7F'))},
        {"bitmap without its pixels",
         asFile({90, 90, std::vector<std::uint8_t>(8100, 5)}).substr(0, 1100)},
        {"program for a drawing", "<svg xmlns='http://www.w3.org/2000/svg'><script>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(service().load(c.bytes, 2400));
    }
}

TEST(TextRecognition, saysWhichLanguagesAreThere) {
    EXPECT_THAT(service().languages(), testing::Contains("en"));
}

TEST(RecognitionLanguages, findsTheDataOfATag) {
    const struct {
        const char* tag;
        const char* data;
    } cases[] = {
        {"en", "eng"},
        {"en-US", "eng"},
        {"DE-at", "deu"},
        {"pt_BR", "por"},
        {"nn-NO", "nor"},
        {"zh", "chi_sim"},
        {"zh-CN", "chi_sim"},
        {"zh-TW", "chi_tra"},
        {"zh-Hans-HK", "chi_sim"},
        {"zh-hant", "chi_tra"},
        {"sr-Latn-RS", "srp_latn"},
        {"sr-Cyrl", "srp"},
        {"fil-PH", "fil"},
        {"tlh", "tlh"},
        {"", ""},
        {"x", ""},
        {"../../etc", ""},
        {"c+", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tag);
        EXPECT_EQ(RecognitionLanguages::dataName(c.tag), c.data);
    }
    for (const char* data : {"eng", "chi_tra", "srp_latn", "kmr", "nor"})
        EXPECT_EQ(RecognitionLanguages::dataName(RecognitionLanguages::tag(data)), data);
}

TEST(RecognitionLanguages, takesWhatIsThere) {
    const std::vector<std::string> available = {"deu", "eng", "fra", "osd"};
    using RecognitionLanguages::dataNames;
    EXPECT_THAT(dataNames({"de-DE", "ja", "fr", "de-AT"}, available), ElementsAre("deu", "fra"));
    EXPECT_THAT(dataNames({"ja"}, available), ElementsAre("eng"));
    EXPECT_THAT(dataNames({}, {"deu"}), ElementsAre());
}

}  // namespace
}  // namespace tarn
