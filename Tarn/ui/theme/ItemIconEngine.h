#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>

#include "Tarn/ui/theme/SquareIconEngine.h"

namespace tarn {

/// A shape that says "folder", "document", "archive" or "program", with a symbol on it that says
/// which. Symbols stand on their shape in one colour.
class ItemIconEngine final : public SquareIconEngine {
public:
    enum class Shape { folder, page, box, tile };
    struct Design {
        Shape shape = Shape::page;
        QString symbol;  ///< Empty for none.
        QColor color;    ///< Of the symbol, or of a tile's ground.
        bool operator==(const Design&) const = default;
    };

    explicit ItemIconEngine(Design design) : design_(std::move(design)) {}

    QIconEngine* clone() const override { return new ItemIconEngine(design_); }
    QString key() const override { return QStringLiteral("tarn.item"); }

protected:
    QPixmap square(int side, qreal scale, QIcon::Mode mode) const override;

private:
    Design design_;
};

}  // namespace tarn
