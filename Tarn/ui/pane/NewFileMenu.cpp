#include "Tarn/ui/pane/NewFileMenu.h"

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Icons.h"

namespace tarn {

NewFileMenu::NewFileMenu(WindowModel& window, QWidget* parent) : QMenu(parent), window_(&window) {
    setTitle(tr("New File"));
    setIcon(Icons::symbol("doc.badge.plus"));
    setToolTipsVisible(true);
    fill({});
    connect(this, &QMenu::aboutToShow, this, &NewFileMenu::look);
}

void NewFileMenu::follow(WindowModel& window) { window_ = &window; }

void NewFileMenu::look() {
    if (!window_) return;
    menuAction()->setEnabled(window_->active().location().isFolder());
    window_->app().pool().run([self = QPointer<NewFileMenu>(this)] {
        MainThread::post(self, [own = Templates::user()](NewFileMenu& menu) { menu.fill(own); });
    });
}

void NewFileMenu::addFile(const FileTemplate& file) {
    // The user's own are called as their files are.
    const QString title = file.sourceURL ? displayText(file.title) : coreText(file.title);
    addAction(Icons::symbol(file.symbol), plainTitle(title), this,
              [this, file] { window_->edits().newFile(file); });
}

void NewFileMenu::fill(const std::vector<FileTemplate>& own) {
    clear();
    for (const FileTemplate& file : Templates::builtIn()) addFile(file);
    if (!own.empty()) addSeparator();
    for (const FileTemplate& file : own) addFile(file);
    addSeparator();
    addAction(Icons::symbol("folder"), tr("Open Templates Folder…"), this,
              [this] { window_->edits().openTemplatesFolder(); });
    QAction* hint = addAction(tr("Drop any file into the Templates folder to add it to New File."));
    hint->setEnabled(false);
}

}  // namespace tarn
