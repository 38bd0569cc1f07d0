#include "Tarn/model/PreviewTable.h"

#include <algorithm>
#include <utility>

#include <QtCore/QLocale>

namespace tarn {
namespace {

/// What stands at the right edge of its column: figures, with the marks that belong to them.
bool isNumber(const std::string& text) {
    bool hasFigure = false;
    for (const char c : text) {
        const bool isFigure = c >= '0' && c <= '9';
        hasFigure |= isFigure;
        if (!isFigure && std::string_view("+-.,% eE").find(c) == std::string_view::npos)
            return false;
    }
    return hasFigure;
}

}  // namespace

void PreviewTable::show(std::shared_ptr<const TableSheet> sheet) {
    beginResetModel();
    sheet_ = std::move(sheet);
    std::size_t columns = 0;
    if (sheet_)
        for (const auto& row : sheet_->rows) columns = std::max(columns, row.size());
    columns_ = static_cast<int>(columns);
    endResetModel();
}

QString PreviewTable::columnName(int column) {
    QString name;
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / 26)
        name.prepend(QChar(u'A' + (rest - 1) % 26));
    return name;
}

int PreviewTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !sheet_ ? 0 : static_cast<int>(sheet_->rows.size());
}

int PreviewTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

const std::string* PreviewTable::cell(const QModelIndex& index) const {
    const auto& row = sheet_->rows[static_cast<std::size_t>(index.row())];
    const auto column = static_cast<std::size_t>(index.column());
    return column < row.size() ? &row[column] : nullptr;
}

QVariant PreviewTable::data(const QModelIndex& index, int role) const {
    const std::string* text = sheet_ ? cell(index) : nullptr;
    if (!text) return {};
    switch (role) {
        case Qt::DisplayRole:
            // One line of each cell; the tooltip has the rest.
            return QString::fromStdString(*text).replace(u'\n', QChar(0x21B5));
        case Qt::ToolTipRole:
            return QString::fromStdString(*text).toHtmlEscaped();
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(Qt::AlignVCenter |
                                       (isNumber(*text) ? Qt::AlignRight : Qt::AlignLeading));
        default:
            return {};
    }
}

QVariant PreviewTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    return orientation == Qt::Horizontal ? columnName(section) : QLocale().toString(section + 1);
}

}  // namespace tarn
