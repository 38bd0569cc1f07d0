#include <condition_variable>
#include <cstdlib>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/ui/sidebar/Sidebar.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Three disks, one of whose servers is dead until it is let go.
class FewVolumes final : public Volumes {
public:
    std::vector<Mount> mounts() const override {
        Mount root;
        root.fileSystem = "ext4";
        Mount stick;
        stick.mountPoint = URL::fromPath("/run/media/ada/STICK");
        stick.fileSystem = "vfat";
        stick.isRemovable = true;
        Mount share;
        share.mountPoint = URL::fromPath("/mnt/share");
        share.fileSystem = "nfs4";
        share.isNetwork = true;
        Mount pseudo;
        pseudo.mountPoint = URL::fromPath("/proc");
        pseudo.isPseudo = true;
        return {root, stick, share, pseudo};
    }
    std::optional<Mount> mountHolding(const URL&) const override { return std::nullopt; }
    std::string displayName(const Mount& mount) const override {
        return mount.mountPoint.isRoot() ? "Computer" : std::string(mount.mountPoint.name());
    }
    std::optional<VolumeSpace> space(const URL& url) const override {
        if (url == URL::fromPath("/mnt/share")) {
            auto held = released_.lock();
            changed_.wait(held.mutex(), [&held] { return *held; });
        }
        return VolumeSpace{1'000'000'000, 250'000'000};
    }
    std::shared_ptr<void> observe(std::function<void()>) override { return nullptr; }
    void letGo() {
        *released_.lock() = true;
        changed_.notify_all();
    }

private:
    Guarded<bool> released_{false};
    mutable std::condition_variable changed_;
};

class SidebarTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("TARN_ISOLATED_ROOT", root.url().c_str(), 1);
        Paths::reload();
        for (const char* name : {"Home", "Home/Documents", "Home/Pictures"}) root.folder(name);
        root.file("Home/Music", "a file, no folder");
    }
    void TearDown() override {
        volumes->letGo();
        unsetenv("TARN_ISOLATED_ROOT");
        Paths::reload();
    }
    Platform services() const {
        Platform all = Platform::current();
        all.volumes = volumes;
        return all;
    }
    static QStringList titles(const SidebarModel& model) {
        QStringList all;
        for (int i = 0; i < model.rowCount(); ++i) all << model.row(i).title;
        return all;
    }

    TestFolder root;
    std::shared_ptr<FewVolumes> volumes = std::make_shared<FewVolumes>();
    ScopedPlatform platform{services()};
};

TEST_F(SidebarTest, listsTheFoldersThatExistTheDisksAndTheTrash) {
    SidebarModel model;
    EXPECT_EQ(model.row(1).title, u"Home"_s);  // at once
    ASSERT_TRUE(waitFor([&] { return model.rowCount() > 4; }));
    EXPECT_EQ(titles(model),
              (QStringList{u"Folders"_s, u"Home"_s, u"Documents"_s, u"Pictures"_s, u"Locations"_s,
                           u"Computer"_s, u"STICK"_s, u"share"_s, u"Trash"_s}));
    EXPECT_EQ(model.row(2).location, Location::folder(root / "Home/Documents"));

    root.folder("Home/Downloads");
    model.refresh();
    ASSERT_TRUE(waitFor([&] { return titles(model).contains(u"Downloads"_s); }));
}

TEST_F(SidebarTest, aDeadServerSaysSoOnItsOwnRowOnly) {
    SidebarModel model;
    ASSERT_TRUE(waitFor([&] { return model.rowCount() > 4; }));
    const int stick = *model.indexOf(Location::folder(URL::fromPath("/run/media/ada/STICK")));
    const int share = *model.indexOf(Location::folder(URL::fromPath("/mnt/share")));
    ASSERT_TRUE(waitFor([&] { return model.row(share).answer == SidebarRow::Answer::silent; }));
    EXPECT_EQ(spaceSentence(model.row(share)), u"Not responding"_s);
    EXPECT_EQ(spaceSentence(model.row(stick)), u"250 MB of 1 GB available"_s);
    volumes->letGo();
    EXPECT_TRUE(waitFor([&] { return model.row(share).answer == SidebarRow::Answer::ready; }));
}

TEST_F(SidebarTest, arrowsSkipHeadingsAndEnterChooses) {
    SidebarModel model;
    ASSERT_TRUE(waitFor([&] { return model.rowCount() > 4; }));
    Sidebar sidebar;
    sidebar.setModel(&model);
    sidebar.resize(220, 500);
    std::optional<Location> chosen;
    QObject::connect(&sidebar, &Sidebar::chosen,
                     [&chosen](const Location& location) { chosen = location; });
    show(sidebar);
    sidebar.setCurrent(Location::folder(root / "Home/Pictures"));
    sidebar.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&sidebar, Qt::Key_Down);
    QTest::keyClick(&sidebar, Qt::Key_Return);
    EXPECT_EQ(chosen, Location::folder(URL()));  // “Computer”, past the heading “Locations”
    chosen.reset();
    QTest::keyClick(&sidebar, Qt::Key_Home);
    QTest::keyClick(&sidebar, Qt::Key_Space);
    EXPECT_EQ(chosen, Location::folder(root / "Home"));
}

TEST_F(SidebarTest, aClickChoosesAndAHeadingDoesNot) {
    SidebarModel model;
    ASSERT_TRUE(waitFor([&] { return model.rowCount() > 4; }));
    Sidebar sidebar;
    sidebar.setModel(&model);
    sidebar.resize(220, 500);
    QSignalSpy chosen(&sidebar, &Sidebar::chosen);
    show(sidebar);
    const auto click = [&](int row) {
        QTest::mouseClick(sidebar.viewport(), Qt::LeftButton, {},
                          sidebar.visualRect(model.index(row)).center());
    };
    click(0);
    EXPECT_EQ(chosen.count(), 0);
    click(2);
    EXPECT_EQ(chosen.count(), 1);
    for (int i = 0; i < model.rowCount(); ++i) {
        if (model.row(i).kind == SidebarRow::Kind::heading) continue;
        EXPECT_GE(sidebar.visualRect(model.index(i)).height(), 24);
    }
}

}  // namespace
}  // namespace tarn
