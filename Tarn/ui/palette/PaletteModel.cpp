#include "Tarn/ui/palette/PaletteModel.h"

#include <utility>

#include "Tarn/ui/menus/KeyText.h"

namespace tarn {

PaletteModel::PaletteModel(WindowModel& window, std::vector<PaletteEntry> actions, QObject* parent)
    : QAbstractListModel(parent), entries_(window, std::move(actions)) {
    setText({});
}

void PaletteModel::setText(const QString& text) {
    beginResetModel();
    rows_ = entries_.matching(text.toStdString());
    endResetModel();
}

int PaletteModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant PaletteModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const PaletteRow& row = this->row(index.row());
    if (role == Qt::DisplayRole) return row.entry ? row.entry->title : row.heading;
    if (role == Qt::ToolTipRole && row.entry) return row.entry->detail;
    if (role != Qt::AccessibleTextRole) return {};
    if (!row.entry) return row.heading;
    QString spoken = row.entry->title;
    if (!row.entry->keys.empty()) spoken += QStringLiteral(", ") + KeyText::shown(row.entry->keys);
    if (!row.entry->detail.isEmpty()) spoken += QStringLiteral(", ") + row.entry->detail;
    return spoken;
}

Qt::ItemFlags PaletteModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || isHeading(index.row())) return Qt::ItemNeverHasChildren;
    // One that cannot be run can still be walked to, so that one can read why.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

}  // namespace tarn
