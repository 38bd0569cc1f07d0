#include "Tarn/ui/menus/OpenWithMenu.h"

#include <QtGui/QIcon>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/FileOpener.h"
#include "Tarn/ui/sheets/OpenWithSheet.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Icons.h"

namespace tarn {
namespace {

/// More than anyone reads in a menu; the others are behind “Other Application…”.
constexpr std::size_t mostPrograms = 12;

}  // namespace

OpenWithMenu::OpenWithMenu(WindowModel& window, std::vector<URL> files, QWidget& host,
                           QWidget* parent)
    : QMenu(parent), window_(&window), files_(std::move(files)), host_(&host) {
    setObjectName(QStringLiteral("openWith"));
    setTitle(tr("Open With"));
    setIcon(Icons::symbol("arrow.up.forward.app"));
    addAction(tr("Looking for Programs…"))->setEnabled(false);
    window.app().pool().run([self = QPointer<OpenWithMenu>(this), wanted = files_] {
        MainThread::post(self, [programs = FileOpener::programs(wanted)](OpenWithMenu& menu) {
            menu.take(programs);
        });
    });
}

void OpenWithMenu::add(const DesktopEntry& program, bool isDefault) {
    QString title = plainTitle(displayText(program.name));
    if (isDefault) title = tr("%1 (default)").arg(title);
    const QIcon own =
        program.icon.empty() ? QIcon() : QIcon::fromTheme(QString::fromStdString(program.icon));
    addAction(own.isNull() ? Icons::symbol("app") : own, title, this, [this, program] {
        if (window_) FileOpener::openWith(*window_, files_, program);
    });
}

void OpenWithMenu::take(const std::vector<DesktopEntry>& programs) {
    clear();
    for (std::size_t i = 0; i < programs.size() && i < mostPrograms; ++i) {
        add(programs[i], i == 0);
        if (i == 0) addSeparator();
    }
    if (programs.empty())
        addAction(tr("No program is known for this kind of file."))->setEnabled(false);
    addSeparator();
    addAction(Icons::symbol("magnifyingglass"), tr("Other Application…"), this, [this] {
        if (!window_ || !host_) return;
        // Once the menu is gone, which holds the keyboard until then.
        MainThread::post(window_, [files = files_, host = host_](WindowModel& window) {
            if (!host) return;
            auto* sheet = new OpenWithSheet(window, files, *host);
            sheet->open(sheet->firstField());
        });
    });
}

}  // namespace tarn
