#pragma once

#include "Tarn/ui/settings/SettingsForm.h"

namespace tarn {

/// Where searches look.
class SearchSection final : public SettingsForm {
    Q_OBJECT
public:
    explicit SearchSection(AppModel& app, QWidget* parent = nullptr);
};

}  // namespace tarn
