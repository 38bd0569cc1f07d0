#pragma once

#include <memory>
#include <vector>

#include <QtCore/QAbstractListModel>

#include "Tarn/commands/PaletteEntries.h"

namespace tarn {

/// The rows of the palette for what is typed. Main thread only.
class PaletteModel final : public QAbstractListModel {
    Q_OBJECT
public:
    PaletteModel(WindowModel& window, std::vector<PaletteEntry> actions, QObject* parent);

    void setText(const QString& text);
    const PaletteRow& row(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    bool isHeading(int row) const { return !this->row(row).entry; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    PaletteEntries entries_;
    std::vector<PaletteRow> rows_;
};

}  // namespace tarn
