#include "Tarn/ui/settings/SearchSection.h"

#include "Tarn/model/AppModel.h"

namespace tarn {

SearchSection::SearchSection(AppModel& app, QWidget* parent) : SettingsForm(app, parent) {
    addChoice(tr("A search looks in"), &AppSettings::defaultSearchScope,
              {{tr("the current folder"), static_cast<int>(SearchScopeSetting::currentFolder)},
               {tr("the home folder"), static_cast<int>(SearchScopeSetting::home)},
               {tr("the whole computer"), static_cast<int>(SearchScopeSetting::thisMac)}});
    addNote(tr("Until another place is chosen below the search field, or named in the search."));
    start();
}

}  // namespace tarn
