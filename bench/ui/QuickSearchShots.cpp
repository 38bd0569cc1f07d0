// Pictures of the quick search and of its settings, for looking at: tarn-quick-search-shots OUT.
#include <cstdio>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/QuickSearchPanel.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/theme/Theme.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

using namespace tarn;

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 2) return std::puts("tarn-quick-search-shots OUT"), 2;
    Theme::install(qt);
    const QString out = QString::fromUtf8(argv[1]);
    QDir().mkpath(out);
    AppModel app;
    QuickSearch search(app, QDBusConnection(QString()), nullptr);
    for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
        Theme::shared().setMode(mode);
        const QString look =
            mode == Theme::Mode::dark ? QStringLiteral("dark") : QStringLiteral("light");
        const struct {
            const char* name;
            const char* typed;
        } searches[] = {{"empty", ""},
                        {"results", "report"},
                        {"chips", "pdfs from this year over 1 kb"},
                        {"nothing", "qqqqqqqq"}};
        for (const auto& one : searches) {
            search.open();
            QuickSearchPanel& panel = *search.panel();
            (void)QTest::qWaitForWindowActive(&panel);
            QTest::keyClicks(panel.findChild<QLineEdit*>(), QString::fromUtf8(one.typed));
            (void)QTest::qWaitFor([&] {
                return !*one.typed || (panel.pane().showsResults() && !panel.pane().isSearching());
            });
            QTest::qWait(100);
            // The ground that a desktop puts behind it.
            QImage picture(panel.size() + QSize(40, 40), QImage::Format_RGB32);
            picture.fill(mode == Theme::Mode::dark ? QColor(40, 60, 80) : QColor(150, 180, 210));
            panel.render(&picture, QPoint(20, 20), QRegion(), QWidget::DrawChildren);
            picture.save(
                QStringLiteral("%1/quick-%2-%3.png").arg(out, QString::fromUtf8(one.name), look));
            panel.close();
            (void)QTest::qWaitFor([&] { return !search.panel(); });
        }
        for (const QSize size : {QSize(1000, 700), QSize(480, 600)}) {
            QWidget window;
            window.resize(size);
            WindowModel model(app, Location::folder(Paths::home()));
            window.show();
            (void)QTest::qWaitForWindowActive(&window);
            auto* sheet = new SettingsSheet(model, window);
            sheet->open();
            sheet->showPage(2);
            QTest::qWait(200);
            window.grab().save(
                QStringLiteral("%1/settings-%2-%3.png").arg(out, look).arg(size.width()));
        }
    }
    return 0;
}
