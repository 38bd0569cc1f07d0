#pragma once

#include "Tarn/model/records/SessionState.h"
#include "Tarn/ui/sheets/NameSheet.h"

namespace tarn {

class WindowModel;

/// Asks for the name under which the tabs of a window are kept.
class SaveWorkspaceSheet final : public NameSheet {
    Q_OBJECT
public:
    SaveWorkspaceSheet(QWidget& window, WindowModel& model);

protected:
    Verdict judge(const std::string& name) const override;
    void take(const std::string& name) override;

private:
    std::vector<WindowSnapshot> tabs() const;

    WindowModel& model_;
};

}  // namespace tarn
