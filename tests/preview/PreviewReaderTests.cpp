#include <future>
#include <string>

#include <gtest/gtest.h>

#include "TarnCore/preview/PreviewReader.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using PreviewProtocol::Ask;
using PreviewProtocol::Question;
using Outcome = PreviewReader::Outcome;

class PreviewReaderTest : public testing::Test {
protected:
    PreviewReader::Answer ask(const URL& file, Question question) {
        std::promise<PreviewReader::Answer> answer;
        reader.ask(file, question, {},
                   [&](PreviewReader::Answer given) { answer.set_value(std::move(given)); });
        return answer.get_future().get();
    }
    TestFolder folder;
    PreviewReader reader;
};

TEST_F(PreviewReaderTest, drawsPagesAndSaysWhatIsOnThem) {
    PDFDocument document;
    document.addText({"Hello there"});
    document.addEmpty();
    const URL file = folder.file("a.pdf", document.bytes());
    const auto pages = PreviewProtocol::decodePages(ask(file, {Ask::pages, 0, 10}).bytes);
    ASSERT_TRUE(pages);
    EXPECT_EQ(pages->count, 2);
    EXPECT_EQ(pages->sizes, (std::vector<PageSize>{{612, 792}, {612, 792}}));

    const auto drawn = PreviewProtocol::decodePicture(ask(file, {Ask::page, 0, 0, 306, 396}).bytes);
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->width, 306);
    // Letters stand where the text does, and nowhere else.
    const auto dark = [&](int from, int to) {
        int count = 0;
        for (int y = from; y < to; ++y)
            for (int x = 0; x < 306; ++x)
                count += static_cast<unsigned char>(
                             drawn->pixels[static_cast<std::size_t>((y * 306 + x) * 4)]) < 128;
        return count;
    };
    EXPECT_GT(dark(25, 45), 20);
    EXPECT_EQ(dark(60, 396), 0);

    const auto text = PreviewProtocol::decodePageText(ask(file, {Ask::pageText, 0}).bytes);
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->text.starts_with("Hello there"));
    EXPECT_NEAR(text->boxes[0].left, 72, 2);
    EXPECT_EQ(ask(file, {Ask::page, 2, 0, 10, 10}).outcome, Outcome::nothing);
}

TEST_F(PreviewReaderTest, hasNothingToSayOfWhatItCannotRead) {
    const URL broken = folder.file("broken.pdf", "%PDF-1.4 and no more");
    const URL text = folder.file("a.ttf", "no font at all");
    const struct {
        const char* what;
        URL file;
        Question question;
    } cases[] = {
        {"a broken document", broken, {Ask::pages}},    {"a broken font", text, {Ask::font}},
        {"a broken workbook", text, {Ask::sheet}},      {"no film", text, {Ask::media}},
        {"no file", folder / "gone.pdf", {Ask::pages}}, {"a folder", folder.url(), {Ask::pages}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(ask(c.file, c.question).outcome, Outcome::nothing);
    }
}

/// One second of a tone at 8,000 samples a second, as the simplest of all sound files has it.
std::string toneFile() {
    const auto number = [](std::uint32_t value, int bytes) {
        std::string out;
        for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
        return out;
    };
    std::string samples;
    for (int i = 0; i < 8000; ++i)
        samples += number(static_cast<std::uint16_t>((i / 10 % 2 == 0 ? 1 : -1) * 8000), 2);
    return "RIFF" + number(static_cast<std::uint32_t>(36 + samples.size()), 4) + "WAVEfmt " +
           number(16, 4) + number(1, 2) + number(1, 2) + number(8000, 4) + number(16000, 4) +
           number(2, 2) + number(16, 2) + "data" +
           number(static_cast<std::uint32_t>(samples.size()), 4) + samples;
}

TEST_F(PreviewReaderTest, decodesSoundFromWhereOneWants) {
    const URL file = folder.file("a.wav", toneFile());
    const auto facts = PreviewProtocol::decodeMediaFacts(ask(file, {Ask::media}).bytes);
    ASSERT_TRUE(facts);
    EXPECT_NEAR(facts->duration, 1, 0.01);
    EXPECT_TRUE(facts->hasSound);
    EXPECT_FALSE(facts->hasPicture);
    const auto total = [&](std::int32_t from) {
        double seconds = 0;
        double first = -1;
        for (int i = 0; i < 100; ++i) {
            const auto piece = PreviewProtocol::decodeMediaPiece(
                ask(file, {Ask::mediaPiece, from, i == 0, 0, 0, "sound"}).bytes);
            if (!piece || piece->what != MediaPiece::What::sound) break;
            if (first < 0) first = piece->time;
            seconds += static_cast<double>(piece->samples.size()) / 4 / MediaDecoding::rate;
        }
        EXPECT_NEAR(first, from / 1000.0, 0.25);
        return seconds;
    };
    EXPECT_NEAR(total(0), 1, 0.05);
    EXPECT_NEAR(total(500), 0.5, 0.25);
}

TEST_F(PreviewReaderTest, aDocumentThatTakesForEverIsGivenUp) {
    PDFDocument document;
    document.addText({"Fine"});
    const URL fine = folder.file("fine.pdf", document.bytes());
    PDFDocument bomb;
    bomb.addRepeated("BT /F 14 Tf 72 720 Td (x) Tj ET", 60);
    const URL endless = folder.file("endless.pdf", bomb.bytes());
    EXPECT_EQ(ask(fine, {Ask::page, 0, 0, 60, 80}).outcome, Outcome::answered);
    const CancelToken token;
    reader.ask(endless, {Ask::page, 0, 0, 60, 80}, token,
               [](PreviewReader::Answer) { FAIL() << "nobody waits for it any more"; });
    token.cancel();
    // The next file has its answer although the one before would never have had one.
    EXPECT_EQ(ask(fine, {Ask::page, 0, 0, 60, 80}).outcome, Outcome::answered);
}

}  // namespace
}  // namespace tarn
