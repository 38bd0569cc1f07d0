#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace tarn {

class Sidebar;

/// Draws headings, places, volumes with how full they are, and the Trash as a card.
class SidebarDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit SidebarDelegate(Sidebar& sidebar);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintHeading(QPainter& painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const;
    void paintPlace(QPainter& painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;
    void paintTrash(QPainter& painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;

    const Sidebar& sidebar_;
};

}  // namespace tarn
