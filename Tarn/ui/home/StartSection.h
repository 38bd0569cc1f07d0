#pragma once

#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/model/StartPlaces.h"

class QLabel;

namespace tarn {

class StartTile;

/// A heading of the start screen with the tiles below it, in as many columns as have room. Hidden
/// while it has no places.
class StartSection final : public QWidget {
    Q_OBJECT
public:
    StartSection(const QString& title, QWidget* parent);

    void setPlaces(const std::vector<StartPlace>& places);
    const std::vector<StartTile*>& tiles() const { return tiles_; }

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void tileAdded(tarn::StartTile* tile);
    void chosen(const tarn::StartPlace& place);
    void chosenAside(const tarn::StartPlace& place);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int tileHeight() const;
    void place();

    QLabel* title_;
    std::vector<StartTile*> tiles_;
};

}  // namespace tarn
