#pragma once

#include <memory>
#include <vector>

#include <QtWidgets/QLayout>

namespace tarn {

/// Puts its items side by side and begins a new line where one is full.
class FlowLayout final : public QLayout {
    Q_OBJECT
public:
    explicit FlowLayout(QWidget* parent, int gap);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// The height that `rect`'s width needs; moves the items when `place`.
    int arrange(const QRect& rect, bool place) const;

    int gap_;
    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace tarn
