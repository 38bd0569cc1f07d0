#pragma once

#include <vector>

#include "Tarn/ui/sheets/Sheet.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace tarn {

class HistoryRow;
class WindowModel;

/// The changes of the last days, newest first, each of which can be taken back by itself while its
/// files are where it left them.
class HistorySheet final : public Sheet {
    Q_OBJECT
public:
    HistorySheet(WindowModel& model, QWidget& window);

    const std::vector<HistoryRow*>& rows() const { return rows_; }
    bool isLoaded() const { return isLoaded_; }

private:
    void load();

    WindowModel& model_;
    QScrollArea* scroll_;
    QVBoxLayout* list_;
    QLabel* nothing_;
    QPushButton* done_;
    std::vector<HistoryRow*> rows_;
    bool isLoaded_ = false;
};

}  // namespace tarn
