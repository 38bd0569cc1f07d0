#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// One line of plain text that loses its middle where it does not fit, so that the end of a name
/// stays; then the whole of it is in the tooltip.
class ElidedLabel final : public QWidget {
    Q_OBJECT
public:
    explicit ElidedLabel(const QString& text = {}, QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return text_; }
    void setElideMode(Qt::TextElideMode mode);
    /// The colour of secondary text.
    void setSecondary(bool secondary);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateToolTip();

    QString text_;
    Qt::TextElideMode mode_ = Qt::ElideMiddle;
    bool isSecondary_ = false;
};

}  // namespace tarn
