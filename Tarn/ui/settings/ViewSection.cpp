#include "Tarn/ui/settings/ViewSection.h"

#include "Tarn/model/AppModel.h"

namespace tarn {

ViewSection::ViewSection(AppModel& app, QWidget* parent) : SettingsForm(app, parent) {
    addChoice(tr("Show folders as"), &AppSettings::defaultView,
              {{tr("a grid"), static_cast<int>(ViewMode::grid)},
               {tr("a list"), static_cast<int>(ViewMode::list)}});
    addNote(tr("A folder that was changed keeps its own view."));
    addGap();
    addSwitch(tr("Folders first"), &AppSettings::foldersFirst,
              tr("Folders stand before files, whatever the order."));
    addSwitch(tr("Show how large folders are"), &AppSettings::showFolderSizes,
              tr("In the inspector, which counts all that is in them."));
    addSwitch(tr("Show hidden files in new windows"), &AppSettings::showHiddenByDefault);
    start();
}

}  // namespace tarn
