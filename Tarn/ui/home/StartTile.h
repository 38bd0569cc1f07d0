#pragma once

#include <QtGui/QIcon>
#include <QtWidgets/QAbstractButton>

#include "Tarn/model/StartPlaces.h"

namespace tarn {

/// One place of the start screen: its icon, its name and a second line; for a volume, how full it
/// is.
class StartTile final : public QAbstractButton {
    Q_OBJECT
public:
    explicit StartTile(QWidget* parent);

    void setPlace(const StartPlace& place);
    const StartPlace& place() const { return place_; }

    QSize sizeHint() const override;

signals:
    /// The middle button, or Ctrl with the left one: in a tab of its own.
    void openedAside();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    StartPlace place_;
    QIcon icon_;
};

}  // namespace tarn
