#pragma once

#include <memory>
#include <vector>

#include "Tarn/ui/preview/Preview.h"
#include "TarnCore/preview/TableSheet.h"

class QLabel;
class QTabBar;
class QTableView;

namespace tarn {

class PreviewReader;
class PreviewTable;

/// A spreadsheet, or values in lines of text, as a table. Workbooks are read by `tarn-extract`, a
/// sheet when it is first looked at.
class TablePreview final : public Preview {
    Q_OBJECT
public:
    explicit TablePreview(PreviewPlace place, QWidget* parent = nullptr);
    ~TablePreview() override;

    QString fact() const override;
    const PreviewTable& table() const { return *table_; }
    QTabBar& tabs() { return *tabs_; }

protected:
    void load() override;
    void clear() override;

private:
    using Sheet = std::shared_ptr<const TableSheet>;

    void readText();
    void readSheet(int sheet);
    void showSheet(int number, Sheet sheet);
    void fitColumns();

    PreviewTable* table_;
    QTableView* view_;
    QTabBar* tabs_;
    QLabel* note_;
    std::unique_ptr<PreviewReader> reader_;
    std::vector<Sheet> sheets_;  ///< Null where not read yet.
    bool isReady_ = false;
};

}  // namespace tarn
