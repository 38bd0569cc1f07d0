#include "Tarn/ui/window/WindowChanges.h"

#include <algorithm>
#include <utility>

#include <QtGui/QGuiApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/ConflictSheet.h"
#include "Tarn/ui/sheets/HistorySheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/transfers/TransfersButton.h"
#include "Tarn/ui/transfers/TransfersPanel.h"
#include "Tarn/ui/window/BrowserWindow.h"

namespace tarn {

WindowChanges::WindowChanges(WindowModel& model, QWidget& window, QWidget& pane,
                             TransfersButton& button)
    : QObject(&window),
      model_(model),
      window_(window),
      transfers_(model.app().transfers()),
      button_(button),
      panel_(new TransfersPanel(transfers_, model.app().activities(), button, window)),
      toast_(new ToastView(model, window, pane)) {
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
    connect(&transfers_, &TransferList::listChanged, this, &WindowChanges::goOnWhenIdle);
    connect(&transfers_, &TransferList::transferChanged, this, &WindowChanges::goOnWhenIdle);
    connect(&model.app().activities(), &ActivityList::listChanged, this,
            &WindowChanges::goOnWhenIdle);
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

bool WindowChanges::isBusy() const {
    return transfers_.activeCount() > 0 || model_.app().activities().hasWork();
}

bool WindowChanges::mayClose() {
    if (!isBusy()) return true;
    // The models of windows that were closed a moment ago are still there.
    for (const QWidget* other : QApplication::topLevelWidgets())
        if (other != &window_ && other->isVisible() && qobject_cast<const BrowserWindow*>(other))
            return true;
    askToStop(tr("Closing the last window stops it and removes what is unfinished."),
              tr("Stop and Close"), [this] { window_.close(); });
    return false;
}

void WindowChanges::quit() {
    if (!isBusy()) return QApplication::closeAllWindows();
    askToStop(tr("Quitting stops it and removes what is unfinished."), tr("Stop and Quit"),
              [] { QApplication::closeAllWindows(); });
}

void WindowChanges::askToStop(const QString& sentence, const QString& yes,
                              std::function<void()> then) {
    if ((question_ && question_->isVisible()) || whenIdle_) return;
    const bool isTransfer = transfers_.activeCount() > 0;
    question_ = new QuestionSheet({isTransfer ? tr("Files Are Still Being Transferred")
                                              : tr("An Archive Is Still Being Worked On"),
                                   sentence, yes, tr("Keep Going")},
                                  window_);
    connect(question_, &QuestionSheet::accepted, this, [this, then = std::move(then)] {
        whenIdle_ = then;
        transfers_.cancelAll();
        model_.app().activities().stopWork();
        goOnWhenIdle();
    });
    question_->open(question_->no());
}

void WindowChanges::goOnWhenIdle() {
    if (!whenIdle_ || isBusy()) return;
    // Not from inside the signal of what has ended.
    QMetaObject::invokeMethod(this, std::exchange(whenIdle_, {}), Qt::QueuedConnection);
}

}  // namespace tarn
