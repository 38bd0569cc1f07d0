#include "Tarn/ui/sheets/RenameWorkspaceSheet.h"

#include <utility>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/records/ListError.h"
#include "Tarn/model/records/Workspaces.h"

namespace tarn {

RenameWorkspaceSheet::RenameWorkspaceSheet(QWidget& window, UserLists& lists, Workspace workspace)
    : NameSheet(window, {tr("Rename Workspace"), tr("Name of the workspace"), tr("Rename")}),
      lists_(lists),
      workspace_(std::move(workspace)) {
    setObjectName(QStringLiteral("renameWorkspaceSheet"));
    start(displayText(workspace_.name), tr("Name"));
}

NameSheet::Verdict RenameWorkspaceSheet::judge(const std::string& name) const {
    if (name.empty()) return {};
    try {
        Workspaces::requireName(lists_.workspaces(), name, workspace_.id);
        return {true, {}, {}};
    } catch (const ListError& error) {
        return {false, coreSentence(error.what()), {}};
    }
}

void RenameWorkspaceSheet::take(const std::string& name) {
    lists_.renameWorkspace(workspace_.id, name);
}

}  // namespace tarn
