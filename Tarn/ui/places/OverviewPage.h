#pragma once

#include <QtWidgets/QListView>

#include "Tarn/model/PlaceOverview.h"

namespace tarn {

/// The tags, or the sources, as a list of places to go to: each with its dot or symbol, its name
/// and how much there is of it.
class OverviewPage final : public QListView {
    Q_OBJECT
public:
    /// `overview` outlives the page.
    OverviewPage(PlaceOverview& overview, QWidget* parent = nullptr);

    /// There is nothing to show yet.
    bool isWaiting() const { return overview_.isLoading() && overview_.rowCount() == 0; }
    /// Puts the keyboard on a row.
    void enter();

signals:
    void chosen(const tarn::Location& place);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(const QModelIndex& index);

    PlaceOverview& overview_;
    QPersistentModelIndex pressed_;
};

}  // namespace tarn
