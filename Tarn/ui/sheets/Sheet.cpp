#include "Tarn/ui/sheets/Sheet.h"

#include <algorithm>

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/ui/focus/FocusRing.h"
#include "Tarn/ui/focus/Overlay.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// Part of the room above and below the card that is above it: a little more below looks centred.
constexpr double above = 0.4;

/// The raised ground of a sheet.
class Card final : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        Paint::card(painter, rect());
    }
};

bool changesTab(const QKeyEvent& event) {
    if (!(event.modifiers() & Qt::ControlModifier)) return false;
    switch (event.key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        default:
            return false;
    }
}

}  // namespace

Sheet::Sheet(QWidget& window, int width)
    : QWidget(&window),
      width_(width),
      card_(new Card(this)),
      column_(new QVBoxLayout(card_)),
      title_(new QLabel) {
    setFocusPolicy(Qt::StrongFocus);
    hide();
    title_->setFont(Fonts::title());
    title_->setWordWrap(true);
    title_->setTextFormat(Qt::PlainText);
    title_->setMinimumWidth(1);
    column_->setContentsMargins(Metrics::space24, Metrics::space24, Metrics::space24,
                                Metrics::space16);
    column_->setSpacing(Metrics::space12);
    column_->addWidget(title_);
    window.installEventFilter(this);
}

Sheet::~Sheet() = default;

void Sheet::setTitle(const QString& title) {
    title_->setText(title);
    setAccessibleName(title);
}

QString Sheet::title() const { return title_->text(); }

int Sheet::contentWidth() const {
    const QMargins margins = column_->contentsMargins();
    return card_->width() - margins.left() - margins.right();
}

void Sheet::open(QWidget* first) {
    // Also of a window that is not active yet.
    before_ = window()->focusWidget();
    place();
    show();
    raise();
    place();
    if (first) {
        first->setFocus(Qt::PopupFocusReason);
    } else {
        setFocus(Qt::PopupFocusReason);
        focusNextPrevChild(true);
    }
    QAccessibleEvent began(this, QAccessible::DialogStart);
    QAccessible::updateAccessibility(&began);
}

void Sheet::finish() {
    if (isHidden() && !isSuspended_) return;
    QAccessibleEvent ended(this, QAccessible::DialogEnd);
    QAccessible::updateAccessibility(&ended);
    hide();
    if (before_ && !isSuspended_) before_->setFocus(Qt::PopupFocusReason);
    isSuspended_ = false;
    emit finished();
    deleteLater();
}

void Sheet::suspend() {
    if (isHidden()) return;
    isSuspended_ = true;
    QWidget* focus = window()->focusWidget();
    within_ = focus && isAncestorOf(focus) ? focus : nullptr;
    hide();
}

void Sheet::resume() {
    if (!isSuspended_) return;
    isSuspended_ = false;
    show();
    raise();
    place();
    (within_ ? within_.data() : this)->setFocus(Qt::PopupFocusReason);
}

void Sheet::leaveOut(QWidget& part) {
    leftOut_ = &part;
    part.installEventFilter(this);
    updateMask();
}

void Sheet::updateMask() {
    if (!leftOut_ || !leftOut_->isVisible()) return clearMask();
    const QRect hole(leftOut_->mapTo(parentWidget(), QPoint()), leftOut_->size());
    setMask(QRegion(rect()) - hole);
}

void Sheet::place() {
    const QRect room = parentWidget()->rect();
    setGeometry(room);
    updateMask();
    const int width = std::min(width_, room.width() - 2 * Metrics::space16);
    if (card_->width() != width) {
        card_->resize(width, card_->height());
        layOut();
    }
    column_->activate();
    const int wanted =
        card_->hasHeightForWidth() ? card_->heightForWidth(width) : card_->sizeHint().height();
    const int height = std::min(wanted, room.height() - 2 * Metrics::space16);
    card_->setGeometry((room.width() - width) / 2,
                       static_cast<int>((room.height() - height) * above), width, height);
}

bool Sheet::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            if (leftOut_ && changesTab(*static_cast<QKeyEvent*>(event))) return false;
            break;
        case QEvent::LayoutRequest:
            if (isVisible()) place();
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            event->accept();
            return true;
        default:
            break;
    }
    return Overlay::keeps(*event) || QWidget::event(event);
}

void Sheet::addScrolling(QScrollArea& area, QWidget& content, QPushButton& done) {
    area.setWidgetResizable(true);
    area.setFrameShape(QFrame::NoFrame);
    area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area.setFocusPolicy(Qt::NoFocus);
    area.setWidget(&content);
    area.setMinimumHeight(Metrics::rowRoomy);
    for (QWidget* ground : {static_cast<QWidget*>(&area), area.viewport(), &content})
        ground->setAutoFillBackground(false);
    // The scroll bar stands in the margin.
    column_->setContentsMargins(column_->contentsMargins() -
                                Margins::directed(0, 0, Metrics::scrollBarWidth, 0));
    column_->addWidget(&area, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(Margins::directed(0, 0, Metrics::scrollBarWidth, 0));
    buttons->addStretch();
    buttons->addWidget(&done);
    column_->addLayout(buttons);
    done.setDefault(true);
    connect(&done, &QPushButton::clicked, this, &Sheet::finish);
}

bool Sheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) place();
    const bool isMoved = event->type() == QEvent::Resize || event->type() == QEvent::Move ||
                         event->type() == QEvent::Show || event->type() == QEvent::Hide;
    if (watched == leftOut_ && isMoved && isVisible()) updateMask();
    return QWidget::eventFilter(watched, event);
}

bool Sheet::focusNextPrevChild(bool next) {
    FocusRing::step(*this, next);
    return true;
}

bool Sheet::pressFocused() {
    auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget());
    if (!button || !isAncestorOf(button)) return false;
    button->click();
    return true;
}

void Sheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) escape();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) pressFocused();
    // No key goes on to the window below.
    event->accept();
}

void Sheet::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Colors::current().scrim); }

}  // namespace tarn
