#pragma once

#include <string>
#include <vector>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/ui/settings/SettingsForm.h"

namespace tarn {

/// How the program looks and begins, what Return does, and the programs that it hands files to.
class GeneralSection final : public SettingsForm {
    Q_OBJECT
public:
    explicit GeneralSection(AppModel& app, QWidget* parent = nullptr);

    /// As if these were the programs of the computer; they are looked up in the background.
    void takeApps(const std::vector<DesktopEntry>& apps);

protected:
    void showSettings() override;

private:
    struct AppList {
        QComboBox* list = nullptr;
        std::string AppSettings::*field = nullptr;
        std::vector<DesktopEntry> apps;
    };
    AppList addAppList(const QString& label, std::string AppSettings::*field);
    void fill(const AppList& apps);

    AppList terminals_;
    AppList editors_;
};

}  // namespace tarn
