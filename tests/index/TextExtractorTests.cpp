#include <sys/stat.h>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/index/readers/PictureText.h"
#include "TarnCore/index/readers/WordText.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using TextExtractor::extract;

/// Pages and pictures whose text is what the bytes say: lines of pages, "-" for one without text.
class WrittenPages final : public DocumentText {
public:
    bool isAvailable() const override { return true; }
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
    bool isAvailable(const std::vector<std::string>& languages) const override {
        return languages.front() != "fr";
    }
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

/// A document of the old word-processing format: a container (MS-CFB) of one stream (MS-DOC) with
/// a header that says where its text lies, and the text in Windows-1252.
std::string oldWordDocument(std::string_view text) {
    using test::u16, test::u32;
    const auto put = [](std::string& bytes, std::size_t at, std::string_view what) {
        bytes.replace(at, what.size(), what);
    };
    constexpr std::size_t sector = 512, textOffset = 1024, streamSize = 9 * sector;
    std::string stream(streamSize, '\0');
    put(stream, 0, u16(0xA5EC) + u16(0xC1));
    put(stream, 24, u32(textOffset) + u32(textOffset + text.size()));
    put(stream, 76, u32(text.size()));
    put(stream, textOffset, text);

    constexpr std::uint32_t end = 0xFFFFFFFE, none = 0xFFFFFFFF, table = 0xFFFFFFFD;
    std::string header(sector, '\xFF');
    put(header, 0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0'));
    put(header, 24, u16(0x3E) + u16(3) + u16(0xFFFE) + u16(9) + u16(6) + std::string(6, '\0'));
    put(header, 40, u32(0) + u32(1) + u32(1) + u32(0) + u32(4096) + u32(end) + u32(0));
    put(header, 68, u32(end) + u32(0) + u32(0));
    std::string sectors = u32(table) + u32(end);
    for (std::uint32_t i = 3; i < 2 + streamSize / sector; ++i) sectors += u32(i);
    sectors += u32(end);
    sectors.resize(sector, '\xFF');
    const auto entry = [&](std::u16string_view name, char kind, std::uint32_t child,
                           std::uint32_t start, std::size_t size) {
        std::string bytes(128, '\0');
        for (std::size_t i = 0; i < name.size(); ++i) put(bytes, i * 2, u16(name[i]));
        put(bytes, 64, u16(name.size() * 2 + 2) + kind + '\1' + u32(none) + u32(none) + u32(child));
        put(bytes, 116, u32(start) + u32(size));
        return bytes;
    };
    std::string folder = entry(u"Root Entry", 5, 1, end, 0) +
                         entry(u"WordDocument", 2, none, 2, streamSize) + std::string(256, '\0');
    return header + sectors + folder + stream;
}

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
        {"a.doc", oldWordDocument("text\rof two lines\r"), true},
        {"a.doc", "text", false},
        {"a.doc", "{\\rtf1 text}", true},
        {"a.doc", word, true},
        {"a.doc", wordML, true},
        {"a.doc", page, true},
        {"a.doc", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 text", false},
        {"a.pdf", "%PDF\ntext", false},  // no service reads it
    };
    TextReader reader{{}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder place;
        place.file(c.name, c.bytes);
        const std::string_view name(c.name);
        const URL url = place / name.substr(0, name.find('/'));
        const auto text = extract(url, false);
        EXPECT_EQ(reader.read(url, 1, {}).text, text.value_or("")) << "by the helper";
        EXPECT_EQ(text.has_value(), c.hasText);
        if (text) {
            EXPECT_NE(text->find("text"), text->npos) << *text;
        }
    }
}

TEST(WordText, linksAreWhatAPersonSeesOfThem) {
    const struct {
        const char* printed;
        const char* text;
    } cases[] = {
        {" HYPERLINK \"index.html\" Home and", "  Home and"},
        {"a HYPERLINK \"x.html\" \\l \"part\" b HYPERLINK \\l \"c\"d", "a  b d"},
        {"the word HYPERLINK alone", "the word HYPERLINK alone"},
        {"HYPERLINK \"torn\nline", "HYPERLINK \"torn\nline"},
        {"HYPERLINK", "HYPERLINK"},
        {"HYPERLINK \\", "HYPERLINK \\"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(WordText::withoutLinks(c.printed), c.text);
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

TEST_F(TextExtractorTest, saysWhatDependsOnRecognitionAndWhatIsMissing) {
    using TextExtractor::Tool;
    Platform platform = Platform::current();
    platform.documents = std::make_shared<WrittenPages>();
    platform.recognition = std::make_shared<WrittenPictures>();
    const ScopedPlatform scoped(platform);
    platform.documents = nullptr;
    const struct {
        const char* name;
        const char* bytes;
        bool ocr;
        const char* language;
        bool hasText;
        bool hasPictures;
        std::optional<Tool> missing;
    } cases[] = {
        {"a.pdf", "%PDF\none\ntwo", true, "fr", true, false, {}},
        {"a.pdf", "%PDF\none\n-", false, "en", true, true, {}},
        {"a.pdf", "%PDF\none\n-", true, "en", true, true, {}},
        {"a.pdf", "%PDF\none\n-", true, "fr", true, true, Tool::recognition},
        {"a.pdf", "%PDF\n-", true, "fr", false, true, Tool::recognition},
        {"a.pdf", "broken", true, "fr", false, false, {}},
        {"a.png", "picture", true, "en", true, true, {}},
        {"a.png", "picture", true, "fr", false, true, Tool::recognition},
        {"a.png", "empty", true, "en", false, true, {}},
        {"a.png", "broken", true, "en", false, false, {}},
        {"a.html", "text", true, "fr", true, false, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.bytes + ", " + c.language);
        const FileDescriptor file(open(folder.file(c.name, c.bytes).c_str(), O_RDONLY | O_CLOEXEC));
        const std::vector<std::string> languages = {c.language};
        const auto reading = TextExtractor::read(file.get(), c.name, c.ocr, languages);
        EXPECT_EQ(reading.text.has_value(), c.hasText);
        EXPECT_EQ(reading.hasPictures, c.hasPictures);
        EXPECT_EQ(reading.missing, c.missing);
    }
    const ScopedPlatform without(platform);
    const FileDescriptor file(open(folder.file("a.pdf", "%PDF").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(TextExtractor::read(file.get(), "a.pdf", false).missing, Tool::documents);
}

}  // namespace
}  // namespace tarn
