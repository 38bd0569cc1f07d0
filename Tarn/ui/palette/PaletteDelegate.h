#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace tarn {

/// Draws the rows of the palette: the icon, the title with what was typed in bold, where a folder
/// is or why a command cannot be run, and the keys at the end.
class PaletteDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

}  // namespace tarn
