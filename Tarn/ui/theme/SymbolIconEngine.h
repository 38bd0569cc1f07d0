#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QIconEngine>
#include <QtGui/QPixmap>

#include "Tarn/ui/theme/Icons.h"

namespace tarn {

/// Draws one symbol in the colour that the palette has at the moment.
class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(QString name, Icons::Tint tint) : name_(std::move(name)), tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QIconEngine* clone() const override { return new SymbolIconEngine(name_, tint_); }
    QString key() const override { return QStringLiteral("tarn.symbol"); }

    /// One symbol as a square of `side` device pixels in one colour, from the pixmap cache. Large
    /// ones are drawn with thinner lines, so that they stay calm; `scale` is the screen's ratio.
    static QPixmap render(const QString& name, int side, qreal scale, const QColor& color);

    /// Device pixels per unit of the painter. The ratio of its device is not enough: a widget that
    /// is drawn into a picture reports its own screen's.
    static qreal deviceScale(const QPainter& painter);

private:
    QColor color(QIcon::Mode mode) const;

    QString name_;
    Icons::Tint tint_;
};

}  // namespace tarn
