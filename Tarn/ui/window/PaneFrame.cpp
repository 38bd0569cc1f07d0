#include "Tarn/ui/window/PaneFrame.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QStackedLayout>

#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/home/StartScreen.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "Tarn/ui/window/PaneHeader.h"

namespace tarn {

PaneFrame::PaneFrame(WindowModel& tab, PaneModel& pane, QWidget& window)
    : QWidget(&window),
      tab_(tab),
      pane_(pane),
      header_(new PaneHeader(pane, this)),
      trash_(new TrashBar(tab, pane, window)),
      busy_(new BusyLine(this)),
      pages_(new QStackedLayout),
      rows_(new PaneWidget(tab, pane, this)) {
    header_->hide();
    // Takes the keyboard where there are no rows that could.
    setFocusPolicy(Qt::ClickFocus);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header_);
    column->addWidget(trash_);
    column->addWidget(busy_);
    column->addLayout(pages_, 1);
    pages_->addWidget(rows_);
    connect(header_, &PaneHeader::closePressed, this, &PaneFrame::closePressed);
    connect(&pane, &PaneModel::stateChanged, this, [this] { busy_->setBusy(pane_.isSearching()); });
    connect(&pane, &PaneModel::locationChanged, this, &PaneFrame::showPage);
    connect(&pane, &PaneModel::searchChanged, this, &PaneFrame::showPage);
    connect(&pane, &PaneModel::rowsChanged, this, [this] {
        if (hasFocus()) takeFocus();
    });
    for (PaneView* view : rows_->findChildren<PaneView*>()) view->installEventFilter(this);
    showPage();
}

void PaneFrame::setInSplit(bool inSplit, bool active) {
    isInSplit_ = inSplit;
    header_->setVisible(inSplit);
    header_->setActive(active);
}

void PaneFrame::showPage() {
    const bool isStart = pane_.location().which == Location::Case::home && !pane_.query();
    if (isStart && !start_) {
        start_ = new StartScreen(tab_, pane_, this);
        pages_->addWidget(start_);
    }
    QWidget* wanted = isStart ? static_cast<QWidget*>(start_) : rows_;
    if (pages_->currentWidget() == wanted) return;
    const bool hadKeyboard = hasKeyboard();
    pages_->setCurrentWidget(wanted);
    if (!hadKeyboard) return;
    if (pane_.query())
        emit searchLeftStart();
    else
        takeFocus();
}

void PaneFrame::enter() {
    if (pages_->currentWidget() == start_)
        start_->enter();
    else
        rows_->enter();
}

void PaneFrame::takeFocus() {
    if (pages_->currentWidget() == start_) {
        start_->enter();
        return;
    }
    PaneView* view = rows_->view();
    if (view->isVisibleTo(this))
        view->setFocus();
    else
        setFocus();
}

bool PaneFrame::hasKeyboard() const {
    const QWidget* focus = QWidget::window()->focusWidget();
    return focus && (focus == this ||
                     (pages_->currentWidget() && (focus == pages_->currentWidget() ||
                                                  pages_->currentWidget()->isAncestorOf(focus))));
}

bool PaneFrame::takesTab(const QEvent& event) {
    if (!isInSplit_ || event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.key() != Qt::Key_Tab || key.modifiers() != Qt::NoModifier) return false;
    emit tabPressed();
    return true;
}

bool PaneFrame::event(QEvent* event) { return takesTab(*event) || QWidget::event(event); }

bool PaneFrame::eventFilter(QObject* watched, QEvent* event) {
    return takesTab(*event) || QWidget::eventFilter(watched, event);
}

void PaneFrame::mousePressEvent(QMouseEvent* event) {
    // Rows and controls keep their presses; this one was beside them.
    emit pressed();
    QWidget::mousePressEvent(event);
}

}  // namespace tarn
