#include "tests/ui/screens/ScreenHome.h"

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

#include <sys/stat.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <fcntl.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "TarnCore/sources/SourceResolver.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/ui/screens/BusyPool.h"
#include "tests/ui/screens/SampleFiles.h"

namespace tarn {
namespace {

constexpr double day = 24 * 60 * 60;
/// 14 March 2026, 10:30 UTC.
constexpr std::int64_t now = 1'773'484'200;  // seconds

std::atomic<int>& holds() {
    static std::atomic<int> count = 0;
    return count;
}

/// The real thing, that waits while someone holds it.
class WaitingCopy final : public FileCopy {
public:
    explicit WaitingCopy(std::shared_ptr<FileCopy> real) : real_(std::move(real)) {}

    std::shared_ptr<Record> makeRecord(Purpose purpose) const override {
        return real_->makeRecord(purpose);
    }
    Outcome copy(const URL& from, const URL& to, const Watch& watch) override {
        return goesOn(watch) ? real_->copy(from, to, watch) : Outcome::stopped;
    }
    Outcome copyFiles(std::span<FileOrder> files, const URL& folder, const Watch& watch) override {
        return goesOn(watch) ? real_->copyFiles(files, folder, watch) : Outcome::stopped;
    }
    bool flush(const URL& folder) override { return real_->flush(folder); }
    void removeCopied(const URL& from, const Record& record) override {
        real_->removeCopied(from, record);
    }
    void remove(const URL& url) override { real_->remove(url); }

private:
    /// False when it was cancelled meanwhile.
    static bool goesOn(const Watch& watch) {
        while (holds() > 0) {
            if (watch.progress && !watch.progress(0, 0)) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return true;
    }

    std::shared_ptr<FileCopy> real_;
};

void setModified(const URL& url, double daysAgo) {
    const auto seconds = static_cast<std::time_t>(static_cast<double>(now) - daysAgo * day);
    const timespec times[] = {{seconds, 0}, {seconds, 0}};
    utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW);
}

URL file(std::string_view name, std::string_view content, double daysAgo) {
    const URL url = Paths::home().appending(name);
    std::filesystem::create_directories(url.parent().path());
    std::ofstream(url.path(), std::ios::binary) << content;
    setModified(url, daysAgo);
    return url;
}

URL file(std::string_view name, std::size_t size, double daysAgo) {
    return file(name, std::string(size, 'x'), daysAgo);
}

/// Hills below a sky.
void picture(const char* name, QSize size, const QColor& sky, double daysAgo) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient air(0, 0, 0, size.height());
    air.setColorAt(0, sky);
    air.setColorAt(1, sky.lighter(170));
    painter.fillRect(image.rect(), air);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int hill = 0; hill < 3; ++hill) {
        painter.setBrush(QColor(60, 110, 80).darker(100 + 25 * hill));
        painter.drawEllipse(QRectF(size.width() * (0.35 * hill - 0.3), size.height() * 0.62,
                                   size.width() * 0.9, size.height() * 0.9));
    }
    painter.end();
    const std::string path = Paths::home().appending(name).path();
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    image.save(QString::fromStdString(path));
    std::ifstream saved(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(saved)), {});
    file(name, bytes, daysAgo);
}

void makeFiles() {
    for (const char* folder : {"Desktop", "Documents/Letters/Old", "Downloads", "Empty", "Movies",
                               "Music", "Pictures", "Work"})
        std::filesystem::create_directories(Paths::home().appending(folder).path());
    const URL budget = file("Documents/Budget 2026.ods", SampleFiles::workbook(48'200), 1);
    file("Documents/Lease Agreement.pdf", SampleFiles::letter(), 12);
    file("Documents/Letters/Bank.odt", 21'000, 40);
    file("Documents/Letters/Landlord.odt", 18'700, 44);
    file("Documents/Letters/Old/2019.odt", 9'100, 2500);
    file("Documents/Minutes of the meeting about the roof and the garden wall, last version.txt",
         3'100, 130);
    file("Documents/Notes.txt",
         "Ask about the water level.\nThe total due is 120 euros.\nCall the bank on Monday.\n", 3);
    file("Documents/Projects/Garden/Plan.pdf", 640'000, 20);
    file("Documents/Projects/Garden/Seeds.csv", "Name,Rows\nPeas,4\nBeans,6\n", 19);
    file("Documents/Projects/Roof.pdf", 1'204'000, 70);
    file("Documents/Survey.zip", SampleFiles::archive(2'400'000), 300);
    const URL talk = file("Documents/Talk.odp", 3'900'000, 0.1);
    file("Documents/\xd9\x82\xd8\xa7\xd8\xa6\xd9\x85\xd8\xa9.txt", 900, 8);
    file("Documents/bad \xff name.txt", 12, 500);
    // No file in an ordinary place stays out of sight for want of a neighbour.
    file("Documents/.hidden", 12, 500);
    TagStore::setTags({{"Work", TagColor::blue}, {"Important", TagColor::red}}, budget);
    TagStore::setTags({{"Work", TagColor::blue}}, talk);
    SourceResolver::setWhereFroms(file("Downloads/invoice.pdf", 52'000, 3),
                                  {"https://files.slack.com/files/invoice.pdf"});
    SourceResolver::setWhereFroms(file("Downloads/setup.zip", 2'400'000, 8),
                                  {"https://github.com/some/where/setup.zip"});
    SourceResolver::setWhereFroms(file("Downloads/paper.pdf", 830'000, 40),
                                  {"https://example.org/paper.pdf"});
    file("Broken.zip", "This is no archive.", 4);
    file("Nothing.zip", std::string("PK\x05\x06", 4) + std::string(18, '\0'), 4);
    picture("Pictures/Evening.png", {360, 240}, QColor(235, 150, 90), 2);
    picture("Pictures/Morning.png", {240, 360}, QColor(90, 150, 225), 30);
    picture("Pictures/Noon.png", {480, 200}, QColor(120, 190, 240), 31);
    for (const char* folder : {"Documents/Letters/Old", "Documents/Letters", "Documents/Projects",
                               "Documents/Projects/Garden", "Documents", "Downloads", "Pictures"})
        setModified(Paths::home().appending(folder), 5);
}

Platform services() {
    Platform platform = makeLinuxPlatform();
    auto volumes = std::make_shared<MemoryVolumes>();
    Mount disk = volumes->mounts().front();
    Mount stick;
    stick.mountPoint = URL::fromPath("/media/STICK");
    stick.fileSystem = "vfat";
    stick.source = "/dev/sdb1";
    stick.device = 2;
    stick.isRemovable = true;
    volumes->setMounts({disk, stick});
    volumes->setSpace(disk.mountPoint, VolumeSpace{512'000'000'000, 190'000'000'000});
    volumes->setSpace(stick.mountPoint, VolumeSpace{32'000'000'000, 30'500'000'000});
    platform.volumes = volumes;
    auto drives = std::make_shared<MemoryDrives>(volumes);
    drives->setServer("sftp://build.example.org", "ada", "-", URL::fromPath("/media/STICK"));
    platform.drives = drives;
    platform.clock = std::make_shared<FixedClock>(Date::fromUnix(now));
    platform.copying = std::make_shared<WaitingCopy>(platform.copying);
    return platform;
}

}  // namespace

HeldCopies::HeldCopies() { ++holds(); }
HeldCopies::~HeldCopies() { --holds(); }

ScreenHome::ScreenHome(const std::string& locale) {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", (locale + ".UTF-8").c_str(), 1);
    setenv("TARN_ISOLATED_ROOT", root_.path().toUtf8().constData(), 1);
    Paths::reload();
    Collation::use(locale);
    Platform::setCurrent(services());
    makeFiles();
}

ScreenHome::~ScreenHome() {
    // A task that is still at it would put something back into a folder that was just emptied.
    const BusyPool still;
    // Qt would leave a name that is no text.
    std::filesystem::remove_all(root_.path().toStdString());
}

URL ScreenHome::work(std::string_view name) {
    return Paths::home().appending("Work").appending(name);
}

void ScreenHome::reset() {
    std::filesystem::remove_all(SupportDirectory::location().path());
    std::filesystem::remove_all(Paths::home().appending("Work").path());
    std::filesystem::remove_all(Paths::trash().path());
    file("Work/Holiday/IMG_2041.jpg", 412'000, 200);
    file("Work/Holiday/plan.odt", 48'000, 7);
    file("Work/Phone/IMG_2041.jpg", 2'400'000, 1);
    file("Work/Phone/IMG_2042.jpg", 2'600'000, 1);
    file("Work/Phone/Summer in the Mountains.mov", 3'400'000, 1);
    for (const char* folder : {"Work/Holiday", "Work/Phone", "Work"})
        setModified(Paths::home().appending(folder), 1);
}

}  // namespace tarn
