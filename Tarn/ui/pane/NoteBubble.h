#pragma once

#include <QtWidgets/QWidget>

namespace tarn {

/// A sentence beside a field that says what is wrong with it. Below the field, or above it where
/// there is no room.
class NoteBubble final : public QWidget {
    Q_OBJECT
public:
    explicit NoteBubble(QWidget* parent);

    /// An empty text hides the note.
    void setText(const QString& text);
    const QString& text() const { return text_; }
    /// Stands at a rectangle of the parent.
    void pointAt(const QRect& field);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

}  // namespace tarn
