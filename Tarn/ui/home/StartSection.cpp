#include "Tarn/ui/home/StartSection.h"

#include <algorithm>

#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>

#include "Tarn/ui/home/StartTile.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int gap = Metrics::space8;

/// All sections share one grid, also those with a tile or two.
int columnsIn(int width) { return std::max(1, (width + gap) / (Metrics::startTileWidth + gap)); }

}  // namespace

StartSection::StartSection(const QString& title, QWidget* parent)
    : QWidget(parent), title_(new QLabel(title, this)) {
    setAccessibleName(title);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    title_->setFont(Fonts::semibold(Fonts::body()));
    title_->setTextFormat(Qt::PlainText);
    hide();
}

void StartSection::setPlaces(const std::vector<StartPlace>& places) {
    while (tiles_.size() > places.size()) {
        // A click may have led here.
        tiles_.back()->hide();
        tiles_.back()->deleteLater();
        tiles_.pop_back();
    }
    while (tiles_.size() < places.size()) {
        auto* tile = new StartTile(this);
        connect(tile, &StartTile::clicked, this,
                [this, tile] { emit chosen(StartPlace(tile->place())); });
        connect(tile, &StartTile::openedAside, this,
                [this, tile] { emit chosenAside(StartPlace(tile->place())); });
        tile->show();
        tiles_.push_back(tile);
        emit tileAdded(tile);
    }
    for (std::size_t i = 0; i < places.size(); ++i) tiles_[i]->setPlace(places[i]);
    setVisible(!places.empty());
    updateGeometry();
    place();
}

int StartSection::tileHeight() const {
    int height = 0;
    for (const StartTile* tile : tiles_) height = std::max(height, tile->sizeHint().height());
    return height;
}

int StartSection::heightForWidth(int width) const {
    const int perRow = columnsIn(width);
    const int rows = (static_cast<int>(tiles_.size()) + perRow - 1) / perRow;
    return title_->sizeHint().height() + Metrics::space8 + rows * tileHeight() +
           std::max(0, rows - 1) * gap;
}

QSize StartSection::sizeHint() const {
    return {Metrics::startWidth, heightForWidth(width() > 0 ? width() : Metrics::startWidth)};
}

QSize StartSection::minimumSizeHint() const { return {1, 1}; }

void StartSection::resizeEvent(QResizeEvent*) { place(); }

void StartSection::place() {
    const int heading = title_->sizeHint().height();
    title_->setGeometry(0, 0, width(), heading);
    if (tiles_.empty()) return;
    const int perRow = columnsIn(width());
    const int tileWidth = (width() - (perRow - 1) * gap) / perRow;
    const int height = tileHeight();
    for (std::size_t i = 0; i < tiles_.size(); ++i) {
        const int row = static_cast<int>(i) / perRow;
        const int column = static_cast<int>(i) % perRow;
        const QRect logical(column * (tileWidth + gap),
                            heading + Metrics::space8 + row * (height + gap), tileWidth, height);
        tiles_[i]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), logical));
    }
}

}  // namespace tarn
