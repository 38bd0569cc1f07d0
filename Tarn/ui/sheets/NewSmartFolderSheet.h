#pragma once

#include <optional>
#include <string>

#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/ViewMode.h"
#include "Tarn/ui/sheets/Sheet.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarn {

class ChipRow;
class WindowModel;

/// Asks for the name of a smart folder and what it searches for, and shows how that is understood.
/// One that is there already is changed by it.
class NewSmartFolderSheet final : public Sheet {
    Q_OBJECT
public:
    NewSmartFolderSheet(QWidget& window, WindowModel& model, const std::string& query,
                        SearchScopeSetting scope);
    NewSmartFolderSheet(QWidget& window, WindowModel& model, const SmartFolder& changed);
    /// The name, or what to search for where that is not known yet.
    QWidget* firstField() const;

private:
    NewSmartFolderSheet(QWidget& window, WindowModel& model, const SmartFolder& shown, bool isNew);
    void addRow(const QString& label, QWidget* field);
    void understand();
    void check();
    void apply();

    WindowModel& model_;
    std::optional<SmartFolder> changed_;  ///< Absent for a new one.
    QLineEdit* name_;
    QLineEdit* query_;
    ChipRow* chips_;
    QLabel* terms_;
    QComboBox* scope_;
    QLabel* note_;
    QPushButton* save_;
};

}  // namespace tarn
