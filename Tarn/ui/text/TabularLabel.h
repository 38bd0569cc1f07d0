#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// One line of small secondary text whose digits are equally wide, so that numbers that change do
/// not push each other about. Cut off at its end where it does not fit; then the tooltip has it.
class TabularLabel final : public QWidget {
    Q_OBJECT
public:
    explicit TabularLabel(QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return text_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateToolTip();

    QString text_;
};

}  // namespace tarn
