#include "Tarn/ui/window/FileTabBar.h"

#include <algorithm>
#include <utility>

#include <QtGui/QContextMenuEvent>
#include <QtGui/QDropEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolButton>

#include "Tarn/model/FileMime.h"
#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// How long files are held over a tab until it comes to the front, in milliseconds.
constexpr int switchDelay = 500;
/// How far from the bar a tab leaves it, in pixels.
constexpr int tearDistance = 2 * Metrics::space24;

}  // namespace

FileTabBar::FileTabBar(QWidget* parent) : QTabBar(parent) {
    setAccessibleName(tr("Tabs"));
    setExpanding(false);
    setDrawBase(false);
    setMovable(true);
    setUsesScrollButtons(true);
    setElideMode(Qt::ElideNone);
    setAcceptDrops(true);
    setSelectionBehaviorOnRemove(QTabBar::SelectPreviousTab);
    switchTimer_.setSingleShot(true);
    switchTimer_.setInterval(switchDelay);
    connect(&switchTimer_, &QTimer::timeout, this, [this] {
        if (dropTab_ >= 0) setCurrentIndex(dropTab_);
    });
}

void FileTabBar::insert(int index, const QString& text, const QString& toolTip) {
    insertTab(index, text);
    setTabToolTip(index, toolTip);
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol("xmark", Icons::Tint::secondary));
    button->setIconSize({Metrics::space12, Metrics::space12});
    button->setFixedSize(Metrics::smallestTarget, Metrics::smallestTarget);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAccessibleName(tr("Close Tab"));
    button->setToolTip(tr("Close Tab"));
    connect(button, &QToolButton::clicked, this, [this, button] {
        for (int i = 0; i < count(); ++i)
            if (tabButton(i, QTabBar::RightSide) == button) return emit closePressed(i);
    });
    setTabButton(index, QTabBar::RightSide, button);
}

int FileTabBar::wantedWidth() const { return std::min(room_, count() * tabSizeHint(0).width()); }

QSize FileTabBar::tabSizeHint(int) const {
    const int share = count() > 0 ? room_ / count() : room_;
    return {std::clamp(share, Metrics::tabMinimum, Metrics::tabMaximum), Metrics::tabHeight};
}

QSize FileTabBar::minimumTabSizeHint(int index) const { return tabSizeHint(index); }

void FileTabBar::paintEvent(QPaintEvent* event) {
    QTabBar::paintEvent(event);
    if (dropTab_ < 0) return;
    QPainter painter(this);
    Paint::focusRing(painter, tabRect(dropTab_).adjusted(Metrics::space2, 0, -Metrics::space2, 0),
                     Metrics::radiusControl);
}

// --- Mouse

void FileTabBar::mousePressEvent(QMouseEvent* event) {
    middlePressed_ = event->button() == Qt::MiddleButton ? tabAt(event->position().toPoint()) : -1;
    isHeld_ = event->button() == Qt::LeftButton && tabAt(event->position().toPoint()) >= 0;
    QTabBar::mousePressEvent(event);
}

bool FileTabBar::isAway(const QMouseEvent& event) const {
    return isHeld_ && !rect()
                           .adjusted(-tearDistance, -tearDistance, tearDistance, tearDistance)
                           .contains(event.position().toPoint());
}

void FileTabBar::mouseMoveEvent(QMouseEvent* event) {
    QTabBar::mouseMoveEvent(event);
    if (isAway(*event))
        setCursor(Qt::DragMoveCursor);
    else
        unsetCursor();
}

void FileTabBar::mouseReleaseEvent(QMouseEvent* event) {
    QTabBar::mouseReleaseEvent(event);
    unsetCursor();
    const bool isTorn = event->button() == Qt::LeftButton && isAway(*event);
    isHeld_ = false;
    // The one that was pressed is in front.
    if (isTorn) return emit tornOff(currentIndex(), event->globalPosition().toPoint());
    if (event->button() != Qt::MiddleButton || middlePressed_ < 0) return;
    const int index = std::exchange(middlePressed_, -1);
    if (tabAt(event->position().toPoint()) == index) emit closePressed(index);
}

void FileTabBar::contextMenuEvent(QContextMenuEvent* event) {
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const int index = isKey ? currentIndex() : tabAt(event->pos());
    if (index < 0) return;
    emit menuRequested(index, isKey ? mapToGlobal(tabRect(index).center()) : event->globalPos());
}

// --- Drops

std::optional<FileDrop> FileTabBar::dropAt(const QDropEvent& event) const {
    const int index = tabAt(event.position().toPoint());
    if (index < 0 || !folderOf_) return std::nullopt;
    const auto folder = folderOf_(index);
    return folder ? FileDrop::of(event, *folder) : std::nullopt;
}

void FileTabBar::setDropTab(int index) {
    if (index == dropTab_) return;
    dropTab_ = index;
    if (index >= 0 && index != currentIndex())
        switchTimer_.start();
    else
        switchTimer_.stop();
    update();
}

void FileTabBar::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void FileTabBar::dragMoveEvent(QDragMoveEvent* event) {
    if (!event->mimeData() || !FileMime::readDrag(*event->mimeData())) return event->ignore();
    setDropTab(tabAt(event->position().toPoint()));
    if (const auto drop = dropAt(*event)) {
        DropLabel::show(*this, event->position().toPoint(), *drop);
        drop->accept(*event);
        return;
    }
    DropLabel::hide(*this);
    // Accepted all the same: a drag that was refused once would not be told of again.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
}

void FileTabBar::dragLeaveEvent(QDragLeaveEvent*) {
    setDropTab(-1);
    DropLabel::hide(*this);
}

void FileTabBar::dropEvent(QDropEvent* event) {
    const auto drop = dropAt(*event);
    setDropTab(-1);
    DropLabel::hide(*this);
    if (!drop) return event->ignore();
    drop->accept(*event);
    emit dropped(*drop);
}

}  // namespace tarn
