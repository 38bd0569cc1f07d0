#pragma once

#include <QtWidgets/QTextEdit>

namespace tarn {

/// A short text that can be selected, takes as many lines as it needs, and breaks long words too,
/// as paths and addresses are.
class FactText final : public QTextEdit {
    Q_OBJECT
public:
    explicit FactText(QWidget* parent = nullptr);

    void setValue(const QString& text);
    QString value() const { return value_; }
    void setFontAndAlign(const QFont& font, Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {1, sizeHint().height()}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString value_;
};

}  // namespace tarn
