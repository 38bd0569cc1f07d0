#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "TarnCore/platform/Platform.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const DocumentText& service() { return *Platform::current().documents; }

struct Reading {
    bool isDocument = false;
    std::vector<std::string> pages;
};

Reading read(std::string_view bytes,
             const std::function<std::string(const GrayPicture&)>& recognize = nullptr) {
    Reading reading;
    reading.isDocument = service().read(
        bytes,
        [&](std::string_view text) {
            reading.pages.emplace_back(text);
            return true;
        },
        recognize);
    return reading;
}

PDFDocument twoPages() {
    PDFDocument document;
    document.addText({"Annual report", "Total due: 75 euros"});
    GrayPicture scan = {120, 60, std::vector<std::uint8_t>(7200, 0)};
    document.addPicture(scan);
    return document;
}

TEST(DocumentText, readsThePagesInOrder) {
    const Reading reading = read(twoPages().bytes());
    EXPECT_TRUE(reading.isDocument);
    EXPECT_THAT(reading.pages, testing::ElementsAre("Annual report\nTotal due: 75 euros", ""));
}

TEST(DocumentText, drawsPagesWithoutText) {
    std::vector<GrayPicture> drawn;
    const auto recognize = [&](const GrayPicture& page) {
        drawn.push_back(page);
        return std::string("seen");
    };
    EXPECT_THAT(read(twoPages().bytes(), recognize).pages,
                testing::ElementsAre(testing::HasSubstr("Annual"), "seen"));
    ASSERT_EQ(drawn.size(), 1U);
    const GrayPicture& page = drawn[0];
    EXPECT_EQ(page.width, 1700);   // 8.5 inches at 200 dots
    EXPECT_EQ(page.height, 2200);  // 11 inches
    ASSERT_EQ(page.pixels.size(), 1700U * 2200U);
    EXPECT_EQ(page.pixels[0], 255);
    // The black picture stands from 72 to 192 and from 500 to 560 points, counted from below.
    const auto at = [&](int x, int y) {
        return page
            .pixels[static_cast<std::size_t>((792 - y) * 200 / 72 * page.width + x * 200 / 72)];
    };
    EXPECT_EQ(at(130, 530), 0);
    EXPECT_EQ(at(60, 530), 255);
    EXPECT_EQ(at(130, 570), 255);
}

TEST(DocumentText, stopsWhenNoMoreIsWanted) {
    PDFDocument document;
    for (int i = 0; i < 5; ++i) document.addText({"page " + std::to_string(i)});
    int count = 0;
    EXPECT_TRUE(service().read(
        document.bytes(), [&](std::string_view) { return ++count < 2; }, nullptr));
    EXPECT_EQ(count, 2);
}

TEST(DocumentText, refusesWhatIsNoDocument) {
    const std::string whole = twoPages().bytes();
    std::string locked = whole;
    locked.replace(locked.find("/Root"), 5,
                   "/Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O (" + std::string(32, 'o') +
                       ") /U (" + std::string(32, 'u') + ") >> /ID [(a)(a)] /Root");
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"empty", ""},
        {"nonsense", std::string(5000, 'x')},
        {"another format", "\x89PNG\r\n\x1A\n"},
        {"only the beginning", whole.substr(0, 100)},
        {"locked", locked},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Reading reading = read(c.bytes);
        EXPECT_FALSE(reading.isDocument && !reading.pages.empty());
    }
}

TEST(DocumentText, survivesDocumentsThatReferToThemselves) {
    // Pages that are their own children, and a page whose content draws itself.
    std::string pages = twoPages().bytes();
    const std::size_t kids = pages.find("/Kids [");
    pages.replace(kids + 7, 1, "2");
    read(pages);
    PDFDocument document;
    document.addText({") Tj ET /X Do BT ("});
    std::string form = document.bytes();
    const std::size_t font = form.find("<< /Font");
    form.replace(font, 8, "<< /XObject << /X 3 0 R >> /Font");
    read(form, [](const GrayPicture&) { return std::string(); });
}

}  // namespace
}  // namespace tarn
