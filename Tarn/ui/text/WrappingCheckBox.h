#pragma once

#include <QtWidgets/QCheckBox>

namespace tarn {

/// A check box whose text goes on in further lines where one has no room for it.
class WrappingCheckBox final : public QCheckBox {
    Q_OBJECT
public:
    explicit WrappingCheckBox(const QString& text, QWidget* parent = nullptr);

    /// From the edge to the text, where lines below it that belong to it begin too.
    int textLeft() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& point) const override;

private:
    QStyleOptionButton option() const;
    QRect textRect(int width) const;
};

}  // namespace tarn
