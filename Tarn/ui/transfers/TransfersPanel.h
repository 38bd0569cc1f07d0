#pragma once

#include <vector>

#include <QtWidgets/QWidget>

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace tarn {

class ActivityList;
class ActivityRow;
class TransferList;
class TransferRow;

/// The list of transfers and other long jobs, floating below its button inside the window. A click
/// elsewhere or Escape closes it; what had ended has then been seen and goes.
class TransfersPanel final : public QWidget {
    Q_OBJECT
public:
    /// A child of `window`; `anchor` is the button it hangs from.
    TransfersPanel(TransferList& list, ActivityList& activities, QWidget& anchor, QWidget& window);

    void open();
    void close();
    const std::vector<TransferRow*>& rows() const { return rows_; }

signals:
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showRows();
    void showActivities();
    void place();

    TransferList& list_;
    ActivityList& activities_;
    QWidget& anchor_;
    QVBoxLayout* card_;
    QScrollArea* scroll_;
    QWidget* content_;
    QVBoxLayout* column_;
    QLabel* nothing_;
    std::vector<TransferRow*> rows_;
    std::vector<ActivityRow*> activityRows_;
};

}  // namespace tarn
