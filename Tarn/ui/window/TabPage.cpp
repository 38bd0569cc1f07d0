#include "Tarn/ui/window/TabPage.h"

#include <algorithm>

#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QSplitter>

#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/window/PaneFrame.h"
#include "Tarn/ui/window/TabSheets.h"

namespace tarn {

TabPage::TabPage(WindowModel& tab, QWidget& window, QWidget& strip)
    : QWidget(&window), tab_(tab), window_(window), splitter_(new QSplitter(this)) {
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(Metrics::hairline);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(splitter_);
    addMissing();
    toast_ = new ToastView(tab, window, *this);
    sheets_ = std::make_unique<TabSheets>(tab, window, strip);
    connect(&tab, &WindowModel::paneClosing, this,
            [this](const PaneModel& pane) { removeFrame(pane); });
    connect(&tab, &WindowModel::panesChanged, this, &TabPage::addMissing);
    connect(&tab, &WindowModel::activePaneChanged, this, &TabPage::showActive);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) {
        for (std::size_t i = 0; now && i < frames_.size(); ++i)
            if (frames_[i] == now || frames_[i]->isAncestorOf(now))
                tab_.setActiveIndex(static_cast<int>(i));
    });
}

TabPage::~TabPage() {
    // A view that has the keyboard loses it only after this.
    qApp->disconnect(this);
    delete toast_;
}

PaneFrame& TabPage::active() const {
    return *frames_[std::min(static_cast<std::size_t>(tab_.activeIndex()), frames_.size() - 1)];
}

// --- Panes

void TabPage::addFrame(PaneModel& pane) {
    auto* frame = new PaneFrame(tab_, pane, window_);
    frames_.push_back(frame);
    splitter_->addWidget(frame);
    connect(&frame->rows(), &PaneWidget::leftAtTop, this, &TabPage::leftAtTop);
    connect(frame, &PaneFrame::searchLeftStart, this, &TabPage::searchLeftStart);
    connect(frame, &PaneFrame::pressed, this, [this, frame] {
        const auto found = std::find(frames_.begin(), frames_.end(), frame);
        tab_.setActiveIndex(static_cast<int>(found - frames_.begin()));
    });
    connect(frame, &PaneFrame::tabPressed, this, [this] {
        tab_.setActiveIndex(1 - tab_.activeIndex());
        active().takeFocus();
    });
    connect(frame, &PaneFrame::closePressed, this, [this, frame] {
        // The other one stays.
        const bool isFirst = frames_.front() == frame;
        QMetaObject::invokeMethod(
            this,
            [this, isFirst] {
                if (!tab_.isSplit()) return;
                tab_.setActiveIndex(isFirst ? 1 : 0);
                tab_.setSplit(false);
                takeFocus();
            },
            Qt::QueuedConnection);
    });
}

void TabPage::removeFrame(const PaneModel& pane) {
    const auto found = std::find_if(frames_.begin(), frames_.end(),
                                    [&pane](const auto* frame) { return &frame->pane() == &pane; });
    if (found == frames_.end()) return;
    PaneFrame* frame = *found;
    frames_.erase(found);
    delete frame;
}

void TabPage::addMissing() {
    for (const auto& pane : tab_.panes()) {
        const bool isThere = std::any_of(frames_.begin(), frames_.end(), [&](const auto* frame) {
            return &frame->pane() == pane.get();
        });
        if (!isThere) addFrame(*pane);
    }
    if (frames_.size() > 1) {
        const int half = 1 << 12;  // They share what there is.
        splitter_->setSizes({half, half});
    }
    showActive();
}

void TabPage::showActive() {
    for (std::size_t i = 0; i < frames_.size(); ++i)
        frames_[i]->setInSplit(frames_.size() > 1, static_cast<int>(i) == tab_.activeIndex());
    // The keyboard goes with the active one.
    for (const PaneFrame* frame : frames_)
        if (frame != &active() && frame->hasKeyboard()) return active().takeFocus();
}

// --- Front and keyboard

void TabPage::setInFront(bool inFront) { sheets_->setInFront(inFront); }

void TabPage::takeFocus() {
    if (!sheets_->isOpen()) active().takeFocus();
}

void TabPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    splitter_->setOrientation(width() < 2 * Metrics::paneMinimum ? Qt::Vertical : Qt::Horizontal);
}

}  // namespace tarn
