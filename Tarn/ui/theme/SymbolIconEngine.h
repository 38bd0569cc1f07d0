#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>

#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/SquareIconEngine.h"

namespace tarn {

/// Draws one symbol in the colour that the palette has at the moment.
class SymbolIconEngine final : public SquareIconEngine {
public:
    SymbolIconEngine(QString name, Icons::Tint tint) : name_(std::move(name)), tint_(tint) {}

    QIconEngine* clone() const override { return new SymbolIconEngine(name_, tint_); }
    QString key() const override { return QStringLiteral("tarn.symbol"); }

    /// One symbol as a square of `side` device pixels in one colour, from the pixmap cache. Large
    /// ones are drawn with thinner lines, so that they stay calm; `scale` is the screen's ratio.
    static QPixmap render(const QString& name, int side, qreal scale, const QColor& color);

protected:
    QPixmap square(int side, qreal scale, QIcon::Mode mode) const override;

private:
    QColor color(QIcon::Mode mode) const;

    QString name_;
    Icons::Tint tint_;
};

}  // namespace tarn
