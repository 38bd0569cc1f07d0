#pragma once

#include <QtWidgets/QWidget>

#include "Tarn/model/HistoryModel.h"

class QPushButton;

namespace tarn {

/// One change of the past, and the button that takes it back.
class HistoryRow final : public QWidget {
    Q_OBJECT
public:
    explicit HistoryRow(const HistoryModel::Row& row, QWidget* parent = nullptr);

    const UUID& id() const { return id_; }
    QPushButton* undo() const { return undo_; }

signals:
    void undoRequested(const tarn::UUID& id);

private:
    UUID id_;
    QPushButton* undo_;
};

}  // namespace tarn
