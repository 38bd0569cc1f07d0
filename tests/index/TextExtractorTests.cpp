#include <sys/stat.h>

#include <gtest/gtest.h>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/readers/PictureText.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using TextExtractor::extract;

/// Pages and pictures whose text is what the bytes say: lines of pages, "-" for one without text.
class WrittenPages final : public DocumentText {
public:
    bool read(std::string_view bytes, const std::function<bool(std::string_view)>& onPage,
              const std::function<std::string(const GrayPicture&)>& recognize) const override {
        if (!bytes.starts_with("%PDF")) return false;
        GrayPicture scan{.width = 20, .height = 20, .pixels = std::vector<std::uint8_t>(400, 255)};
        scan.pixels[7] = 0;
        std::size_t at = bytes.find('\n') + 1;
        while (at < bytes.size()) {
            const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
            const std::string_view page = bytes.substr(at, end - at);
            const std::string text = page != "-" ? std::string(page)
                                     : recognize ? recognize(scan)
                                                 : "";
            if (!onPage(text)) break;
            at = end + 1;
        }
        return true;
    }
};
class WrittenPictures final : public TextRecognition {
public:
    std::string recognize(const GrayPicture& /*picture*/,
                          const std::vector<std::string>& languages) const override {
        return "recognised in " + languages.front();
    }
    std::optional<GrayPicture> load(std::string_view bytes, int size) const override {
        if (bytes == "broken") return std::nullopt;
        const int side = bytes == "tiny" ? 4 : size;
        GrayPicture picture{.width = side, .height = 20, .pixels = {}};
        picture.pixels.assign(static_cast<std::size_t>(side) * 20, 200);
        if (bytes != "empty") picture.pixels.back() = 100;
        return picture;
    }
    std::vector<std::string> languages() const override { return {"en-US"}; }
};

class TextExtractorTest : public testing::Test {
protected:
    TestFolder folder;
};

TEST_F(TextExtractorTest, readsEachFormatByItsName) {
    const std::string word = test::ZipBytes({{.name = "word/document.xml",
                                              .content = "<w:p xmlns:w=\"w\"><w:t>text</w:t></w:p>",
                                              .isDeflated = true}})
                                 .bytes();
    const std::string wordML =
        "<w:wordDocument xmlns:w=\"w\"><w:p><w:t>text</w:t></w:p></w:wordDocument>";
    const std::string page = "<html><p>text</p></html>";
    const struct {
        const char* name;
        std::string bytes;
        bool hasText;
    } cases[] = {
        {"a.txt", "text", true},
        {"a.MD", "text\r\n", true},
        {"a.csv", " \n\t\n", false},
        {"a.txt.gz", "text", false},
        {"a", "text", false},
        {"a.html", page, true},
        {"a.xhtml", page, true},
        {"a.ipynb", R"({"cells":[{"source":"text"}]})", true},
        {"a.eml", "From: a\n\ntext", true},
        {"a.emlx", "13\nFrom: a\n\ntext<plist>", true},
        {"a.docx", word, true},
        {"a.docx", "text", false},
        {"a.odt", word, true},
        {"a.rtf", "{\\rtf1 text}", true},
        {"a.rtf", "text", false},
        {"a.rtfd/TXT.rtf", "{\\rtf1 text}", true},
        {"a.wordml", wordML, true},
        {"a.webarchive", "text", false},
        {"a.doc", "text", false},
        {"a.doc", "{\\rtf1 text}", true},
        {"a.doc", word, true},
        {"a.doc", wordML, true},
        {"a.doc", page, true},
        {"a.doc", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 text", false},
        {"a.pdf", "%PDF\ntext", false},  // no service reads it
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder place;
        place.file(c.name, c.bytes);
        const std::string_view name(c.name);
        const auto text = extract(place / name.substr(0, name.find('/')), false);
        EXPECT_EQ(text.has_value(), c.hasText);
        if (text) {
            EXPECT_NE(text->find("text"), text->npos) << *text;
        }
    }
}

TEST_F(TextExtractorTest, readsOnlyFilesThatItShould) {
    using TextExtractor::Method;
    folder.folder("folder.txt");
    folder.folder("empty.rtfd");
    folder.link("nowhere.txt", "missing");
    ASSERT_EQ(mkfifo((folder / "pipe.txt").c_str(), 0600), 0);
    folder.sparseFile("large.txt", TextExtractor::sizeLimit(Method::plain) + 1);
    folder.file("empty.txt");
    folder.link("link.txt", folder.file("file.txt", "text").path());
    for (const char* name : {"folder.txt", "empty.rtfd", "nowhere.txt", "pipe.txt", "large.txt",
                             "empty.txt", "missing.txt"}) {
        EXPECT_EQ(extract(folder / name, true), std::nullopt) << name;
    }
    EXPECT_EQ(extract(folder / "link.txt", false), "text");
}

TEST_F(TextExtractorTest, readsPagesAndPicturesThroughTheirServices) {
    Platform platform = Platform::current();
    platform.documents = std::make_shared<WrittenPages>();
    platform.recognition = std::make_shared<WrittenPictures>();
    const ScopedPlatform scoped(std::move(platform));
    folder.file("a.pdf", "%PDF\none\n-\ntwo");
    folder.file("broken.pdf", "PDF");
    EXPECT_EQ(extract(folder / "a.pdf", false), "one\ntwo");
    EXPECT_EQ(extract(folder / "a.pdf", true), "one\nrecognised in en-US\ntwo");
    EXPECT_EQ(extract(folder / "broken.pdf", true), std::nullopt);

    const std::vector<std::string> german = {"de-DE"};
    const struct {
        const char* content;
        bool hasText;
    } pictures[] = {{"picture", true}, {"tiny", false}, {"empty", false}, {"broken", false}};
    for (const auto& c : pictures) {
        SCOPED_TRACE(c.content);
        const TestFolder place;
        const URL url = place.file("a.png", c.content);
        EXPECT_EQ(extract(url, false), std::nullopt);
        EXPECT_EQ(extract(url, true, german).has_value(), c.hasText);
    }
    EXPECT_EQ(extract(folder.file("b.jpg", "picture"), true, german), "recognised in de-DE");
}

}  // namespace
}  // namespace tarn
