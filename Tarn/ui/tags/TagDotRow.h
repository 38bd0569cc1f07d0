#pragma once

#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/ui/tags/TagDots.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// Tags as large dots beside each other, to be clicked or walked with the cursor keys.
class TagDotRow final : public QWidget {
    Q_OBJECT
public:
    struct Entry {
        FinderTag tag;
        TagDots::Share share = TagDots::Share::none;
    };
    explicit TagDotRow(std::vector<Entry> entries, QWidget* parent = nullptr);

    void setEntries(std::vector<Entry> entries);
    /// The first dot begins at the edge, in line with other parts above and below, instead of
    /// leaving room as in a menu.
    void alignWithEdge();
    /// The middle of a dot.
    QPoint middle(std::size_t index) const;
    QSize sizeHint() const override;

signals:
    void chosen(const tarn::FinderTag& tag);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    int entryAt(const QPoint& point) const;
    QRect target(std::size_t index) const;
    void point(int index);
    void choose();

    std::vector<Entry> entries_;
    int margin_;
    int pointed_ = -1;
};

}  // namespace tarn
