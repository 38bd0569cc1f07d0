#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// Which of a few pages is shown, as dots; only an ornament to a screen reader.
class PageDots final : public QWidget {
    Q_OBJECT
public:
    explicit PageDots(QWidget* parent = nullptr);
    void setPage(int page, int count);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int page_ = 0;
    int count_ = 0;
};

}  // namespace tarn
