#pragma once

#include <QtCore/QString>

#include "Tarn/ui/theme/SquareIconEngine.h"

namespace tarn {

/// Draws a picture of our set in its own colours.
class PictureIconEngine final : public SquareIconEngine {
public:
    explicit PictureIconEngine(QString name) : name_(std::move(name)) {}

    QIconEngine* clone() const override { return new PictureIconEngine(name_); }
    QString key() const override { return QStringLiteral("tarn.picture"); }

protected:
    QPixmap square(int side, qreal scale, QIcon::Mode mode) const override;

private:
    QString name_;
};

}  // namespace tarn
