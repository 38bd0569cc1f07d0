#pragma once

#include <memory>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include "Tarn/model/PaneModel.h"

class QMenu;
class QToolButton;

namespace tarn {

class ChipRow;
class WindowModel;

/// What the search of a pane was understood as, and where it looks; hidden while there is none. It
/// follows one pane at a time.
class SearchRow final : public QWidget {
    Q_OBJECT
public:
    explicit SearchRow(QWidget* parent);
    ~SearchRow() override;

    /// Null lets go of the last one.
    void follow(WindowModel* tab, PaneModel* pane);
    ChipRow& chips() { return *chips_; }

private:
    void showSearch();

    QPointer<WindowModel> tab_;
    QPointer<PaneModel> pane_;
    std::unique_ptr<QObject> following_;  ///< Ends the connections to what is followed.
    ChipRow* chips_;
    QToolButton* scope_;
    QMenu* scopes_;
};

}  // namespace tarn
