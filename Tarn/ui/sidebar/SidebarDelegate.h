#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace tarn {

class Sidebar;

/// Draws headings, places, and volumes with how full they are.
class SidebarDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit SidebarDelegate(Sidebar& sidebar);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const Sidebar& sidebar_;
};

}  // namespace tarn
