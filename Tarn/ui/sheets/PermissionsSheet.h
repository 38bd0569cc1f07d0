#pragma once

#include <array>
#include <vector>

#include "Tarn/model/ItemPermissions.h"
#include "Tarn/ui/sheets/Sheet.h"
#include "TarnCore/ops/Permissions.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;

namespace tarn {

class ElidedLabel;
class WindowModel;
class WrappingCheckBox;

/// Shows what the owner, the group and all others may do with some items, and changes it. Where the
/// items differ, they keep what they have until a box is clicked.
class PermissionsSheet final : public Sheet {
    Q_OBJECT
public:
    PermissionsSheet(QWidget& window, WindowModel& model, std::vector<URL> urls);
    QWidget* firstField() const;

    /// As if this had been read from the disk.
    void show(const ItemPermissions& found);

private:
    struct Row {
        ElidedLabel* name;
        std::array<QCheckBox*, 3> boxes;  ///< Read, write, run.
    };
    Row makeRow(QGridLayout& grid, int line, const QString& who);
    void nameColumns();
    PermissionChange wanted() const;
    void update();
    void apply();

    WindowModel& model_;
    std::vector<URL> urls_;
    ItemPermissions found_;
    std::array<QLabel*, 3> columns_{};
    std::array<Row, 3> rows_{};  ///< Owner, group, others.
    WrappingCheckBox* deep_;
    QLabel* note_;
    QLabel* bits_;
    QPushButton* cancel_;
    QPushButton* apply_;
};

}  // namespace tarn
