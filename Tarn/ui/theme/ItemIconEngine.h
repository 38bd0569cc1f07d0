#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QIconEngine>
#include <QtGui/QPixmap>

namespace tarn {

/// A shape that says "folder", "document", "archive" or "program", with a symbol on it that says
/// which. Symbols stand on their shape in one colour.
class ItemIconEngine final : public QIconEngine {
public:
    enum class Shape { folder, page, box, tile };
    struct Design {
        Shape shape = Shape::page;
        QString symbol;  ///< Empty for none.
        QColor color;    ///< Of the symbol, or of a tile's ground.
        bool operator==(const Design&) const = default;
    };

    explicit ItemIconEngine(Design design) : design_(std::move(design)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QIconEngine* clone() const override { return new ItemIconEngine(design_); }
    QString key() const override { return QStringLiteral("tarn.item"); }

private:
    Design design_;
};

}  // namespace tarn
