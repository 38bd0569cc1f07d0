// Pictures of the settings and of the sheets that keep searches, workspaces and favourites:
// tarn-list-shots OUT. They are looked at, not compared.
#include <cstdio>
#include <functional>
#include <memory>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Favorites.h"
#include "Tarn/ui/settings/GeneralSection.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

constexpr QSize sizes[] = {{1000, 700}, {420, 560}};

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
                settings(size);
                sheets(size);
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
        QTest::qWait(100);
        const QString file = QDir(out_).filePath(prefix_ + name + QStringLiteral(".png"));
        window.grab().save(file);
        std::printf("%s\n", qPrintable(file));
    }

    void settings(QSize size) {
        BrowserWindow* window = open(size);
        QTest::keyClick(window, Qt::Key_Comma, Qt::ControlModifier);
        auto* sheet = window->findChild<SettingsSheet*>();
        for (int page = 0; sheet && page < sheet->pageCount(); ++page) {
            sheet->showPage(page);
            save(*window, QStringLiteral("settings-%1").arg(page));
        }
        close(window);
    }

    void sheets(QSize size) {
        const Favorite favorite = Favorites::make(Paths::documents(), "Papers");
        const struct {
            const char* name;
            WindowSheet sheet;
            const char* typed;
        } shown[] = {
            {"smartFolder",
             {WindowSheet::Which::newSmartFolder,
              {},
              "invoice pdfs from last week over 5 mb",
              SearchScopeSetting::home},
             "Big invoices"},
            {"smartFolder-taken",
             {WindowSheet::Which::newSmartFolder, {}, "images", SearchScopeSetting::home},
             "screenshots"},
            {"workspace", {WindowSheet::Which::saveWorkspace, {}}, ""},
            {"favorite",
             {WindowSheet::Which::renameFavorite, {}, {}, SearchScopeSetting::home, favorite},
             "Paperwork"},
        };
        for (const auto& one : shown) {
            BrowserWindow* window = open(size);
            window->model().showSheet(one.sheet);
            QTest::qWait(50);
            if (auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
                field && *one.typed)
                field->setText(QString::fromUtf8(one.typed));
            save(*window, QString::fromUtf8(one.name));
            close(window);
        }
    }

    AppModel& app_;
    QString out_;
    QString prefix_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: tarn-list-shots OUT\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setFont(QFont(QStringLiteral("Inter"), 10));
    Theme::install(qt);
    AppModel app;
    Shots(app, QString::fromLocal8Bit(argv[1])).takeAll();
    return 0;
}
