#include <atomic>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/ActivityList.h"
#include "Tarn/model/ContentIndexService.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryMachineLoad.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using State = ContentIndexService::State;

/// A platform whose load a test sets.
Platform withLoad(const std::shared_ptr<MemoryMachineLoad>& load) {
    Platform platform = Platform::current();
    platform.load = load;
    return platform;
}

class ContentIndexServiceTest : public testing::Test {
protected:
    void SetUp() override {
        settings.folders = {folder.folder("in")};
        settings.ocr = false;
        file("a.txt");
        file("b.txt");
    }
    void file(const std::string& name) { folder.file("in/" + name, "text of " + name); }
    URL inside(const std::string& name) { return folder / ("in/" + name); }

    static ContentIndexTiming quick() {
        ContentIndexTiming timing;
        timing.start = 0;
        timing.latency = 0.05;
        timing.shown = 0;
        timing.retry = 0.05;
        timing.machine = {.betweenLooks = 0, .betweenBatteryLooks = 0, .calm = 0};
        return timing;
    }
    void start() {
        service = std::make_unique<ContentIndexService>(activities, index, quick());
        service->setSettings(settings);
        service->start();
    }
    void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    void settle() {
        waitFor([this] { return service->state() == State::upToDate; });
    }
    bool holds(const std::string& name) { return reader.isIndexed(inside(name).path()); }

    TestFolder folder;
    URL index = folder.folder("index").appending("text-index.sqlite");
    TextIndex reader{index};
    std::shared_ptr<MemoryMachineLoad> load = std::make_shared<MemoryMachineLoad>();
    ScopedPlatform platform{withLoad(load)};
    IndexSettings settings;
    ActivityList activities;
    std::unique_ptr<ContentIndexService> service;  ///< Ends before what it uses.
};

TEST_F(ContentIndexServiceTest, readsWhatIsThereAndFollowsChanges) {
    start();
    settle();
    EXPECT_TRUE(holds("a.txt") && holds("b.txt"));
    waitFor([this] { return service->status() && service->status()->files == 2; });
    file("later.txt");
    waitFor([this] { return holds("later.txt"); });
    ASSERT_EQ(unlink(inside("a.txt").c_str()), 0);
    waitFor([this] { return !holds("a.txt"); });
    folder.file("new/deep/c.txt", "c");
    ASSERT_EQ(rename((folder / "new").c_str(), inside("new").c_str()), 0);
    waitFor([this] { return holds("new/deep/c.txt"); });
}

TEST_F(ContentIndexServiceTest, settingsApplyAtOnce) {
    start();
    settle();
    const URL other = folder.file("other/c.txt", "c");
    settings.folders.push_back(other.parent());
    service->setSettings(settings);
    EXPECT_EQ(service->state(), State::running);
    waitFor([&] { return reader.isIndexed(other.path()); });
    settings.excluded = {inside("sub")};
    service->setSettings(settings);
    settle();
    folder.file("in/sub/secret.txt", "s");
    file("open.txt");
    waitFor([this] { return holds("open.txt"); });
    settle();
    EXPECT_FALSE(holds("sub/secret.txt"));

    settings.isOn = false;
    service->setSettings(settings);
    waitFor([this] { return service->state() == State::off; });
    file("unread.txt");
    settings.isOn = true;
    service->setSettings(settings);
    waitFor([this] { return holds("unread.txt"); });
}

TEST_F(ContentIndexServiceTest, holdsWhileTheMachineHasBetterThingsToDo) {
    load->setOnBattery(true);
    start();
    waitFor([this] { return service->held() == MachinePause::Reason::battery; });
    EXPECT_EQ(reader.fileCount(), 0);
    EXPECT_TRUE(reader.claim()) << "others may read meanwhile";
    load->setBusy(true);
    load->setOnBattery(false);
    waitFor([this] { return service->held() == MachinePause::Reason::busy; });
    load->setBusy(false);
    settle();
    EXPECT_TRUE(holds("a.txt"));
}

TEST_F(ContentIndexServiceTest, endsWhileItHolds) {
    load->setOnBattery(true);
    start();
    waitFor([this] { return service->held().has_value(); });
    service.reset();
    EXPECT_EQ(reader.fileCount(), 0);
}

TEST_F(ContentIndexServiceTest, waitsForAnotherProgramThatReads) {
    auto claim = TextIndex(index).claim();
    ASSERT_TRUE(claim);
    start();
    waitFor([this] { return service->state() == State::elsewhere; });
    EXPECT_FALSE(holds("a.txt"));
    claim.reset();
    settle();
    EXPECT_TRUE(holds("a.txt"));
}

TEST_F(ContentIndexServiceTest, hearsOfChangesByOthers) {
    start();
    settle();
    int heard = 0;
    QObject::connect(service.get(), &ContentIndexService::contentsChanged, [&] { ++heard; });
    const TextIndex other(index);
    other.announceChange();
    waitFor([&] { return heard > 0; });
}

TEST_F(ContentIndexServiceTest, forgetsAFolderAndReadsTheRestOn) {
    folder.file("in/private/c.txt", "c");
    start();
    settle();
    ASSERT_TRUE(holds("private/c.txt"));
    service->forget(inside("private"));
    settings.excluded = {inside("private")};
    service->setSettings(settings);
    waitFor([this] { return !holds("private/c.txt"); });
    settle();
    EXPECT_FALSE(holds("private/c.txt"));
    EXPECT_TRUE(holds("a.txt"));
    service->rebuild();
    waitFor([this] { return service->state() == State::upToDate && reader.fileCount() == 2; });
}

TEST_F(ContentIndexServiceTest, whatIsLeftOutLaterIsForgotten) {
    folder.file("in/private/c.txt", "c");
    start();
    settle();
    ASSERT_TRUE(holds("private/c.txt"));
    settings.excluded = {inside("private")};
    service->setSettings(settings);
    settle();
    EXPECT_FALSE(holds("private/c.txt"));
    EXPECT_TRUE(holds("a.txt"));
}

/// Is unplugged once a run has begun.
class UnpluggedLate final : public MachineLoad {
public:
    bool isOnBattery() const override { return !isPluggedIn && looks_++ > 0; }
    bool isBusy() const override { return false; }
    void lowerPriorityOfThread() override {}
    std::atomic<bool> isPluggedIn = false;

private:
    mutable std::atomic<int> looks_ = 0;
};

TEST_F(ContentIndexServiceTest, othersMayReadWhileARunHoldsThatHasBegun) {
    Platform changed = Platform::current();
    const auto machine = std::make_shared<UnpluggedLate>();
    changed.load = machine;
    const ScopedPlatform scope(changed);
    start();
    waitFor([this] { return service->held() && reader.claim(); });
    EXPECT_EQ(service->state(), State::running);
    auto claim = reader.claim();
    ASSERT_TRUE(claim);
    machine->isPluggedIn = true;
    waitFor([this] { return service->state() == State::elsewhere; });
    claim.reset();
    settle();
    EXPECT_TRUE(holds("a.txt") && holds("b.txt"));
    service.reset();
}

TEST_F(ContentIndexServiceTest, theActivityPausesAndStopsTheRun) {
    Platform changed = Platform::current();
    const auto machine = std::make_shared<UnpluggedLate>();
    changed.load = machine;
    const ScopedPlatform scope(changed);
    start();
    waitFor([this] { return !activities.isEmpty() && activities.tasks()[0]->power(); });
    ASSERT_FALSE(activities.isEmpty());
    ActivityTask& shown = *activities.tasks().front();
    EXPECT_TRUE(shown.isService());
    EXPECT_EQ(shown.power(), QStringLiteral("Waiting for mains power"));
    shown.pause();
    EXPECT_TRUE(service->isPaused());
    shown.resume();
    EXPECT_TRUE(shown.resumeRefused());
    shown.stop();
    waitFor([this] { return service->state() == State::stopped; });
    EXPECT_TRUE(activities.isEmpty());
    EXPECT_EQ(reader.fileCount(), 0);
    // Changes do not begin it again, the user does.
    file("later.txt");
    machine->isPluggedIn = true;
    EXPECT_EQ(service->state(), State::stopped);
    service->runNow();
    settle();
    EXPECT_EQ(reader.fileCount(), 3);
    service.reset();
}

}  // namespace
}  // namespace tarn
