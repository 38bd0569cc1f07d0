#pragma once

#include "Tarn/ui/settings/SettingsForm.h"

namespace tarn {

/// How folders are shown that have no view of their own, and where searches look.
class ViewSection final : public SettingsForm {
    Q_OBJECT
public:
    explicit ViewSection(AppModel& app, QWidget* parent = nullptr);
};

}  // namespace tarn
