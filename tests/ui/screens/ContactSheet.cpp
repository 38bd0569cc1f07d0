// All screens on one sheet, light and dark, to be looked at: tarn-contact-sheet OUT [OPTION...]
// [NAME...]. With --each there is a picture for each screen as well. Other options: --width=360,
// --height=800, --right-to-left, --long, --german, --high-contrast, --scale=2.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtGui/QFont>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "Tarn/ui/language/Language.h"
#include "Tarn/ui/theme/Theme.h"
#include "tests/ui/screens/LongTexts.h"
#include "tests/ui/screens/MoreScreens.h"
#include "tests/ui/screens/PreviewScreens.h"
#include "tests/ui/screens/Screens.h"

namespace {

using namespace tarn;

constexpr int columns = 4;
constexpr int gap = 24;      // pixels
constexpr int caption = 28;  // pixels
constexpr int thumbnail = 640;

struct Options {
    QString out;
    QStringList names;
    QSize size = {1180, 760};
    double scale = 1;
    bool isEach = false;
};

struct Shot {
    QString name;
    QImage picture;
};

std::vector<Shot> take(const Options& options) {
    std::vector<Shot> shots;
    for (const auto screens : {allScreens(), popupScreens(), previewScreens()}) {
        for (const Screen& screen : screens) {
            const QString name = QString::fromUtf8(screen.name);
            if (!options.names.isEmpty() && !options.names.contains(name)) continue;
            Stage stage(screen, options.size);
            shots.push_back({name, stage.grab(options.scale)});
            shots.back().picture.setDevicePixelRatio(1);
        }
    }
    return shots;
}

QImage sheet(const std::vector<Shot>& shots, bool isDark) {
    const int rows = (static_cast<int>(shots.size()) + columns - 1) / columns;
    const QSize full = shots.front().picture.size();
    const QSize cell(thumbnail, full.height() * thumbnail / full.width());
    QImage image(gap + columns * (cell.width() + gap), gap + rows * (cell.height() + caption + gap),
                 QImage::Format_RGB32);
    image.fill(isDark ? 0xff505050 : 0xffc8c8c8);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const int column = static_cast<int>(i) % columns;
        const int row = static_cast<int>(i) / columns;
        const QPoint corner(gap + column * (cell.width() + gap),
                            gap + row * (cell.height() + caption + gap));
        painter.drawText(QRect(corner, QSize(cell.width(), caption)), Qt::AlignVCenter,
                         shots[i].name);
        painter.drawImage(
            QRect(corner + QPoint(0, caption), cell),
            shots[i].picture.scaled(cell, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: tarn-contact-sheet OUT [OPTION...] [NAME...]\n");
        return 2;
    }
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    const bool isGerman = std::any_of(
        argv, argv + argc, [](const char* word) { return std::string_view(word) == "--german"; });
    const ScreenHome home(isGerman ? "de_DE" : "en_US");
    QApplication app(argc, argv);
    if (isGerman) Language::use(QLocale(QStringLiteral("de_DE")));
    QApplication::setFont(QFont(QStringLiteral("Inter"), 10));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0);
    Theme& theme = Theme::install(app);
    theme.setAnimations(false);
    Options options;
    options.out = QString::fromLocal8Bit(argv[1]);
    std::unique_ptr<LongTexts> longer;
    for (const QString& argument : QCoreApplication::arguments().mid(2)) {
        const QString value = argument.section(u'=', 1);
        if (argument == QStringLiteral("--each"))
            options.isEach = true;
        else if (argument == QStringLiteral("--right-to-left"))
            QApplication::setLayoutDirection(Qt::RightToLeft);
        else if (argument == QStringLiteral("--long"))
            longer = std::make_unique<LongTexts>();
        else if (argument == QStringLiteral("--german"))
            continue;
        else if (argument == QStringLiteral("--high-contrast"))
            theme.setHighContrast(true);
        else if (argument.startsWith(QStringLiteral("--width=")))
            options.size.setWidth(value.toInt());
        else if (argument.startsWith(QStringLiteral("--height=")))
            options.size.setHeight(value.toInt());
        else if (argument.startsWith(QStringLiteral("--scale=")))
            options.scale = value.toDouble();
        else
            options.names << argument;
    }
    const QDir out(options.out);
    out.mkpath(QStringLiteral("."));
    for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
        theme.setMode(mode);
        const QString suffix =
            theme.isDark() ? QStringLiteral("-dark.png") : QStringLiteral("-light.png");
        const std::vector<Shot> shots = take(options);
        if (shots.empty()) return std::fprintf(stderr, "no such screen\n"), 1;
        if (options.isEach)
            for (const Shot& shot : shots) shot.picture.save(out.filePath(shot.name + suffix));
        sheet(shots, theme.isDark()).save(out.filePath(QStringLiteral("sheet") + suffix));
    }
    return 0;
}
