#include <QtGui/QImage>
#include <gtest/gtest.h>

#include "Tarn/ui/thumbnails/ThumbnailPreloader.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryMachineLoad.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr int pixels = 128;

class ThumbnailPreloaderTest : public testing::Test {
protected:
    URL picture(const std::string& name, double age) const {
        const URL file = folder / name;
        QImage image(300, 200, QImage::Format_RGB32);
        image.fill(Qt::red);
        EXPECT_TRUE(image.save(QString::fromStdString(file.path()), "PNG"));
        folder.setModified(file, Date{700'000'000 - age});
        return file;
    }
    bool has(const URL& file) const {
        return cache.find(file, *FileItem::load(file)->modified, pixels).has_value();
    }

    TestFolder folder;
    TestFolder store;
    ThumbnailCache cache{store / "thumbnails"};
};

TEST_F(ThumbnailPreloaderTest, makesWhatIsMissing) {
    const URL red = picture("red.png", 0);
    folder.file("notes.txt", "x");
    const URL broken = folder.file("broken.png", "no picture");
    Platform calm = Platform::current();
    calm.load = std::make_shared<MemoryMachineLoad>();
    const ScopedPlatform scoped(calm);
    ThumbnailPreloader preloader(cache);
    preloader.preload({folder.url(), folder / "gone"}, pixels);
    preloader.wait();
    EXPECT_TRUE(has(red));
    EXPECT_FALSE(has(broken));
    EXPECT_FALSE(has(folder / "notes.txt"));
    const auto stored = cache.find(red, *FileItem::load(red)->modified, pixels);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->size(), QSize(128, 85));
}

TEST_F(ThumbnailPreloaderTest, leavesABusyMachineAlone) {
    const URL red = picture("red.png", 0);
    auto load = std::make_shared<MemoryMachineLoad>();
    load->setOnBattery(true);
    Platform platform = Platform::current();
    platform.load = load;
    const ScopedPlatform scoped(platform);
    {
        ThumbnailPreloader preloader(cache);
        preloader.preload({folder.url()}, pixels);
    }
    EXPECT_FALSE(has(red));
}

}  // namespace
}  // namespace tarn
