#pragma once

#include <QtWidgets/QComboBox>

namespace tarn {

/// A list of which one is chosen, for pages that scroll: the wheel does not change it in passing,
/// and what does not fit is in the tooltip.
class ChoiceList final : public QComboBox {
    Q_OBJECT
public:
    explicit ChoiceList(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateToolTip();
};

}  // namespace tarn
