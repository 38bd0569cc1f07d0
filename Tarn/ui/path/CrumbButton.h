#pragma once

#include <string_view>

#include <QtWidgets/QAbstractButton>

namespace tarn {

/// One folder on the way, with the mark that leads to the next.
class CrumbButton final : public QAbstractButton {
    Q_OBJECT
public:
    /// `symbol` may be empty.
    CrumbButton(const QString& text, std::string_view symbol, QWidget* parent);

    /// The last crumb is where one is: it stands out and leads nowhere.
    void setLast(bool last);
    QSize sizeHint() const override;
    /// Enough for a few letters and the dots.
    int shortestWidth() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int textLeft() const;
    int markWidth() const;

    bool last_ = false;
};

}  // namespace tarn
