#pragma once

#include <memory>

#include <QtCore/QAbstractTableModel>

#include "TarnCore/preview/TableSheet.h"

namespace tarn {

/// A sheet as views read it: letters over the columns, numbers before the rows. Main thread only.
class PreviewTable final : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit PreviewTable(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    void show(std::shared_ptr<const TableSheet> sheet);
    const TableSheet* sheet() const { return sheet_.get(); }

    /// "A", "Z", "AA": how spreadsheets call a column, 0 being the first.
    static QString columnName(int column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const std::string* cell(const QModelIndex& index) const;

    std::shared_ptr<const TableSheet> sheet_;
    int columns_ = 0;
};

}  // namespace tarn
