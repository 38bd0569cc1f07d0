#pragma once

#include "Tarn/model/records/Workspace.h"
#include "Tarn/ui/sheets/NameSheet.h"

namespace tarn {

class UserLists;

/// Asks what a workspace is to be called from now on.
class RenameWorkspaceSheet final : public NameSheet {
    Q_OBJECT
public:
    RenameWorkspaceSheet(QWidget& window, UserLists& lists, Workspace workspace);

protected:
    Verdict judge(const std::string& name) const override;
    void take(const std::string& name) override;

private:
    UserLists& lists_;
    Workspace workspace_;
};

}  // namespace tarn
