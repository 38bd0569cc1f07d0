#pragma once

#include <optional>
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

    /// Who opens the folders that other programs want opened. Names as people know them.
    struct FolderProgram {
        bool isInstalled = true;  ///< The desktop knows this program at all.
        bool isOurs = false;
        std::string name;     ///< Empty where nobody does.
        std::string failure;  ///< Why it could not be changed, as a sentence.
    };
    void takeFolderProgram(const FolderProgram& program);

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
    void addFolderSwitch();
    /// Has it looked up, after a change when there is to be one.
    void askFolderProgram(std::optional<bool> makeOurs);

    QCheckBox* opensFolders_ = nullptr;
    QLabel* opensFoldersNote_ = nullptr;
    AppList terminals_;
    AppList editors_;
};

}  // namespace tarn
