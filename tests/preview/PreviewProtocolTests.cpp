#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "TarnCore/preview/PreviewProtocol.h"

namespace tarn::PreviewProtocol {
namespace {

Question question() { return {Ask::fontLine, 1, 2, 300, 400, "A “b” ü"}; }
Pages pages() { return {12, false, "Lease", {{612, 792}, {0, 0}, {595.5F, 842}}}; }
DrawnPicture picture() { return {2, 3, DrawnPicture::Form::coverage, "abcdef"}; }
PageText pageText() { return {"aü", {{1, 2, 3, 4}, {3, 2, 5, 4}}}; }
FontFacts facts() { return {"Inter", "Bold", 2, 300, true, {U'a', U'b', U'\U0001F600'}}; }
MediaFacts media() { return {12.5, true, true, 640, 360, "Song", "ü", ""}; }
MediaPiece film() { return {MediaPiece::What::picture, 1.25, {1, 1, {}, "abcd"}, {}}; }
MediaPiece sound() { return {MediaPiece::What::sound, 2.5, {}, "abcdefgh"}; }
TableSheet sheet() { return {{"One", ""}, {{"a", "", "b"}, {}, {"ü"}}, true}; }

TEST(PreviewProtocol, tellsTheSameOnTheOtherSide) {
    EXPECT_EQ(decodeQuestion(encode(question())), question());
    EXPECT_EQ(decodePages(encode(pages())), pages());
    EXPECT_EQ(decodePicture(encode(picture())), picture());
    EXPECT_EQ(decodePageText(encode(pageText())), pageText());
    EXPECT_EQ(decodeFontFacts(encode(facts())), facts());
    EXPECT_EQ(decodeSheet(encode(sheet())), sheet());
    EXPECT_EQ(decodeMediaFacts(encode(media())), media());
    EXPECT_EQ(decodeMediaPiece(encode(film())), film());
    EXPECT_EQ(decodeMediaPiece(encode(sound())), sound());
}

// The side that answers may have been taken over by a document.
TEST(PreviewProtocol, believesNothingThatIsCutOrTooLong) {
    const struct {
        const char* what;
        std::string bytes;
        bool (*isUnderstood)(std::string_view);
    } cases[] = {
        {"question", encode(question()), [](auto b) { return decodeQuestion(b).has_value(); }},
        {"pages", encode(pages()), [](auto b) { return decodePages(b).has_value(); }},
        {"picture", encode(picture()), [](auto b) { return decodePicture(b).has_value(); }},
        {"text", encode(pageText()), [](auto b) { return decodePageText(b).has_value(); }},
        {"font", encode(facts()), [](auto b) { return decodeFontFacts(b).has_value(); }},
        {"media", encode(media()), [](auto b) { return decodeMediaFacts(b).has_value(); }},
        {"film", encode(film()), [](auto b) { return decodeMediaPiece(b).has_value(); }},
        {"sound", encode(sound()), [](auto b) { return decodeMediaPiece(b).has_value(); }},
        {"sheet", encode(sheet()), [](auto b) { return decodeSheet(b).has_value(); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        for (std::size_t length = 0; length < c.bytes.size(); ++length)
            EXPECT_FALSE(c.isUnderstood(std::string_view(c.bytes).substr(0, length))) << length;
        EXPECT_FALSE(c.isUnderstood(c.bytes + "x"));
    }
}

TEST(PreviewProtocol, believesNoLie) {
    DrawnPicture large = picture();
    large.width = 40'000;
    EXPECT_FALSE(decodePicture(encode(large)));
    DrawnPicture short_ = picture();
    short_.pixels.pop_back();
    EXPECT_FALSE(decodePicture(encode(short_)));
    Pages endless = pages();
    endless.sizes[0].width = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(decodePages(encode(endless)));
    PageText without = pageText();
    without.boxes.pop_back();
    EXPECT_FALSE(decodePageText(encode(without)));
    FontFacts disordered = facts();
    std::swap(disordered.characters[0], disordered.characters[1]);
    EXPECT_FALSE(decodeFontFacts(encode(disordered)));
    TableSheet broken = sheet();
    broken.rows[0][0] = "\xFF";
    EXPECT_FALSE(decodeSheet(encode(broken)));
}

}  // namespace
}  // namespace tarn::PreviewProtocol
