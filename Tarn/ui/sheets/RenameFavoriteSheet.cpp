#include "Tarn/ui/sheets/RenameFavoriteSheet.h"

#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Favorites.h"
#include "TarnCore/files/Paths.h"

namespace tarn {

RenameFavoriteSheet::RenameFavoriteSheet(QWidget& window, WindowModel& model, Favorite favorite)
    : NameSheet(window, {tr("Rename Favourite"), tr("Name in the sidebar"), tr("Rename")}),
      model_(model),
      favorite_(std::move(favorite)) {
    setObjectName(QStringLiteral("renameFavoriteSheet"));
    start(displayText(Favorites::title(favorite_)),
          displayText(Paths::displayName(Favorites::folder(favorite_))));
}

NameSheet::Verdict RenameFavoriteSheet::judge(const std::string& name) const {
    const URL folder = Favorites::folder(favorite_);
    const QString path = displayText(Paths::abbreviate(folder));
    return {true,
            name.empty() ? tr("The sidebar shows the folder’s own name again.")
                         : tr("%1 keeps its own name.").arg(path),
            {}};
}

void RenameFavoriteSheet::take(const std::string& name) {
    model_.app().lists().renameFavorite(favorite_.id, name);
}

}  // namespace tarn
