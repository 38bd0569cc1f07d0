// Pictures of the sidebar, and of the sheets that eject volumes and connect to servers:
// tarn-sidebar-shots OUT. They are looked at, not compared. The volumes are made up.
#include <cstdio>
#include <memory>
#include <string>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"

namespace {

using namespace tarn;

constexpr QSize sizes[] = {{1000, 980}, {420, 760}};

Mount mount(const char* point, const char* fileSystem) {
    Mount mount;
    mount.mountPoint = URL::fromPath(point);
    mount.fileSystem = fileSystem;
    return mount;
}

Platform madeUp() {
    Platform platform = makeLinuxPlatform();
    const auto volumes = std::make_shared<MemoryVolumes>();
    Mount stick = mount("/run/media/ada/Holiday", "vfat");
    stick.isRemovable = true;
    Mount backup = mount("/run/media/ada/Backup", "ext4");
    backup.isRemovable = true;
    Mount share = mount("/mnt/photos on nas", "cifs");
    share.isNetwork = true;
    volumes->setMounts({mount("/", "ext4"), stick, backup, share});
    volumes->setSpace(URL(), VolumeSpace{512'000'000'000, 213'000'000'000});
    volumes->setSpace(stick.mountPoint, VolumeSpace{64'000'000'000, 1'200'000'000});
    volumes->setSpace(backup.mountPoint, VolumeSpace{4'000'000'000'000, 2'900'000'000'000});
    volumes->setSpace(share.mountPoint, std::nullopt);
    const auto drives = std::make_shared<MemoryDrives>(volumes);
    drives->setServer("sftp://build.example.org", "ada", "-", share.mountPoint);
    platform.volumes = volumes;
    platform.drives = drives;
    return platform;
}

class Shots {
public:
    Shots(AppModel& app, QString out) : app_(app), out_(std::move(out)) {}

    void takeAll() {
        for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
            Theme::shared().setMode(mode);
            for (const QSize size : sizes) {
                prefix_ = QStringLiteral("%1-%2-").arg(
                    mode == Theme::Mode::dark ? QStringLiteral("dark") : QStringLiteral("light"),
                    QString::number(size.width()));
                sidebar(size);
                eject(size);
                server(size);
            }
        }
    }

private:
    BrowserWindow* open(QSize size) {
        auto* window =
            new BrowserWindow(std::make_unique<WindowModel>(app_, Location::folder(Paths::home())));
        window->resize(size);
        window->show();
        QTest::qWait(300);
        return window;
    }
    void close(BrowserWindow* window) {
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void save(QWidget& window, const QString& name) {
        QTest::qWait(150);
        const QString file = QDir(out_).filePath(prefix_ + name + QStringLiteral(".png"));
        window.grab().save(file);
        std::printf("%s\n", qPrintable(file));
    }

    void sidebar(QSize size) {
        BrowserWindow* window = open(size);
        auto* sidebar = window->findChild<Sidebar*>();
        if (!sidebar->isVisible()) {
            QTest::keyClick(window, Qt::Key_F9);
            QTest::qWait(100);
        }
        save(*window, QStringLiteral("sidebar"));
        const auto stick =
            sidebar->model().indexOf(Location::folder(URL::fromPath("/run/media/ada/Holiday")));
        sidebar->model().setFolded(SidebarSection::tags, true);
        sidebar->setFocus(Qt::TabFocusReason);
        if (stick) {
            const QModelIndex index = sidebar->model().index(*sidebar->model().indexOf(
                Location::folder(URL::fromPath("/run/media/ada/Holiday"))));
            sidebar->setCurrentIndex(index);
            QTest::mouseMove(sidebar->viewport(), sidebar->ejectButton(index).center());
        }
        save(*window, QStringLiteral("sidebar-keyboard"));
        sidebar->setLayoutDirection(Qt::RightToLeft);
        save(*window, QStringLiteral("sidebar-right-to-left"));
        sidebar->model().setFolded(SidebarSection::tags, false);
        close(window);
    }

    void eject(QSize size) {
        BrowserWindow* window = open(size);
        WindowSheet sheet;
        sheet.which = WindowSheet::Which::eject;
        for (const Volume& volume : app_.volumes())
            if (volume.name == "Holiday") sheet.volume = volume;
        const std::string point = "/run/media/ada/Holiday/";
        sheet.processes = {
            {4711, "vim", {point + "Notes/Packing list for the mountains, second version.txt"}},
            {5120,
             "rhythmbox",
             {point + "1.flac", point + "2.flac", point + "3.flac", point + "4.flac",
              point + "5.flac"}},
            {812, "bash", {"/run/media/ada/Holiday"}}};
        sheet.message = "Couldn’t eject “Holiday” because it is in use.";
        window->model().showSheet(sheet);
        save(*window, QStringLiteral("eject"));
        close(window);
    }

    void server(QSize size) {
        BrowserWindow* window = open(size);
        WindowSheet sheet;
        sheet.which = WindowSheet::Which::connectServer;
        window->model().showSheet(sheet);
        save(*window, QStringLiteral("connect"));
        if (auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
            field->setText(QStringLiteral("ftp://elsewhere"));
        save(*window, QStringLiteral("connect-unknown"));
        if (auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
            field->setText(QStringLiteral("build.example.org"));
            QTest::keyClick(field, Qt::Key_Return);
        }
        QTest::qWait(200);
        save(*window, QStringLiteral("connect-failed"));
        if (auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
            field->setText(QStringLiteral("sftp://build.example.org"));
            QTest::keyClick(field, Qt::Key_Return);
        }
        QTest::qWait(200);
        save(*window, QStringLiteral("connect-question"));
        close(window);
    }

    AppModel& app_;
    QString out_;
    QString prefix_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Platform::setCurrent(madeUp());
    QApplication qt(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: tarn-sidebar-shots OUT\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setFont(QFont(QStringLiteral("Inter"), 10));
    QDir().mkpath(QString::fromLocal8Bit(argv[1]));
    Theme::install(qt).setAnimations(false);
    AppModel app;
    app.lists().addFavorite(Paths::home().appending("Projects"));
    app.lists().addFavorite(
        Paths::home().appending("A folder with a rather long name for a sidebar"));
    if (app.lists().smartFolders().size() == SmartFolder::builtIns().size())
        app.lists().addSmartFolder("Papers of this year", "pdfs from 2026",
                                   SearchScopeSetting::home);
    app.lists().rememberServer("sftp://build.example.org");
    app.lists().rememberServer("smb://archive/2019");
    app.tagColors().remember({"Tax", TagColor::none});
    app.startBackgroundServices();
    Shots(app, QString::fromLocal8Bit(argv[1])).takeAll();
    return 0;
}
