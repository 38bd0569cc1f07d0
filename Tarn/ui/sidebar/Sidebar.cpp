#include "Tarn/ui/sidebar/Sidebar.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QDropEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/sidebar/SidebarDelegate.h"
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
    QListView::setModel(model);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, model,
            [model](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) model->refresh();
            });
    connect(model, &SidebarModel::refreshed, this, [this] { setCurrent(current_); });
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

void Sidebar::choose(const QModelIndex& index) {
    if (!model_ || !index.isValid()) return;
    const SidebarRow& row = model_->row(index.row());
    if (row.kind != SidebarRow::Kind::heading) emit chosen(row.location);
}

QModelIndex Sidebar::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex target = QListView::moveCursor(action, modifiers);
    if (!model_ || !target.isValid() || (target.flags() & Qt::ItemIsEnabled)) return target;
    const int step = action == MoveEnd || action == MoveUp || action == MovePageUp ? -1 : 1;
    for (int row = target.row() + step; row >= 0 && row < model_->rowCount(); row += step)
        if (model_->index(row).flags() & Qt::ItemIsEnabled) return model_->index(row);
    return currentIndex();
}

void Sidebar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            choose(currentIndex());
            return;
        default:
            QListView::keyPressEvent(event);
    }
}

void Sidebar::contextMenuEvent(QContextMenuEvent* event) {
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isKey ? currentIndex() : indexAt(event->pos());
    if (!model_ || !index.isValid() || !(index.flags() & Qt::ItemIsEnabled)) return;
    emit menuRequested(
        model_->row(index.row()).location,
        isKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void Sidebar::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (!dropTarget_.isValid()) return;
    QPainter painter(viewport());
    Paint::focusRing(
        painter, QRectF(visualRect(dropTarget_)).adjusted(Metrics::space8, 1, -Metrics::space8, -1),
        Metrics::radiusRow);
}

std::optional<FileDrop> Sidebar::dropAt(const QDropEvent& event) const {
    const QModelIndex index = indexAt(event.position().toPoint());
    if (!model_ || !index.isValid()) return std::nullopt;
    const SidebarRow& row = model_->row(index.row());
    if (row.kind == SidebarRow::Kind::heading || !row.location.isFolder()) return std::nullopt;
    return FileDrop::of(event, row.location.url);
}

void Sidebar::showDropTarget(const QModelIndex& index) {
    if (!index.isValid()) DropLabel::hide(*this);
    if (index == dropTarget_) return;
    dropTarget_ = index;
    viewport()->update();
}

void Sidebar::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void Sidebar::dragMoveEvent(QDragMoveEvent* event) {
    const auto drop = dropAt(*event);
    if (!drop) {
        showDropTarget({});
        // Accepted all the same: a drag that was refused once would not be told of again.
        event->setDropAction(Qt::IgnoreAction);
        event->accept();
        return;
    }
    showDropTarget(indexAt(event->position().toPoint()));
    DropLabel::show(*viewport(), event->position().toPoint(), *drop);
    drop->accept(*event);
}

void Sidebar::dragLeaveEvent(QDragLeaveEvent*) { showDropTarget({}); }

void Sidebar::dropEvent(QDropEvent* event) {
    showDropTarget({});
    const auto drop = dropAt(*event);
    if (!drop) {
        event->ignore();
        return;
    }
    drop->accept(*event);
    emit dropped(*drop);
}

void Sidebar::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    if (!currentIndex().isValid() && model_ && event->reason() != Qt::MouseFocusReason)
        setCurrentIndex(moveCursor(MoveHome, Qt::NoModifier));
    viewport()->update();
}

}  // namespace tarn
