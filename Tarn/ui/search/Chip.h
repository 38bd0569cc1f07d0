#pragma once

#include <QtWidgets/QAbstractButton>

#include "TarnCore/search/SearchQuery.h"

class QToolButton;

namespace tarn {

/// One understood part of a search, with a button that takes it away. Neutral until the pointer
/// or the keyboard is on it; Delete and Backspace remove it.
class Chip final : public QAbstractButton {
    Q_OBJECT
public:
    explicit Chip(SearchChip chip, QWidget* parent = nullptr);

    void setChip(SearchChip chip);
    const SearchChip& chip() const { return chip_; }
    /// It only tells: it cannot be removed and takes no keyboard.
    void setReadOnly(bool isReadOnly);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void removeRequested();
    /// An arrow key: -1 to the chip before this, 1 to the next.
    void stepRequested(int step);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QRect textRect() const;
    int afterText() const;
    void placeClose();

    SearchChip chip_;
    QToolButton* close_;
    bool isReadOnly_ = false;
};

}  // namespace tarn
