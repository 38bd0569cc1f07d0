#include "Tarn/ui/window/WindowChanges.h"

#include <algorithm>

#include <QtGui/QGuiApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/ConflictSheet.h"
#include "Tarn/ui/sheets/HistorySheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/transfers/TransfersButton.h"
#include "Tarn/ui/transfers/TransfersPanel.h"

namespace tarn {

WindowChanges::WindowChanges(WindowModel& model, QWidget& window, QWidget& pane,
                             TransfersButton& button)
    : QObject(&window),
      model_(model),
      window_(window),
      transfers_(model.app().transfers()),
      button_(button),
      panel_(new TransfersPanel(transfers_, model.app().activities(), button, window)),
      toast_(new ToastView(model, &pane)) {
    connect(&button, &TransfersButton::clicked, this,
            [this] { model_.setShowsTransfers(!model_.showsTransfers()); });
    connect(&model, &WindowModel::showsTransfersChanged, this, [this] {
        button_.setHeld(model_.showsTransfers());
        if (model_.showsTransfers())
            panel_->open();
        else
            panel_->close();
    });
    connect(panel_, &TransfersPanel::closed, this, [this] { model_.setShowsTransfers(false); });
    connect(&transfers_, &TransferList::transferChanged, this, &WindowChanges::ask);
    connect(&transfers_, &TransferList::listChanged, this, &WindowChanges::closeWhenIdle);
    connect(&transfers_, &TransferList::transferChanged, this, &WindowChanges::closeWhenIdle);
    connect(&model, &WindowModel::showsHistoryChanged, this, &WindowChanges::showHistory);
    // The terminal may have changed files meanwhile.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) model_.app().history().refresh();
            });
    ask();
}

bool WindowChanges::isAskedHere(const TransferModel& transfer) const {
    const auto& windows = model_.app().windows();
    const auto owner = std::find_if(
        windows.begin(), windows.end(),
        [&transfer](const WindowModel* window) { return window->id() == transfer.windowID(); });
    if (owner != windows.end()) return *owner == &model_;
    return !windows.empty() && windows.front() == &model_;
}

void WindowChanges::ask() {
    if (conflict_) return;
    for (TransferModel* transfer : transfers_.transfers()) {
        if (!transfer->conflict() || !isAskedHere(*transfer)) continue;
        conflict_ = new ConflictSheet(*transfer, window_);
        connect(conflict_, &Sheet::finished, this, [this] {
            conflict_.clear();
            ask();
        });
        conflict_->open(conflict_->preferred());
        return;
    }
}

void WindowChanges::showHistory() {
    if (!model_.showsHistory()) {
        if (history_) history_->finish();
        return;
    }
    history_ = new HistorySheet(model_, window_);
    connect(history_, &Sheet::finished, this, [this] {
        history_.clear();
        model_.setShowsHistory(false);
    });
    history_->open();
}

bool WindowChanges::mayClose() {
    if (model_.app().windows().size() > 1 || transfers_.activeCount() == 0) return true;
    if (isClosing_) return false;
    auto* question =
        new QuestionSheet({tr("Files Are Still Being Transferred"),
                           tr("Closing the last window stops it and removes what is unfinished."),
                           tr("Stop and Close"), tr("Keep Going")},
                          window_);
    connect(question, &QuestionSheet::accepted, this, [this] {
        isClosing_ = true;
        transfers_.cancelAll();
        closeWhenIdle();
    });
    question->open(question->no());
    return false;
}

void WindowChanges::closeWhenIdle() {
    if (!isClosing_ || transfers_.activeCount() > 0) return;
    isClosing_ = false;
    // Not from inside the signal of a transfer.
    QMetaObject::invokeMethod(&window_, &QWidget::close, Qt::QueuedConnection);
}

}  // namespace tarn
