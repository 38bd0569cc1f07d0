#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/DownloadsService.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 10'000); }

/// Watches for real and notes over what.
class NotedWatching final : public FolderWatching {
public:
    explicit NotedWatching(std::shared_ptr<FolderWatching> real) : real_(std::move(real)) {}
    std::unique_ptr<FolderWatch> watch(
        const std::vector<URL>& folders, WatchDepth depth, double latency, SerialQueue& queue,
        std::function<void(const std::vector<std::string>&)> onChange) override {
        noted_.lock()->push_back({folders, latency});
        return real_->watch(folders, depth, latency, queue, std::move(onChange));
    }
    /// How many watches had this latency.
    std::ptrdiff_t count(double latency) {
        const auto noted = noted_.lock();
        return std::ranges::count(*noted, latency, [](const auto& watch) { return watch.second; });
    }
    /// The latencies of the watches that were over this folder.
    std::vector<double> latencies(const URL& folder) {
        std::vector<double> found;
        for (const auto& [folders, latency] : *noted_.lock())
            for (const URL& one : folders)
                if (one == folder) found.push_back(latency);
        return found;
    }

private:
    std::shared_ptr<FolderWatching> real_;
    Guarded<std::vector<std::pair<std::vector<URL>, double>>> noted_;
};

class BackgroundServicesTest : public testing::Test {
protected:
    BackgroundServicesTest() {
        downloads = root.folder("Home/Downloads");
        root.folder("Home/.local/share/Trash/files");
    }
    static Platform noting(const std::shared_ptr<NotedWatching>& watching) {
        Platform platform = Platform::current();
        platform.watching = watching;
        return platform;
    }
    /// Seconds since 2001 kept with the item; absent where nothing was.
    static std::optional<std::string> added(const URL& item) {
        return Platform::current().attributes->get(item, "tarn.added");
    }

    TestFolder root;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", root.url().path()}};
    URL downloads;
    std::shared_ptr<NotedWatching> watching =
        std::make_shared<NotedWatching>(Platform::current().watching);
    ScopedPlatform platform{noting(watching)};
};

TEST_F(BackgroundServicesTest, startOnceAndInTheirOrder) {
    using Service = AppModel::Service;
    AppModel app;
    std::vector<Service> started;
    QObject::connect(&app, &AppModel::serviceStarted,
                     [&](Service service) { started.push_back(service); });
    int preloads = 0;
    app.setThumbnailPreloading([&](AppModel&) {
        ++preloads;
        EXPECT_EQ(started.back(), Service::contentIndex);
    });
    FileOps::trash(root.file("unwanted"));
    EXPECT_FALSE(app.trash().bytes());
    app.startBackgroundServices(false);
    app.startBackgroundServices(false);
    EXPECT_EQ(started, (std::vector{Service::volumes, Service::downloads, Service::contentIndex,
                                    Service::thumbnails, Service::trash}));
    EXPECT_EQ(preloads, 1);
    EXPECT_TRUE(waitFor([&] { return !app.volumes().empty() && app.trash().bytes(); }));
    EXPECT_TRUE(waitFor([&] { return !watching->latencies(downloads).empty(); }));
    // The Trash, which the tests of a program share.
    EXPECT_TRUE(waitFor([&] { return watching->count(1.0) == 1; }));
    app.startBackgroundServices(true);
    EXPECT_EQ(watching->latencies(downloads), std::vector{0.25});
    EXPECT_EQ(watching->count(1.0), 1);
}

TEST_F(BackgroundServicesTest, nothingIsReadBeforeTheIntroductionHasAsked) {
    AppModel app;
    app.setSettings({});
    QSignalSpy started(&app, &AppModel::serviceStarted);
    app.startBackgroundServices(true);
    EXPECT_EQ(started.count(), 4);
    AppSettings settings = app.settings();
    settings.indexFileContents = false;
    settings.onboardingPage = 1;
    app.setSettings(settings);
    EXPECT_EQ(started.count(), 4);
    settings.hasOnboarded = true;
    app.setSettings(settings);
    ASSERT_EQ(started.count(), 5);
    EXPECT_EQ(started[4][0].value<AppModel::Service>(), AppModel::Service::contentIndex);
    app.setSettings({});
    app.setSettings(settings);
    EXPECT_EQ(started.count(), 5);
    app.setSettings({});
}

class DownloadsServiceTest : public BackgroundServicesTest {
protected:
    void start() {
        QObject::connect(&service, &DownloadsService::arrived,
                         [this](const std::vector<URL>& items) {
                             for (const URL& item : items) arrived.emplace_back(item.name());
                         });
        service.start();
        service.flush();
    }
    DownloadsService service;
    std::vector<std::string> arrived;
};

TEST_F(DownloadsServiceTest, keepsWhenSomethingHasArrived) {
    const URL old = root.file("Home/Downloads/old.pdf", "x");
    start();
    root.file("Home/Downloads/film.mkv.part", "x");
    root.file("Home/Downloads/.hidden", "x");
    root.file("Home/elsewhere/letter.odt", "x");
    std::filesystem::rename((root / "Home/elsewhere/letter.odt").path(),
                            downloads.appending("letter.odt").path());
    ASSERT_TRUE(waitFor([&] { return !arrived.empty(); }));
    // Complete now, under its own name.
    std::filesystem::rename(downloads.appending("film.mkv.part").path(),
                            downloads.appending("film.mkv").path());
    ASSERT_TRUE(waitFor([&] { return arrived.size() >= 2; }));
    // A new name is no arrival, and another file under an old name is one.
    std::filesystem::rename(old.path(), downloads.appending("older.pdf").path());
    root.file("Home/Downloads/old.pdf", "y");
    ASSERT_TRUE(waitFor([&] { return arrived.size() >= 3; }));
    EXPECT_EQ(arrived, (std::vector<std::string>{"letter.odt", "film.mkv", "old.pdf"}));
    EXPECT_FALSE(added(downloads.appending("older.pdf")));
    EXPECT_FALSE(added(downloads.appending(".hidden")));
    const auto kept = added(downloads.appending("letter.odt"));
    if (!kept) GTEST_SKIP() << "this disk keeps no attributes";
    EXPECT_EQ(FileItem::load(downloads.appending("letter.odt"))->added,
              Date{std::strtod(kept->c_str(), nullptr)});
}

TEST_F(DownloadsServiceTest, waitsForAFolderThatIsNotThereYet) {
    std::filesystem::remove(downloads.path());
    QObject::connect(&service, &DownloadsService::arrived, [this](const std::vector<URL>& items) {
        for (const URL& item : items) arrived.emplace_back(item.name());
    });
    service.start();
    service.flush();
    EXPECT_EQ(watching->latencies(Paths::home()).size(), 1U);
    std::filesystem::create_directory(downloads.path());
    ASSERT_TRUE(waitFor([&] { return !watching->latencies(downloads).empty(); }));
    root.file("Home/Downloads/new.pdf", "x");
    EXPECT_TRUE(waitFor([&] { return arrived == std::vector<std::string>{"new.pdf"}; }));
}

}  // namespace
}  // namespace tarn
