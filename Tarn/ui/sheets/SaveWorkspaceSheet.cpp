#include "Tarn/ui/sheets/SaveWorkspaceSheet.h"

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"

namespace tarn {

SaveWorkspaceSheet::SaveWorkspaceSheet(QWidget& window, WindowModel& model)
    : NameSheet(window, {tr("Save Workspace"), tr("Name of the workspace"), tr("Save")}),
      model_(model) {
    setObjectName(QStringLiteral("saveWorkspaceSheet"));
    start({}, tr("Name"));
}

std::vector<WindowSnapshot> SaveWorkspaceSheet::tabs() const {
    if (const TabGroup* group = model_.group()) return group->snapshots();
    return {model_.snapshot()};
}

NameSheet::Verdict SaveWorkspaceSheet::judge(const std::string& name) const {
    const auto count = static_cast<int>(tabs().size());
    const QString kept =
        count == 1 ? tr("The tab of this window is kept under this name.")
                   : tr("The %1 tabs of this window are kept under this name.").arg(count);
    if (name.empty()) return {false, kept, {}};
    if (const Workspace* present = model_.app().lists().workspaceNamed(name))
        return {true, tr("Takes the place of “%1”.").arg(displayText(present->name)),
                tr("Replace")};
    return {true, kept, {}};
}

void SaveWorkspaceSheet::take(const std::string& name) {
    model_.app().lists().saveWorkspace(name, tabs());
}

}  // namespace tarn
