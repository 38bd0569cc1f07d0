#include <sys/stat.h>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "TarnCore/platform/MediaMetadata.h"
#include "TarnCore/platform/linux/LinuxContentTypes.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/LinuxMediaMetadata.h"
#include "TarnCore/platform/linux/LinuxPictureDecoding.h"
#include "TarnCore/platform/linux/MediaReader.h"
#include "TarnCore/platform/linux/Module.h"
#include "TarnCore/platform/memory/MemoryContentTypes.h"
#include "TarnCore/platform/memory/MemoryRecentFiles.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

std::string bigEndian(std::uint32_t value, int size) {
    std::string out;
    for (int i = size - 1; i >= 0; --i) out += static_cast<char>(value >> (8 * i) & 0xFF);
    return out;
}

std::string littleEndian(std::uint32_t value, int size) {
    const std::string big = bigEndian(value, size);
    return {big.rbegin(), big.rend()};
}

/// What a camera writes into its files; a TIFF file of its own.
std::string cameraFacts(const std::string& make, const std::string& model,
                        std::uint16_t orientation) {
    constexpr std::uint32_t directory = 8 + 2 + 3 * 12 + 4;
    std::string tiff = "MM" + bigEndian(42, 2) + bigEndian(8, 4) + bigEndian(3, 2);
    std::string values;
    const auto addText = [&](std::uint16_t tag, const std::string& text) {
        const auto size = static_cast<std::uint32_t>(text.size() + 1);
        tiff += bigEndian(tag, 2) + bigEndian(2, 2) + bigEndian(size, 4) +
                bigEndian(directory + static_cast<std::uint32_t>(values.size()), 4);
        values += text + '\0';
    };
    addText(0x010F, make);
    addText(0x0110, model);
    tiff += bigEndian(0x0112, 2) + bigEndian(3, 2) + bigEndian(1, 4) + bigEndian(orientation, 2) +
            bigEndian(0, 2);
    return tiff + bigEndian(0, 4) + values;
}

/// A JPEG of 40 × 30 dots without any picture, but with what a camera writes, behind a comment.
std::string photo(const std::string& make, const std::string& model, std::uint16_t orientation,
                  std::uint32_t comment = 0) {
    const std::string exif = std::string("Exif\0\0", 6) + cameraFacts(make, model, orientation);
    return "\xFF\xD8\xFF\xFE" + bigEndian(comment + 2, 2) + std::string(comment, '-') + "\xFF\xE1" +
           bigEndian(static_cast<std::uint32_t>(exif.size() + 2), 2) + exif + "\xFF\xC0" +
           bigEndian(11, 2) + '\x08' + bigEndian(30, 2) + bigEndian(40, 2) +
           std::string("\x01\x01\x11\x00", 4) + "\xFF\xD9";
}

/// A JPEG that says no more than when it was taken, in the second of its directories.
std::string photoTaken(const std::string& when) {
    constexpr std::uint32_t first = 8, second = first + 2 + 12 + 4, value = second + 2 + 12 + 4;
    const auto size = static_cast<std::uint32_t>(when.size() + 1);
    std::string tiff = "MM" + bigEndian(42, 2) + bigEndian(first, 4);
    tiff += bigEndian(1, 2) + bigEndian(0x8769, 2) + bigEndian(4, 2) + bigEndian(1, 4) +
            bigEndian(second, 4) + bigEndian(0, 4);
    tiff += bigEndian(1, 2) + bigEndian(0x9003, 2) + bigEndian(2, 2) + bigEndian(size, 4) +
            bigEndian(value, 4) + bigEndian(0, 4) + when + '\0';
    const std::string exif = std::string("Exif\0\0", 6) + tiff;
    return "\xFF\xD8\xFF\xE1" + bigEndian(static_cast<std::uint32_t>(exif.size() + 2), 2) + exif +
           "\xFF\xD9";
}

/// Two seconds of silence.
std::string sound() {
    const std::string samples(16'000, '\x80');
    const auto size = static_cast<std::uint32_t>(samples.size());
    return "RIFF" + littleEndian(36 + size, 4) + "WAVEfmt " + littleEndian(16, 4) +
           littleEndian(1, 2) + littleEndian(1, 2) + littleEndian(8000, 4) + littleEndian(8000, 4) +
           littleEndian(1, 2) + littleEndian(8, 2) + "data" + littleEndian(size, 4) + samples;
}

std::string threePages() {
    std::string out = "%PDF-1.4\n";
    std::vector<std::size_t> offsets;
    const auto object = [&](const std::string& body) {
        offsets.push_back(out.size());
        out += std::to_string(offsets.size()) + " 0 obj\n" + body + "\nendobj\n";
    };
    object("<</Type/Catalog/Pages 2 0 R>>");
    object("<</Type/Pages/Count 3/Kids[3 0 R 4 0 R 5 0 R]>>");
    for (int i = 0; i < 3; ++i) object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 100 100]>>");
    object("<</Title(Annual report)>>");
    const std::size_t table = out.size();
    out += "xref\n0 7\n0000000000 65535 f \n";
    for (const std::size_t offset : offsets) {
        const std::string digits = std::to_string(offset);
        out += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    return out + "trailer\n<</Size 7/Root 1 0 R/Info 6 0 R>>\nstartxref\n" + std::to_string(table) +
           "\n%%EOF\n";
}

class LinuxMediaMetadataTest : public testing::Test {
protected:
    TestFolder folder;
    std::shared_ptr<MemoryRecentFiles> recent = std::make_shared<MemoryRecentFiles>();
    std::shared_ptr<MemoryVolumes> volumes = std::make_shared<MemoryVolumes>();
    LinuxMediaMetadata metadata{std::make_shared<LinuxFileSystem>(),
                                std::make_shared<MemoryContentTypes>(), recent, volumes};
};

TEST_F(LinuxMediaMetadataTest, knowsTheCameraAndTheUprightSize) {
    const auto found = metadata.read(folder.file("a\nb.JPG", photo("Canon ", "Canon EOS R5", 6)));
    EXPECT_EQ(found.cameraMake, "Canon");
    EXPECT_EQ(found.cameraModel, "Canon EOS R5");
    EXPECT_EQ(found.pixelWidth, 30);
    EXPECT_EQ(found.pixelHeight, 40);
    EXPECT_EQ(metadata.read(folder.file("b.jpg", photo("Apple", "iPhone 15", 1))).pixelWidth, 40);
    const URL raw = folder.file("c.tif", cameraFacts("Canon", "Canon EOS R5", 1));
    EXPECT_EQ(metadata.read(raw).cameraModel, "Canon EOS R5");
    // Wherever in the pieces that are read what is looked for begins and ends.
    for (const std::uint32_t comment : {16'300U, 16'352U, 16'384U, 50'000U}) {
        SCOPED_TRACE(comment);
        const auto read =
            metadata.read(folder.file("d.jpg", photo("Canon", "Canon EOS R5", 6, comment)));
        EXPECT_EQ(read.cameraModel, "Canon EOS R5");
        EXPECT_EQ(read.pixelHeight, 40);
    }
}

TEST(LinuxMediaMetadata, aPictureThatIsCutShortWhileItIsReadSaysNothing) {
    auto* const entry =
        reinterpret_cast<MediaReaderEntry*>(loadModuleSymbol("tarn-pictures", mediaReaderSymbol));
    if (!entry) GTEST_SKIP() << "Built without Exiv2.";
    const TestFolder folder;
    // The values lie behind what is left.
    constexpr std::size_t left = 4096;
    const std::string make(3 * left, 'C');
    const URL raw = folder.file("card.tif", cameraFacts(make, "EOS R5", 1));
    const LinuxFileBytes file(raw.c_str());
    ItemMetadata whole, cut;
    entry(mediaReaderVersion)->read(file, "card.tif", whole);
    EXPECT_EQ(whole.cameraModel, "EOS R5");
    ASSERT_EQ(truncate(raw.c_str(), left), 0);
    entry(mediaReaderVersion)->read(file, "card.tif", cut);
    EXPECT_EQ(cut.cameraModel, std::nullopt);
}

TEST_F(LinuxMediaMetadataTest, knowsWhenAPictureWasTaken) {
    const auto taken = [&](const std::string& content) {
        return metadata.read(folder.file("taken.jpg", content)).photoTaken;
    };
    EXPECT_EQ(taken(photoTaken("2026:03:15 12:00:00")), "2026:03:15 12:00:00");
    EXPECT_EQ(taken(photo("Apple", "iPhone 15", 1)), std::nullopt);
}

TEST_F(LinuxMediaMetadataTest, knowsTheLengthOfSoundAndThePagesOfDocuments) {
    const auto heard = metadata.read(folder.file("tone: 1.wav", sound()));
    ASSERT_TRUE(heard.duration);
    EXPECT_NEAR(*heard.duration, 2, 0.01);
    EXPECT_EQ(heard.codecs, std::vector<std::string>{"pcm_u8"});
    const auto read = metadata.read(folder.file("report.pdf", threePages()));
    EXPECT_EQ(read.pages, 3);
    EXPECT_EQ(read.title, "Annual report");
}

TEST_F(LinuxMediaMetadataTest, saysNothingAboutWhatItCannotRead) {
    const std::string rubbish = "\xFF\xD8\xFF\xE1 rubbish " + std::string(3000, '\x7f');
    for (const char* name : {"x.jpg", "x.heic", "x.mp3", "x.mp4", "x.pdf", "x.cr2", "x.unknown"}) {
        SCOPED_TRACE(name);
        ItemMetadata found = metadata.read(folder.file(name, rubbish));
        found.lastOpened.reset();
        EXPECT_EQ(found, ItemMetadata());
    }
    EXPECT_EQ(metadata.read(folder / "missing.jpg"), ItemMetadata());
    ASSERT_EQ(mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);
    EXPECT_EQ(metadata.read(folder / "pipe.jpg").pixelWidth, std::nullopt);
    // A playlist that calls itself a film must not open what it names.
    folder.file("secret.wav", sound());
    const auto playlist =
        folder.file("list.mp4", "#EXTM3U\n#EXTINF:2,\n" + (folder / "secret.wav").path() +
                                    "\n#EXT-X-ENDLIST\n");
    EXPECT_EQ(metadata.read(playlist).duration, std::nullopt);
}

TEST_F(LinuxMediaMetadataTest, knowsWhenAFileWasOpened) {
    const URL file = folder.file("file.txt", "x", Date::fromUnix(1'000'000));
    const timespec times[2] = {{2'000'000, 0}, {1'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(metadata.lastOpened(file), Date::fromUnix(2'000'000));
    recent->visit(file, Date::fromUnix(1'500'000));
    EXPECT_EQ(metadata.lastOpened(file), Date::fromUnix(1'500'000)) << "the desktop knows better";
    EXPECT_EQ(metadata.lastOpened(folder / "missing"), std::nullopt);

    // Written after it was read: nobody knows.
    const URL written = folder.file("written.txt", "x", Date::fromUnix(3'000'000));
    const timespec earlier[2] = {{2'000'000, 0}, {3'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, written.c_str(), earlier, 0), 0);
    EXPECT_EQ(metadata.lastOpened(written), std::nullopt);
}

TEST_F(LinuxMediaMetadataTest, leavesNoTraceOfReadingInTheAccessTime) {
    for (const URL& file : {folder.file("a.jpg", photo("Canon", "Canon EOS R5", 1)),
                            folder.file("b.tif", cameraFacts("Canon", "Canon EOS R5", 1)),
                            folder.file("c.wav", sound()), folder.file("d.pdf", threePages())}) {
        SCOPED_TRACE(file.name());
        // Older than the last change, so that any other reading would be noted.
        const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
        EXPECT_NE(metadata.read(file), ItemMetadata()) << "nothing was read";
        LinuxPictureDecoding().decode(file, 128);
        EXPECT_EQ(LinuxFileSystem().requireAttributes(file, Links::keep).accessed,
                  Date::fromUnix(1'000'000'000));
    }
}

TEST_F(LinuxMediaMetadataTest, doesNotBelieveAccessTimesThatAreNotKept) {
    auto mounts = volumes->mounts();
    mounts[0].recordsAccessTimes = false;
    volumes->setMounts(mounts);
    const URL file = folder.file("file.txt", "x", Date::fromUnix(1'000'000));
    const timespec times[2] = {{2'000'000, 0}, {1'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(metadata.lastOpened(file), std::nullopt);
}

TEST(ItemMetadata, namesCamerasAsPeopleDo) {
    const struct {
        std::optional<std::string> make, model, camera;
    } cases[] = {
        {"Apple", "iPhone 15", "Apple iPhone 15"},
        {"Canon", "Canon EOS R5", "Canon EOS R5"},
        {"NIKON CORPORATION", "NIKON D850", "NIKON D850"},
        {"FUJIFILM", "X-T4", "FUJIFILM X-T4"},
        {std::nullopt, "X-T4", "X-T4"},
        {"FUJIFILM", std::nullopt, "FUJIFILM"},
        {std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        ItemMetadata metadata;
        metadata.cameraMake = c.make;
        metadata.cameraModel = c.model;
        EXPECT_EQ(metadata.camera(), c.camera);
    }
}

TEST(ItemMetadata, leavesOutOfJSONWhatIsUnknown) {
    ItemMetadata metadata;
    metadata.pixelWidth = 40;
    metadata.title = "broken\xff";
    EXPECT_EQ(nlohmann::json(metadata).dump(),
              "{\"pixelWidth\":40,\"title\":\"broken\xEF\xBF\xBD\"}");
}

}  // namespace
}  // namespace tarn
