#include "Tarn/ui/sidebar/Sidebar.h"

#include <algorithm>

#include <QtCore/QMimeData>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QDrag>
#include <QtGui/QDropEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QToolTip>

#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/focus/AsideClick.h"
#include "Tarn/ui/sidebar/SidebarDelegate.h"
#include "Tarn/ui/sidebar/SidebarTarget.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

Sidebar::Sidebar(QWidget* parent) : QListView(parent) {
    setAccessibleName(tr("Places"));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setMouseTracking(true);
    setAcceptDrops(true);
    viewport()->setAttribute(Qt::WA_Hover);
    viewport()->setBackgroundRole(QPalette::Window);
    setViewportMargins(0, Metrics::space8, 0, Metrics::space8);
    setItemDelegate(new SidebarDelegate(*this));
    setMinimumWidth(Metrics::sidebarMinimum);
    setMaximumWidth(Metrics::sidebarMaximum);
    connect(this, &QListView::clicked, this, &Sidebar::choose);
}

void Sidebar::setModel(SidebarModel* model) {
    model_ = model;
    // A row that takes another place keeps the keyboard. Heard before the view moves it on.
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] {
        if (hasFocus() && currentIndex().isValid()) before_ = model_->row(currentIndex().row());
    });
    QListView::setModel(model);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, model,
            [model](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) model->refresh();
            });
    connect(model, &SidebarModel::refreshed, this, [this] {
        const auto row = before_ ? model_->indexOf(*before_) : std::nullopt;
        before_.reset();
        if (row)
            setCurrentIndex(model_->index(*row));
        else if (!hasFocus())
            setCurrent(current_);
        viewport()->update();
    });
    setCurrent(current_);
}

void Sidebar::setCurrent(const Location& location) {
    current_ = location;
    if (!model_) return;
    const auto row = model_->indexOf(location);
    setCurrentIndex(row ? model_->index(*row) : QModelIndex());
    viewport()->update();
}

QSize Sidebar::sizeHint() const {
    return {Metrics::sidebarDefault, QListView::sizeHint().height()};
}

QRect Sidebar::ejectButton(const QModelIndex& index) const {
    if (!index.isValid() || !model_->row(index.row()).isEjectable()) return {};
    const QRect row = visualRect(index);
    const QRect button(row.right() - Metrics::space12 - Metrics::smallestTarget + 1,
                       row.center().y() - Metrics::smallestTarget / 2 + 1, Metrics::smallestTarget,
                       Metrics::smallestTarget);
    return QStyle::visualRect(layoutDirection(), row, button);
}

bool Sidebar::isPlace(const QModelIndex& index) const {
    if (!model_ || !index.isValid()) return false;
    const SidebarRow::Kind kind = model_->row(index.row()).kind;
    return kind != SidebarRow::Kind::heading && kind != SidebarRow::Kind::server &&
           kind != SidebarRow::Kind::connect;
}

void Sidebar::choose(const QModelIndex& index) {
    if (!model_ || !index.isValid()) return;
    const SidebarRow row = model_->row(index.row());
    switch (row.kind) {
        case SidebarRow::Kind::heading:
            return model_->setFolded(row.section, !row.isFolded);
        case SidebarRow::Kind::server:
        case SidebarRow::Kind::connect:
            emit serverChosen(row.address);
            return;
        default:
            emit chosen(row.location);
    }
}

// --- Keys

std::optional<SidebarAction> Sidebar::actionOf(const QKeyEvent& event) const {
    if (!currentIndex().isValid()) return std::nullopt;
    const SidebarRow& row = model_->row(currentIndex().row());
    const auto keys = event.modifiers() & ~Qt::KeypadModifier;
    const bool isRemovable = row.isMovable() || row.kind == SidebarRow::Kind::server;
    if (keys == Qt::NoModifier && event.key() == Qt::Key_F2 && row.isMovable())
        return SidebarAction::rename;
    if (keys == Qt::NoModifier && event.key() == Qt::Key_Delete && isRemovable)
        return SidebarAction::remove;
    if (keys == Qt::AltModifier && event.key() == Qt::Key_Up && row.isMovable())
        return SidebarAction::moveUp;
    if (keys == Qt::AltModifier && event.key() == Qt::Key_Down && row.isMovable())
        return SidebarAction::moveDown;
    const bool isEject =
        (keys == Qt::ControlModifier && event.key() == Qt::Key_E) || event.key() == Qt::Key_Eject;
    if (isEject && row.isEjectable()) return SidebarAction::eject;
    return std::nullopt;
}

bool Sidebar::event(QEvent* event) {
    // What a key means in a row comes before what it means in the window.
    if (event->type() == QEvent::ShortcutOverride && model_ &&
        actionOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QListView::event(event);
}

void Sidebar::keyPressEvent(QKeyEvent* event) {
    const QModelIndex index = currentIndex();
    if (index.isValid()) {
        if (const auto action = actionOf(*event)) {
            emit actionWanted(*action, SidebarRow(model_->row(index.row())));
            return;
        }
        const SidebarSection section = model_->row(index.row()).section;
        const bool folds = event->key() == (isRightToLeft() ? Qt::Key_Right : Qt::Key_Left);
        const bool unfolds = event->key() == (isRightToLeft() ? Qt::Key_Left : Qt::Key_Right);
        if ((folds || unfolds) && event->modifiers() == Qt::NoModifier) {
            model_->setFolded(section, folds);
            // The heading stays, and has the keyboard after a row that went.
            for (int i = 0; folds && i < model_->rowCount(); ++i)
                if (model_->row(i).section == section) return setCurrentIndex(model_->index(i));
            return;
        }
    }
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            choose(index);
            return;
        default:
            QListView::keyPressEvent(event);
    }
}

void Sidebar::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    if (!currentIndex().isValid() && model_ && event->reason() != Qt::MouseFocusReason)
        setCurrentIndex(moveCursor(MoveHome, Qt::NoModifier));
    viewport()->update();
}

// --- The pointer

void Sidebar::contextMenuEvent(QContextMenuEvent* event) {
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isKey ? currentIndex() : indexAt(event->pos());
    if (!model_ || !index.isValid()) return;
    emit menuRequested(
        SidebarRow(model_->row(index.row())),
        isKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void Sidebar::pointEject(const QModelIndex& index) {
    if (ejectPointed_ == index) return;
    ejectPointed_ = index;
    viewport()->update();
}

bool Sidebar::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) pointEject({});
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const QModelIndex index = indexAt(help->pos());
        if (ejectButton(index).contains(help->pos())) {
            QToolTip::showText(help->globalPos(),
                               tr("Eject “%1”").arg(model_->row(index.row()).title), viewport(),
                               ejectButton(index));
            return true;
        }
    }
    return QListView::viewportEvent(event);
}

void Sidebar::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    dragPressed_ = QModelIndex();
    if (event->button() == Qt::LeftButton && ejectButton(index).contains(event->pos())) {
        ejectPressed_ = index;
        return;
    }
    if (isAside(*event) && isPlace(index)) {
        asidePressed_ = index;
        return;
    }
    if (event->button() == Qt::LeftButton && index.isValid() &&
        model_->row(index.row()).isMovable()) {
        dragPressed_ = index;
        pressedAt_ = event->pos();
    }
    QListView::mousePressEvent(event);
}

void Sidebar::mouseMoveEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    pointEject(ejectButton(index).contains(event->pos()) ? index : QModelIndex());
    if (ejectPressed_.isValid()) return;
    const bool isFar =
        (event->pos() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (dragPressed_.isValid() && (event->buttons() & Qt::LeftButton) && isFar)
        return startRowDrag(std::exchange(dragPressed_, QModelIndex()));
    QListView::mouseMoveEvent(event);
}

void Sidebar::mouseReleaseEvent(QMouseEvent* event) {
    dragPressed_ = QModelIndex();
    if (const QModelIndex pressed = std::exchange(ejectPressed_, QModelIndex());
        pressed.isValid()) {
        if (ejectButton(pressed).contains(event->pos()))
            emit actionWanted(SidebarAction::eject, SidebarRow(model_->row(pressed.row())));
        return;
    }
    if (const QModelIndex pressed = std::exchange(asidePressed_, QModelIndex());
        pressed.isValid()) {
        if (indexAt(event->pos()) == pressed)
            emit chosenAside(Location(model_->row(pressed.row()).location));
        return;
    }
    QListView::mouseReleaseEvent(event);
}

// --- Dragging

void Sidebar::startRowDrag(const QModelIndex& index) {
    const QRect rect = visualRect(index);
    auto* drag = new QDrag(this);
    drag->setMimeData(SidebarTarget::makeDrag(model_->row(index.row())).release());
    drag->setPixmap(viewport()->grab(rect));
    drag->setHotSpot(pressedAt_ - rect.topLeft());
    setState(NoState);
    drag->exec(Qt::MoveAction);
}

void Sidebar::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    if (dropTarget_.isValid())
        Paint::focusRing(
            painter,
            QRectF(visualRect(dropTarget_)).adjusted(Metrics::space8, 1, -Metrics::space8, -1),
            Metrics::radiusRow);
    if (dropLine_ < 0) return;
    const QRectF line(Metrics::space16, dropLine_ - Metrics::focusRing / 2.0,
                      viewport()->width() - 2 * Metrics::space16, Metrics::focusRing);
    Paint::fill(painter, line, Metrics::focusRing / 2.0, Colors::current().accent);
}

void Sidebar::showTarget(const std::optional<SidebarTarget>& target, const QPoint& point) {
    const QString label = target ? target->label(model_->row(target->row)) : QString();
    if (label.isEmpty())
        DropLabel::hide(*this);
    else
        DropLabel::show(*viewport(), point, label, target->symbol());
    const int line = target ? target->line : -1;
    const QModelIndex onto = target && line < 0 ? model_->index(target->row) : QModelIndex();
    if (onto == dropTarget_ && line == dropLine_) return;
    dropTarget_ = onto;
    dropLine_ = line;
    viewport()->update();
}

void Sidebar::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void Sidebar::dragMoveEvent(QDragMoveEvent* event) {
    const auto target = SidebarTarget::of(*event, *this);
    showTarget(target, event->position().toPoint());
    if (target) return target->accept(*event);
    // Accepted all the same: a drag that was refused once would not be told of again.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
}

void Sidebar::dragLeaveEvent(QDragLeaveEvent*) { showTarget({}, {}); }

void Sidebar::dropEvent(QDropEvent* event) {
    const auto target = SidebarTarget::of(*event, *this);
    showTarget({}, {});
    if (!target) {
        event->ignore();
        return;
    }
    target->accept(*event);
    const SidebarRow row = model_->row(target->row);
    switch (target->what) {
        case SidebarTarget::What::drop:
            emit dropped(*target->drop);
            break;
        case SidebarTarget::What::tag:
            emit tagged(target->urls, row.tag);
            break;
        case SidebarTarget::What::favorite:
            emit favoritesDropped(target->urls, target->index);
            break;
        case SidebarTarget::What::move:
            emit moved(row, target->index);
            break;
    }
}

}  // namespace tarn
