#include <sys/stat.h>

#include <QtCore/QCryptographicHash>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/ui/thumbnails/PictureDecoder.h"
#include "Tarn/ui/thumbnails/ThumbnailLoader.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

const Date firstTime = *Date::fromISO8601("2026-03-15T12:00:00Z");

class ThumbnailTest : public testing::Test {
protected:
    URL picture(const char* name, QColor color, QSize size = {400, 200}) {
        const URL url = root / name;
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(QString::fromStdString(url.path()), "png"));
        root.setModified(url, firstTime);
        return url;
    }
    /// What the loader delivers; null when nothing comes.
    QImage load(const URL& url, int pixels = 128) {
        QImage image;
        bool done = false;
        QObject scope;
        QObject::connect(&loader, &ThumbnailLoader::ready, &scope,
                         [&](const URL& file, const QImage& made) {
                             if (file != url) return;
                             image = made;
                             done = true;
                         });
        QObject::connect(&loader, &ThumbnailLoader::unavailable, &scope,
                         [&](const URL& file) { done = done || file == url; });
        loader.request(item(url), pixels);
        EXPECT_TRUE(waitFor([&] { return done; }));
        return image;
    }
    static FileItem item(const URL& url) { return FileItem::load(url).value_or(FileItem()); }
    URL stored(const char* folder, const URL& file) const {
        const QByteArray digest = QCryptographicHash::hash(QByteArray::fromStdString(file.string()),
                                                           QCryptographicHash::Md5);
        return (root / "cache/thumbnails")
            .appending(folder)
            .appending(digest.toHex().toStdString() + ".png");
    }
    static QImage read(const URL& url) { return QImage(QString::fromStdString(url.path())); }

    TestFolder root;
    ThumbnailCache cache{root / "cache/thumbnails"};
    ThumbnailLoader loader{cache};
};

TEST_F(ThumbnailTest, fitsTheSquareAndIsLeftForOtherPrograms) {
    const URL url = picture("lake & shore.png", Qt::red);
    const QImage image = load(url, 100);
    EXPECT_EQ(image.size(), QSize(100, 50));
    const URL file = stored("normal", url);
    struct stat facts {};
    ASSERT_EQ(stat(file.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600U);
    const QImage kept = read(file);
    EXPECT_EQ(kept.size(), QSize(128, 64));
    EXPECT_EQ(kept.text(u"Thumb::URI"_s).toStdString(), url.string());
    EXPECT_EQ(kept.text(u"Thumb::MTime"_s), QString::number(firstTime.unixSeconds()));
}

TEST_F(ThumbnailTest, theDesktopsLibraryReadsWhoseAPictureIs) {
    // It knows neither packed texts nor a ';' that is not escaped.
    const URL url = picture("a name of more than forty characters; and another.png", Qt::red);
    load(url, 100);
    std::string uri = url.string();
    uri.replace(uri.find(';'), 1, "%3B");
    const QByteArray digest =
        QCryptographicHash::hash(QByteArray::fromStdString(uri), QCryptographicHash::Md5);
    const std::string bytes =
        root.read("cache/thumbnails/normal/" + digest.toHex().toStdString() + ".png");
    const std::string time = std::to_string(firstTime.unixSeconds());
    EXPECT_NE(bytes.find(std::string("tEXtThumb::URI") + '\0' + uri), bytes.npos);
    EXPECT_NE(bytes.find(std::string("tEXtThumb::MTime") + '\0' + time), bytes.npos);
    EXPECT_EQ(bytes.find("zTXt"), bytes.npos);
    EXPECT_LT(bytes.find("tEXt"), bytes.find("IDAT"));
    // Under the name that others give it.
    EXPECT_TRUE(cache.find(url, firstTime, 128).has_value());
    ASSERT_EQ(
        rename(
            (root / ("cache/thumbnails/normal/" + digest.toHex().toStdString() + ".png")).c_str(),
            stored("normal", url).c_str()),
        0);
    EXPECT_TRUE(cache.find(url, firstTime, 128).has_value());
}

TEST_F(ThumbnailTest, choosesTheFolderByDevicePixels) {
    const URL url = picture("large.png", Qt::red, {3000, 1500});
    const struct {
        int pixels;
        const char* folder;
    } cases[] = {{128, "normal"}, {129, "large"}, {400, "x-large"}, {900, "xx-large"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pixels);
        root.setModified(url, firstTime + c.pixels);  // nothing stored before counts
        EXPECT_EQ(load(url, c.pixels).width(), c.pixels);
        EXPECT_TRUE(root.exists(stored(c.folder, url).path().substr(root.url().path().size() + 1)));
    }
}

TEST_F(ThumbnailTest, anotherProgramsPictureIsUsedUntilTheFileChanges) {
    const URL url = picture("shared.png", Qt::red);
    QImage foreign(128, 64, QImage::Format_RGB32);
    foreign.fill(Qt::blue);
    cache.store(url, firstTime, 128, foreign);
    EXPECT_EQ(load(url).pixelColor(10, 10), QColor(Qt::blue));
    root.setModified(url, firstTime + 60);
    EXPECT_EQ(load(url).pixelColor(10, 10), QColor(Qt::red));
}

TEST_F(ThumbnailTest, aPictureOfAnotherFileUnderTheSameNameIsNotBelieved) {
    const URL url = picture("mine.png", Qt::red);
    QImage foreign(128, 64, QImage::Format_RGB32);
    foreign.fill(Qt::blue);
    cache.store(url, firstTime, 128, foreign);
    QImage forged = read(stored("normal", url));
    forged.setText(u"Thumb::URI"_s, u"file:///somewhere/else.png"_s);
    ASSERT_TRUE(forged.save(QString::fromStdString(stored("normal", url).path()), "png"));
    EXPECT_EQ(load(url).pixelColor(10, 10), QColor(Qt::red));
}

TEST_F(ThumbnailTest, whatCannotBeDrawnIsRememberedUntilItChanges) {
    const URL url = root.file("broken.png", "not a picture at all", firstTime);
    EXPECT_TRUE(load(url).isNull());
    EXPECT_TRUE(cache.hasFailed(url, firstTime));
    EXPECT_FALSE(cache.hasFailed(url, firstTime + 1));
    picture("broken.png", Qt::green);
    root.setModified(url, firstTime + 5);
    EXPECT_EQ(load(url).pixelColor(5, 5), QColor(Qt::green));
}

TEST_F(ThumbnailTest, documentsShowTheirFirstPage) {
    PDFDocument document;
    document.addText({"First page"});
    const URL url = root.file("a.pdf", document.bytes(), firstTime);
    ASSERT_TRUE(ThumbnailLoader::canThumbnail(item(url)));
    const QImage page = load(url);
    EXPECT_EQ(page.height(), 128);
    EXPECT_LT(page.width(), 128);
    EXPECT_EQ(page.pixelColor(page.width() / 2, 120), QColor(Qt::white));
    EXPECT_EQ(read(stored("normal", url)).size(), page.size());

    const URL broken = root.file("b.pdf", "%PDF-1.7 broken", firstTime);
    EXPECT_TRUE(load(broken).isNull());
    EXPECT_TRUE(cache.hasFailed(broken, firstTime));
}

TEST_F(ThumbnailTest, theStoreItselfGetsNone) {
    root.folder("cache/thumbnails/normal");
    const URL own = picture("cache/thumbnails/normal/own.png", Qt::red);
    EXPECT_TRUE(load(own).isNull());
    EXPECT_FALSE(root.exists("cache/thumbnails/large"));
}

TEST_F(ThumbnailTest, namesNeedNotBeText) {
    const URL good = picture("plain.png", Qt::red);
    const URL odd = root / "odd \xff\n[n=2].png";
    ASSERT_EQ(rename(good.c_str(), odd.c_str()), 0);
    EXPECT_EQ(load(odd).size(), QSize(128, 64));
    EXPECT_EQ(load(odd).size(), QSize(128, 64));  // now from the store
}

TEST_F(ThumbnailTest, picturesStayInMemoryForTheirTime) {
    const URL url = picture("kept.png", Qt::red);
    FileItem item;
    item.url = url;
    item.name = "kept.png";
    item.kind = FileKind::image;
    item.size = 100;
    item.modified = firstTime;
    EXPECT_TRUE(loader.picture(item, 64).isNull());
    ASSERT_TRUE(waitFor([&] { return !loader.cached(url, firstTime).isNull(); }));
    EXPECT_EQ(loader.picture(item, 64).size(), QSize(64, 32));
    item.modified = firstTime + 1;
    EXPECT_TRUE(loader.picture(item, 64).isNull());
}

TEST_F(ThumbnailTest, droppedWishesAreNotMet) {
    std::vector<URL> files;
    for (int i = 0; i < 30; ++i)
        files.push_back(
            picture(("many" + std::to_string(i) + ".png").c_str(), Qt::red, {300, 300}));
    std::vector<URL> made;
    QObject::connect(&loader, &ThumbnailLoader::ready,
                     [&made](const URL& file, const QImage&) { made.push_back(file); });
    for (const URL& url : files) loader.request(item(url), 128);
    loader.setVisible({files[3], files[4]});
    const auto has = [&made](const URL& url) {
        return std::find(made.begin(), made.end(), url) != made.end();
    };
    ASSERT_TRUE(waitFor([&] { return has(files[3]) && has(files[4]); }));
    loader.request(item(files[5]), 128);
    ASSERT_TRUE(waitFor([&] { return has(files[5]); }));
    EXPECT_LT(made.size(), 10U);  // those two, this one, and what had begun before
}

TEST(PictureDecoder, turnsPicturesUpright) {
    TestFolder root;
    // A JPEG of 40 × 20 whose EXIF orientation says "turn right".
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    const URL url = root / "turned.jpg";
    ASSERT_TRUE(image.save(QString::fromStdString(url.path()), "jpg"));
    std::string bytes = root.read("turned.jpg");
    const std::string exif(
        "\xff\xe1\x00\x22"
        "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
        36);
    bytes.insert(2, exif);
    root.file("upright.jpg", bytes);
    EXPECT_EQ(PictureDecoder::decode(root / "upright.jpg", 20).size(), QSize(10, 20));
}

TEST(PictureDecoder, asksThePlatformForWhatQtCannotRead) {
    class OnePicture final : public PictureDecoding {
    public:
        std::optional<DecodedPicture> decode(const URL&, int size) const override {
            const auto count = static_cast<std::size_t>(size * size);
            DecodedPicture picture{size, size, {}};
            for (std::size_t i = 0; i < count; ++i)
                picture.rgba.insert(picture.rgba.end(), {10, 20, 30, 255});
            return picture;
        }
    };
    TestFolder root;
    root.file("photo.heic", "only the platform understands this");
    Platform platform = Platform::current();
    platform.pictures = std::make_shared<OnePicture>();
    const ScopedPlatform scope(platform);
    const QImage image = PictureDecoder::decode(root / "photo.heic", 33);
    EXPECT_EQ(image.size(), QSize(33, 33));
    EXPECT_EQ(image.pixelColor(32, 32), QColor(10, 20, 30));
}

}  // namespace
}  // namespace tarn
