#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// Grey outlines of rows to come, shown while a folder is being read.
class SkeletonRows final : public QWidget {
    Q_OBJECT
public:
    explicit SkeletonRows(QWidget* parent = nullptr);

    /// Logical pixels; Metrics::rowDefault at first.
    void setRowHeight(int height);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int rowHeight_;
};

}  // namespace tarn
