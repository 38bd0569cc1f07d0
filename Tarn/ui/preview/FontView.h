#pragma once

#include <map>
#include <optional>
#include <vector>

#include <QtGui/QImage>
#include <QtWidgets/QAbstractScrollArea>

#include "TarnCore/platform/FontDrawing.h"

namespace tarn {

/// The samples and the characters of a font, drawn by whoever answers `wanted`. Main thread only.
class FontView final : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit FontView(bool isSmall, QWidget* parent = nullptr);

    /// `sample` is the sentence of the lines.
    void showFont(const FontFacts& facts, const QString& sample);
    void clear();

    /// Something to be drawn: a line of the sample, or rows of characters.
    struct Wish {
        bool isLine = false;
        int index = 0;   ///< Of the line, or of the block of rows.
        int width = 0;   ///< Device pixels of a line; columns of a block.
        int height = 0;  ///< Device pixels of the letters, or of a cell.
        QString text;
    };
    std::optional<Wish> wish() const;
    /// `mask` may be null: then it stays empty and is not asked for again.
    void setPicture(const Wish& wish, const QImage& mask);
    /// Of the samples, from smallest to largest, in logical pixels.
    std::vector<int> sizes() const;

signals:
    void wanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool viewportEvent(QEvent* event) override;

private:
    struct Drawn {
        QImage mask;
        int width = 0;
        qreal ratio = 1;
    };
    QSize room() const;
    int columns() const;
    int linesHeight() const;
    int rowCount() const;
    int blockHeight() const;
    QString charactersOf(int block) const;
    std::pair<int, int> seenBlocks() const;  ///< First and behind the last.
    void layOut();
    void paintGrid(QPainter& painter);

    bool isSmall_;
    FontFacts facts_;
    QString sample_;
    std::map<int, Drawn> lines_;
    std::map<int, Drawn> blocks_;
};

}  // namespace tarn
