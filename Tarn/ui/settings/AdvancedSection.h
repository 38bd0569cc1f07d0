#pragma once

#include "Tarn/ui/settings/SettingsForm.h"

class QPushButton;

namespace tarn {

class QuestionSheet;

/// Where settings are kept, and going back to the defaults.
class AdvancedSection final : public SettingsForm {
    Q_OBJECT
public:
    /// Questions are put over `window`.
    AdvancedSection(AppModel& app, QWidget& window, QWidget* parent = nullptr);

signals:
    /// The folder of the stores is to be shown.
    void folderRequested();

private:
    void reset();

    QWidget& window_;
    QPushButton* reset_;
};

}  // namespace tarn
