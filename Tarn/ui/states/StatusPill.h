#pragma once

#include <QtCore/QString>
#include <QtWidgets/QWidget>

namespace tarn {

/// A short line that floats at the bottom of its parent, only while it has something to say.
/// Clicks go through it.
class StatusPill final : public QWidget {
    Q_OBJECT
public:
    explicit StatusPill(QWidget* parent);

    /// Empty hides it.
    void setText(const QString& text);
    QString text() const { return text_; }
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void place();

    QString text_;
};

}  // namespace tarn
