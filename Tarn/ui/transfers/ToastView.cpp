#include "Tarn/ui/transfers/ToastView.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int widest = 520;
constexpr int shadowReach = Metrics::space12;

}  // namespace

ToastView::ToastView(WindowModel& model, QWidget& window, QWidget& pane)
    : QWidget(&window),
      window_(model),
      pane_(pane),
      symbol_(new SymbolView(Metrics::iconSmall, Icons::Tint::secondary)),
      warning_(new SymbolView(Metrics::iconSmall, Icons::Tint::danger)),
      message_(new QLabel),
      undo_(new QPushButton(tr("Undo"))),
      close_(new QToolButton) {
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setMinimumWidth(1);
    undo_->setFocusPolicy(Qt::TabFocus);
    // As narrow as its word: the message is what matters here.
    undo_->setFixedWidth(Fonts::textWidth(undo_->font(), undo_->text()) + 2 * Metrics::space12);
    close_->setAutoRaise(true);
    close_->setIcon(Icons::symbol("xmark", Icons::Tint::secondary));
    close_->setIconSize({Metrics::space12, Metrics::space12});
    close_->setFixedSize(Metrics::smallestTarget, Metrics::smallestTarget);
    close_->setFocusPolicy(Qt::TabFocus);
    close_->setToolTip(tr("Dismiss"));
    close_->setAccessibleName(tr("Dismiss"));
    auto* card = new QHBoxLayout(this);
    card->setContentsMargins(shadowReach, shadowReach, shadowReach, shadowReach);
    auto* row = new QHBoxLayout;
    card->addLayout(row);
    row->setContentsMargins(
        Margins::directed(Metrics::space16, Metrics::space6, Metrics::space8, Metrics::space6));
    row->setSpacing(Metrics::space8);
    row->addWidget(symbol_);
    row->addWidget(warning_);
    row->addWidget(message_, 1);
    row->addSpacing(Metrics::space4);
    row->addWidget(undo_);
    row->addWidget(close_);
    hide();
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &ToastView::dismiss);
    connect(close_, &QToolButton::clicked, this, &ToastView::dismiss);
    // Return presses it, as the space bar does.
    undo_->setAutoDefault(true);
    connect(undo_, &QPushButton::clicked, this, [this] {
        const auto toast = window_.toast();
        dismiss();
        if (toast && toast->undoID) window_.operations().undo(*toast->undoID);
    });
    connect(&model, &WindowModel::toastChanged, this, &ToastView::showToast);
    connect(qApp, &QApplication::focusChanged, this, &ToastView::hold);
    pane.installEventFilter(this);
    showToast();
}

ToastView::~ToastView() {
    // A button that has the keyboard loses it only after this.
    qApp->disconnect(this);
}

void ToastView::showToast() {
    const auto& toast = window_.toast();
    if (!toast) {
        timer_.stop();
        hide();
        return;
    }
    shown_ = toast->id;
    symbol_->setVisible(!toast->isError);
    warning_->setVisible(toast->isError);
    (toast->isError ? warning_ : symbol_)->setSymbol(toast->symbol);
    message_->setText(toast->message);
    undo_->setVisible(toast->undoable && toast->undoID);
    setAccessibleName(toast->message);
    remaining_ = toast->undoable || toast->isError ? longTime : shortTime;
    isHeld_ = true;
    // One in a tab that is not in front waits until it can be seen.
    if (pane_.isVisible()) appear();
}

void ToastView::appear() {
    // What the pane stands in may be moved without it.
    for (QWidget* one = &pane_; one && one != parentWidget(); one = one->parentWidget())
        one->installEventFilter(this);
    isHeld_ = false;
    timer_.start(remaining_);
    show();
    raise();
    place();
    hold();
    QAccessibleEvent said(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

int ToastView::timeLeft() const {
    return isHeld_ ? remaining_ : std::max(0, timer_.remainingTime());
}

void ToastView::hold() {
    if (isHidden()) return;
    QWidget* focus = QApplication::focusWidget();
    const bool wanted = underMouse() || (focus && isAncestorOf(focus));
    if (wanted == isHeld_) return;
    if (wanted) {
        remaining_ = std::max(0, timer_.remainingTime());
        timer_.stop();
    } else {
        timer_.start(remaining_);
    }
    isHeld_ = wanted;
}

void ToastView::dismiss() { window_.dismissToast(shown_); }

void ToastView::place() {
    const QRect room(pane_.mapTo(parentWidget(), QPoint()), pane_.size());
    const int most = std::min(widest, room.width() - 2 * Metrics::space12) + 2 * shadowReach;
    // One line where it fits.
    int others = 2 * shadowReach + Metrics::space16 + Metrics::space8 + Metrics::iconSmall +
                 Metrics::space8 + Metrics::space4 + Metrics::space8 + close_->width();
    if (!undo_->isHidden()) others += undo_->maximumWidth() + Metrics::space8;
    const int text = Fonts::textWidth(message_->font(), message_->text()) + Metrics::space2;
    const int width = std::min(most, others + text);
    layout()->activate();
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                     : layout()->totalSizeHint().height();
    const int x = room.x() + (room.width() - width) / 2;
    QRect place(x, room.bottom() + 1 - height - Metrics::space12 + shadowReach, width, height);
    // Above the status in the corner where there is no room beside it.
    const QRect card = place.adjusted(0, shadowReach, 0, -shadowReach);
    int above = 0;
    for (const auto* status : pane_.findChildren<StatusPill*>()) {
        const QRect pill(status->mapTo(parentWidget(), QPoint()), status->size());
        if (status->isVisible() && pill.intersects(card)) above = pill.height() + Metrics::space8;
    }
    setGeometry(place.translated(0, -above));
}

bool ToastView::eventFilter(QObject* watched, QEvent* event) {
    const bool isMoved = event->type() == QEvent::Resize || event->type() == QEvent::Move;
    const auto* moved = isMoved ? qobject_cast<QWidget*>(watched) : nullptr;
    if (moved && (moved == &pane_ || moved->isAncestorOf(&pane_)) && !isHidden()) place();
    if (watched == &pane_ && event->type() == QEvent::Show && isHidden() && window_.toast())
        appear();
    if (watched == &pane_ && event->type() == QEvent::Hide && !isHidden()) {
        remaining_ = timeLeft();
        timer_.stop();
        isHeld_ = true;
        hide();
    }
    return QWidget::eventFilter(watched, event);
}

void ToastView::enterEvent(QEnterEvent*) { hold(); }

void ToastView::leaveEvent(QEvent*) { hold(); }

void ToastView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::card(painter, rect().adjusted(shadowReach, shadowReach, -shadowReach, -shadowReach),
                shadowReach);
}

}  // namespace tarn
