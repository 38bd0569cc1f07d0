#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace tarn {

class PaneModel;

/// A result of the quick search: its icon and name, below them where it is or the line that was
/// found in it, and when it was changed.
class QuickSearchDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    /// `pane` outlives it.
    explicit QuickSearchDelegate(PaneModel& pane, QObject* parent = nullptr);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    PaneModel& pane_;
};

}  // namespace tarn
