#include "Tarn/ui/window/WindowChanges.h"

#include <algorithm>
#include <utility>

#include <QtGui/QGuiApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/ConflictSheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/transfers/TransfersButton.h"
#include "Tarn/ui/transfers/TransfersPanel.h"
#include "Tarn/ui/window/BrowserWindow.h"

namespace tarn {
namespace {

/// The models of windows that were closed a moment ago are still there, so the windows are asked.
bool hasOtherWindow(const QWidget* than) {
    for (const QWidget* one : QApplication::topLevelWidgets())
        if (one != than && one->isVisible() && qobject_cast<const BrowserWindow*>(one)) return true;
    return false;
}

}  // namespace

WindowChanges::WindowChanges(TabGroup& group, QWidget& window, TransfersButton& button)
    : QObject(&window),
      group_(group),
      app_(group.app()),
      window_(window),
      transfers_(app_.transfers()),
      button_(button),
      panel_(new TransfersPanel(transfers_, app_.activities(), button, window)) {
    connect(&button, &TransfersButton::clicked, this, [this] {
        if (tab_) tab_->setShowsTransfers(!tab_->showsTransfers());
    });
    connect(panel_, &TransfersPanel::closed, this, [this] {
        if (tab_) tab_->setShowsTransfers(false);
    });
    connect(&transfers_, &TransferList::transferChanged, this, &WindowChanges::ask);
    connect(&transfers_, &TransferList::listChanged, this, &WindowChanges::goOnWhenIdle);
    connect(&transfers_, &TransferList::transferChanged, this, &WindowChanges::goOnWhenIdle);
    connect(&app_.activities(), &ActivityList::listChanged, this, &WindowChanges::goOnWhenIdle);
    // The terminal may have changed files meanwhile.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) app_.history().refresh();
            });
    ask();
}

WindowChanges::~WindowChanges() = default;

void WindowChanges::follow(WindowModel* tab) {
    if (tab_ && tab_ != tab) tab_->setShowsTransfers(false);
    tab_ = tab;
    following_ = std::make_unique<QObject>();
    if (!tab) return;
    connect(tab, &WindowModel::showsTransfersChanged, following_.get(), [this] {
        button_.setHeld(tab_->showsTransfers());
        if (tab_->showsTransfers())
            panel_->open();
        else
            panel_->close();
    });
}

bool WindowChanges::isAskedHere(const TransferModel& transfer) const {
    const auto owns = [&transfer](const TabGroup* group) {
        for (int i = 0; i < group->count(); ++i)
            if (group->tab(i).id() == transfer.windowID()) return true;
        return false;
    };
    const auto& groups = app_.groups();
    const auto owner = std::find_if(groups.begin(), groups.end(), owns);
    // Of one whose window has gone, the oldest asks.
    return owner != groups.end() ? *owner == &group_ : !groups.empty() && groups.front() == &group_;
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

bool WindowChanges::isBusy() const {
    return transfers_.activeCount() > 0 || app_.activities().hasWork();
}

bool WindowChanges::mayClose() {
    if (!isBusy()) return true;
    if (hasOtherWindow(&window_)) return true;
    askToStop(tr("Closing the last window stops it and removes what is unfinished."),
              tr("Stop and Close"), [this] { window_.close(); });
    return false;
}

void WindowChanges::quit() {
    const auto closeAll = [&app = app_] {
        app.saveSession();
        app.setKeepSessionWhileClosing(true);
        QApplication::closeAllWindows();
        // With one that stays open after all, the session goes on.
        if (hasOtherWindow(nullptr))
            app.setKeepSessionWhileClosing(false);
        else
            QCoreApplication::quit();  // Also where it would go on without a window.
    };
    if (!isBusy()) return closeAll();
    askToStop(tr("Quitting stops it and removes what is unfinished."), tr("Stop and Quit"),
              closeAll);
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
        app_.activities().stopWork();
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
