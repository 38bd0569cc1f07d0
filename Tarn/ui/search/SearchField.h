#pragma once

#include <QtCore/QString>
#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>

class QLineEdit;
class QToolButton;

namespace tarn {

/// The field that a search is typed into. It grows while it has the keyboard or a text: while it is
/// open. Folded it is no wider than its symbol until then.
class SearchField final : public QWidget {
    Q_OBJECT
public:
    explicit SearchField(QWidget* parent = nullptr);

    QString text() const;
    /// Says textChanged() when the text is another one.
    void setText(const QString& text);
    void clear();
    void setPlaceholder(const QString& text);
    /// Gives it the keyboard with everything selected.
    void beginEditing();
    /// Gives it the keyboard behind what has been typed elsewhere.
    void continueEditing();
    void setFolded(bool folded);
    bool isOpen() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void textChanged(const QString& text);
    /// Down or Enter: the person goes on to the results.
    void downPressed();
    void openChanged();
    /// The ✕ or Escape took the text away.
    void cleared();
    /// Escape while there is no text.
    void escaped();
    /// Backspace while there is no text: the last chip is meant.
    void backspaceInEmpty();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    int wantedWidth() const;
    void placeParts();
    void grow();
    void takeAway();

    QLineEdit* edit_;
    QToolButton* clear_;
    QString placeholder_;  ///< Shown where there is the room.
    QVariantAnimation growth_;
    int width_;
    bool isFolded_ = false;
    bool wasOpen_ = false;
};

}  // namespace tarn
