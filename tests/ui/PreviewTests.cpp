#include <atomic>
#include <memory>
#include <string>

#include <QtGui/QClipboard>
#include <QtGui/QTextBlock>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/model/PreviewTable.h"
#include "Tarn/ui/preview/ArchivePreview.h"
#include "Tarn/ui/preview/CodeView.h"
#include "Tarn/ui/preview/FontPreview.h"
#include "Tarn/ui/preview/IconPreview.h"
#include "Tarn/ui/preview/ImagePreview.h"
#include "Tarn/ui/preview/MediaPreview.h"
#include "Tarn/ui/preview/PDFPreview.h"
#include "Tarn/ui/preview/PictureView.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/preview/TablePreview.h"
#include "Tarn/ui/preview/TextPreview.h"
#include "TarnCore/platform/SoundOutput.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class PreviewTest : public testing::Test {
protected:
    void SetUp() override {
        preview.resize(700, 500);
        tarn::show(preview);
    }
    /// Shows the file and waits until it is there.
    template <class Kind>
    Kind* shown(const URL& file) {
        const auto item = FileItem::load(file);
        if (!item) return nullptr;
        preview.show(*item);
        EXPECT_TRUE(waitFor([this] { return preview.isSettled(); }));
        return qobject_cast<Kind*>(preview.current());
    }
    std::string fact() const { return preview.fact().toStdString(); }

    TestFolder folder;
    PreviewWidget preview{PreviewPlace::quickLook};
};

URL pictureFile(const TestFolder& folder, const char* name, QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    const URL file = folder / name;
    EXPECT_TRUE(image.save(QString::fromStdString(file.path())));
    return file;
}

TEST_F(PreviewTest, aPictureFitsAndCanBeZoomed) {
    const URL file = pictureFile(folder, "a.png", {1400, 1000});
    auto* image = shown<ImagePreview>(file);
    ASSERT_TRUE(image);
    EXPECT_EQ(fact(), "1,400 × 1,000");
    PictureView& view = image->view();
    EXPECT_TRUE(view.fits());
    EXPECT_LT(view.zoom(), 0.5);
    QTest::keyClick(&view, Qt::Key_1);
    EXPECT_DOUBLE_EQ(view.zoom(), 1);
    QTest::keyClick(&view, Qt::Key_0);
    EXPECT_TRUE(view.fits());
}

TEST_F(PreviewTest, aSmallPictureIsNotBlownUp) {
    auto* image = shown<ImagePreview>(pictureFile(folder, "a.png", {20, 10}));
    ASSERT_TRUE(image);
    EXPECT_DOUBLE_EQ(image->view().zoom(), 1);
}

TEST_F(PreviewTest, textShowsItsBeginningAndMoreWhenAsked) {
    std::string content;
    while (content.size() < 2'500'000) content += "A line of text that is long enough.\n";
    auto* text = shown<TextPreview>(folder.file("a.txt", content));
    ASSERT_TRUE(text);
    ASSERT_TRUE(waitFor([text] { return text->view().isComplete(); }));
    const int before = text->view().blockCount();
    EXPECT_LT(before, 30'000);
    auto* more = text->findChild<QPushButton*>();
    ASSERT_TRUE(more && more->isVisible());
    more->click();
    ASSERT_TRUE(waitFor([&] { return text->view().blockCount() > before + 20'000; }));
    EXPECT_TRUE(text->view().toPlainText().startsWith(QStringLiteral("A line of text")));
}

TEST_F(PreviewTest, codeIsInColours) {
    auto* text = shown<TextPreview>(folder.file("a.py", "def f():\n    return 'x'  # why\n"));
    ASSERT_TRUE(text);
    ASSERT_TRUE(waitFor([text] { return text->view().isComplete(); }));
    const auto formats = text->view().document()->findBlockByNumber(1).layout()->formats();
    ASSERT_EQ(formats.size(), 3);
    EXPECT_EQ(formats[0].start, 4);
    EXPECT_NE(formats[0].format.foreground(), formats[1].format.foreground());
}

// A line of a megabyte would take seconds to lay out; what is copied has it in one piece.
TEST_F(PreviewTest, aLineWithoutEndIsCopiedWhole) {
    const std::string line(10'000, 'x');
    auto* text = shown<TextPreview>(folder.file("a.js", line + "\nend\n"));
    ASSERT_TRUE(text);
    ASSERT_TRUE(waitFor([text] { return text->view().isComplete(); }));
    EXPECT_GT(text->view().blockCount(), 4);
    text->view().selectAll();
    text->view().copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), line + "\nend\n");
}

TEST_F(PreviewTest, bytesThatAreNoTextShowTheirIcon) {
    auto* icon = shown<IconPreview>(folder.file("a", std::string(500, '\0') + "\x01\x02"));
    ASSERT_TRUE(icon);
    EXPECT_TRUE(icon->sentence().isEmpty());
}

TEST_F(PreviewTest, aBrokenPictureSaysSo) {
    auto* icon = shown<IconPreview>(folder.file("a.png", "\x89PNG and nothing more"));
    ASSERT_TRUE(icon);
    EXPECT_FALSE(icon->sentence().isEmpty());
}

TEST_F(PreviewTest, anArchiveListsItsMembers) {
    const test::ZipBytes zip({{.name = "b.txt", .content = "1234"},
                              {.name = "docs/a.txt", .content = "12"},
                              {.name = "docs/deep/c.txt", .content = "1"}});
    auto* archive = shown<ArchivePreview>(folder.file("a.zip", zip.bytes()));
    ASSERT_TRUE(archive);
    EXPECT_EQ(fact(), "3 files, 7 bytes unpacked");
    std::vector<std::pair<std::string, int>> rows;
    for (int row = 0; row < archive->members().rowCount(); ++row)
        rows.emplace_back(archive->members().member(row).entry.path,
                          archive->members().member(row).depth);
    const std::vector<std::pair<std::string, int>> expected = {
        {"docs", 0}, {"docs/deep", 1}, {"docs/deep/c.txt", 2}, {"docs/a.txt", 1}, {"b.txt", 0}};
    EXPECT_EQ(rows, expected);
}

TEST_F(PreviewTest, aFolderSaysHowMuchIsInIt) {
    folder.file("f/a");
    folder.file("f/.hidden");
    folder.file("f/b");
    ASSERT_TRUE(shown<IconPreview>(folder / "f"));
    EXPECT_TRUE(waitFor([this] { return fact() == "2 items"; }));
}

TEST_F(PreviewTest, pagesAreDrawnAndTheirTextCopied) {
    PDFDocument document;
    document.addText({"First page"});
    document.addText({"Second page"});
    auto* pdf = shown<PDFPreview>(folder.file("a.pdf", document.bytes()));
    ASSERT_TRUE(pdf);
    EXPECT_EQ(fact(), "2 pages");
    PageView& pages = pdf->pages();
    EXPECT_TRUE(waitFor([&pages] { return !pages.wish() && !pages.textWish(); }));
    QTest::keyClick(&pages, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&pages, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(QStringLiteral("First page")));
    const QImage image = grabbed(*pages.viewport());
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::white));
}

TEST_F(PreviewTest, aDocumentThatIsDamagedSaysSo) {
    auto* icon = shown<IconPreview>(folder.file("a.pdf", "%PDF-1.7 broken"));
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->sentence(), QStringLiteral("The document is damaged."));
}

TEST_F(PreviewTest, valuesInTextAreATable) {
    auto* table = shown<TablePreview>(folder.file("a.csv", "Name;Sum\nA;1,5\nB;2\n"));
    ASSERT_TRUE(table);
    EXPECT_EQ(fact(), "3 rows");
    EXPECT_EQ(table->table().columnCount(), 2);
    EXPECT_EQ(table->table().index(1, 1).data().toString(), QStringLiteral("1,5"));
    EXPECT_TRUE(table->tabs().isHidden());
}

TEST_F(PreviewTest, lettersOfAFontAreSeen) {
    const URL file = URL::fromPath("/usr/share/fonts/opentype/inter/Inter-Regular.otf");
    if (!FileItem::load(file)) GTEST_SKIP() << "no font where one is expected";
    auto* font = shown<FontPreview>(file);
    ASSERT_TRUE(font);
    EXPECT_TRUE(fact().starts_with("Inter"));
    const QImage image = grabbed(*font);
    int dark = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 70; x < image.width(); ++x) dark += image.pixelColor(x, y).lightness() < 100;
    EXPECT_GT(dark, 500);
}

/// A second of sound as the simplest of all files has it.
std::string toneFile(int rate) {
    const auto number = [](std::uint32_t value, int bytes) {
        std::string out;
        for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
        return out;
    };
    std::string samples;
    for (int i = 0; i < rate; ++i) samples += number(i / 10 % 2 == 0 ? 9000 : 1000, 2);
    const auto bytes = static_cast<std::uint32_t>(samples.size());
    const auto hertz = static_cast<std::uint32_t>(rate);
    return "RIFF" + number(36 + bytes, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) +
           number(1, 2) + number(hertz, 4) + number(2 * hertz, 4) + number(2, 2) + number(16, 2) +
           "data" + number(bytes, 4) + samples;
}

/// Loudspeakers that count what they hear.
class CountingSound final : public SoundOutput {
public:
    std::unique_ptr<SoundStream> open(int, int) const override {
        class Stream final : public SoundStream {
        public:
            explicit Stream(std::atomic<std::size_t>& bytes) : bytes_(bytes) {}
            bool write(std::string_view samples) override {
                bytes_ += samples.size();
                return true;
            }
            double latency() const override { return 0; }
            void drop() override {}

        private:
            std::atomic<std::size_t>& bytes_;
        };
        return std::make_unique<Stream>(bytes);
    }
    mutable std::atomic<std::size_t> bytes = 0;
};

TEST_F(PreviewTest, soundIsPlayedToItsEndWhenAskedTo) {
    auto sound = std::make_shared<CountingSound>();
    SoundOutput::setCurrent(sound);
    auto* media = shown<MediaPreview>(folder.file("a.wav", toneFile(8000)));
    ASSERT_TRUE(media);
    EXPECT_EQ(fact(), "1 sec");
    EXPECT_FALSE(media->player().isPlaying());
    EXPECT_EQ(sound->bytes, 0u);
    QTest::keyClick(media, Qt::Key_K);
    EXPECT_TRUE(media->player().isPlaying());
    EXPECT_TRUE(waitFor([media] { return !media->player().isPlaying(); }));
    EXPECT_NEAR(static_cast<double>(sound->bytes), 4.0 * MediaDecoding::rate, 20'000);
    EXPECT_NEAR(media->player().position(), 1, 0.01);
    SoundOutput::setCurrent(nullptr);
}

TEST_F(PreviewTest, withoutASoundSystemTimePassesAllTheSame) {
    auto* media = shown<MediaPreview>(folder.file("a.wav", toneFile(4000)));
    ASSERT_TRUE(media);
    media->player().seek(0.8);
    media->player().play();
    EXPECT_TRUE(waitFor([media] { return !media->player().isPlaying(); }));
    EXPECT_TRUE(media->player().isMuted());
}

TEST_F(PreviewTest, aFileWithNothingInItSaysSo) {
    auto* icon = shown<IconPreview>(folder.file("a.txt", ""));
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->sentence(), QStringLiteral("There is nothing in this file."));
}

TEST_F(PreviewTest, bytesThatAreNoFilmSaySo) {
    auto* icon = shown<IconPreview>(folder.file("a.mp4", "nothing that moves"));
    ASSERT_TRUE(icon);
    EXPECT_FALSE(icon->sentence().isEmpty());
}

// Who hurries through a folder sees icons, and only the last file is read.
TEST_F(PreviewTest, hurryingThroughFilesReadsOnlyTheLast) {
    const URL first = folder.file("1.txt", "one");
    const URL last = folder.file("3.txt", "three");
    preview.show(*FileItem::load(first));
    preview.show(*FileItem::load(folder.file("2.txt", "two")));
    EXPECT_TRUE(qobject_cast<IconPreview*>(preview.current()));
    preview.show(*FileItem::load(last));
    ASSERT_TRUE(waitFor([this] { return preview.isSettled(); }));
    auto* text = qobject_cast<TextPreview*>(preview.current());
    ASSERT_TRUE(text);
    EXPECT_EQ(text->view().toPlainText(), QStringLiteral("three"));
}

}  // namespace
}  // namespace tarn
