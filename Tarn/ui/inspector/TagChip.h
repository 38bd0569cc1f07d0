#pragma once

#include <QtWidgets/QAbstractButton>

#include "TarnCore/tags/FinderTag.h"

class QToolButton;

namespace tarn {

/// A tag that items have: its dot, its name, and a button that takes it away. Delete and Backspace
/// do the same.
class TagChip final : public QAbstractButton {
    Q_OBJECT
public:
    /// `isShared` is false when only some of the items have it.
    TagChip(FinderTag tag, bool isShared, QWidget* parent = nullptr);

    const FinderTag& tag() const { return tag_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void removeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect textRect() const;

    FinderTag tag_;
    bool isShared_;
    QToolButton* remove_;
};

}  // namespace tarn
