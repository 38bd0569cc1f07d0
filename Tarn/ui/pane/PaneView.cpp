#include "Tarn/ui/pane/PaneView.h"

#include <algorithm>

#include <QtCore/QTimer>
#include <QtGui/QHelpEvent>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrag.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/pane/PaneAccessibility.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// Milliseconds after which typed letters begin a new word.
constexpr qint64 typingPause = 1000;

constexpr int statusRoom = 3 * Metrics::space12;

constexpr int bandFillAlpha = 40;

/// While something is dragged near the upper or lower edge, the rows move by themselves.
constexpr int dragScrollEdge = Metrics::space24;
constexpr int dragScrollPixels = Metrics::space12;
constexpr int dragScrollInterval = 30;  // milliseconds
/// How long something is held over a folder until that opens, in milliseconds.
constexpr int springDelay = 900;

}  // namespace

PaneView::PaneView(PaneModel& pane, QWidget* parent) : QAbstractItemView(parent), pane_(pane) {
    PaneAccessibility::install();
}

void PaneView::begin() {
    setModel(&pane_.items());
    setSelectionModel(&pane_.selection());
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    setDragEnabled(true);
    setAcceptDrops(true);
    setAutoScroll(true);
    // The default context menu of a scroll area holds nothing.
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&pane_.items(), &QAbstractItemModel::modelAboutToBeReset, this, &PaneView::notePlace);
    connect(&pane_, &PaneModel::rowsChanged, this, [this] {
        updateGeometries();
        restorePlace();
        viewport()->update();
        if (awaited_ && pane_.items().row(*awaited_)) endNaming();
    });
    connect(&pane_, &PaneModel::tagColorsChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&pane_, &PaneModel::renamingChanged, this, &PaneView::renamingChanged);
    connect(&pane_, &PaneModel::locationChanged, this, [this] {
        place_.reset();
        folding_.reset();
        beforeResults_.reset();
        updateGeometries();
        verticalScrollBar()->setValue(0);
        viewport()->update();
    });
    // Whoever scrolls works with the rows.
    connect(verticalScrollBar(), &QAbstractSlider::actionTriggered, this,
            [this] { pane_.holdRows(); });
    connect(&pane_, &PaneModel::cutChanged, viewport(), qOverload<>(&QWidget::update));
    spring_.setSingleShot(true);
    spring_.setInterval(springDelay);
    connect(&spring_, &QTimer::timeout, this, &PaneView::openDropTarget);
    connect(&dragScroll_, &QTimer::timeout, this,
            [this] { verticalScrollBar()->setValue(verticalOffset() + dragScrollStep_); });
    connect(&pane_.selection(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (!current.isValid()) return;
                if (isVisible())
                    PaneAccessibility::tellFocus(*this, current.row());
                else
                    scrollTo(current);
            });
}

int PaneView::rowCount() const { return pane_.items().count(); }

const RowPlaces& PaneView::places() const {
    places_.update(pane_.items().rows(), measures());
    return places_;
}

std::optional<PaneView::Rows> PaneView::rowsIn(const QRect& content) const {
    return places().rowsIn(content.top(), content.bottom());
}

int PaneView::parentRow(int row) const {
    const int depth = pane_.items().depth(row);
    if (depth == 0) return -1;
    int parent = row - 1;
    while (parent > 0 && pane_.items().depth(parent) >= depth) --parent;
    return parent;
}

int PaneView::verticalOffset() const { return verticalScrollBar()->value(); }

QPoint PaneView::toContent(const QPoint& viewportPoint) const {
    return viewportPoint + QPoint(0, verticalOffset());
}

QRect PaneView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    return rowRect(index.row()).translated(0, -verticalOffset());
}

QModelIndex PaneView::indexAt(const QPoint& point) const {
    const int row = rowAt(toContent(point));
    return row < 0 ? QModelIndex() : model()->index(row, 0);
}

void PaneView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid()) return;
    const QRect rect = rowRect(index.row());
    int top = rect.top() - Metrics::space4;
    // With the heading that it stands below.
    if (const auto heading = places().headingAt(rect.top() - 1))
        top = places().headingTop(*heading);
    const int bottom = rect.bottom() + Metrics::space4;
    const int height = viewport()->height();
    const int clear = std::max(height - statusRoom, bottom - top);
    int value = verticalOffset();
    switch (hint) {
        case EnsureVisible:
            if (top < value)
                value = top;
            else if (bottom > value + clear)
                value = bottom - clear;
            break;
        case PositionAtTop:
            value = top;
            break;
        case PositionAtBottom:
            value = bottom - clear;
            break;
        case PositionAtCenter:
            value = rect.center().y() - height / 2;
            break;
    }
    verticalScrollBar()->setValue(value);
}

std::optional<PaneView::Rows> PaneView::visibleRows() const {
    return rowsIn(QRect(QPoint(0, verticalOffset()), viewport()->size()));
}

void PaneView::updateGeometries() {
    // The last row can be scrolled clear of the status that floats above it.
    const int height = places().height();
    const int hidden = height + statusRoom - viewport()->height();
    verticalScrollBar()->setRange(0, height > viewport()->height() ? hidden : 0);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(stepHeight());
    QAbstractItemView::updateGeometries();
    placeEditor();
}

void PaneView::scrollContentsBy(int dx, int dy) {
    viewport()->scroll(dx, dy);
    placeEditor();
    hoverHeading(std::nullopt);
    hover(rowAt(toContent(viewport()->mapFromGlobal(QCursor::pos()))));
}

void PaneView::resizeEvent(QResizeEvent* event) {
    updateGeometries();
    QAbstractItemView::resizeEvent(event);
}

// --- Painting

bool PaneView::isSelected(int row) const { return selectionModel()->isRowSelected(row); }

bool PaneView::hasCursor(int row) const {
    return showsCursor_ && hasFocus() && currentIndex().row() == row;
}

QColor PaneView::rowGround(int row) const {
    const Colors& colors = Colors::current();
    if (isSelected(row)) return colors.selection;
    return isHovered(row) ? colors.tinted(colors.base, Metrics::hoverTint) : colors.base;
}

void PaneView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(event->rect(), palette().base());
    const QPoint offset(0, verticalOffset());
    if (const auto rows = rowsIn(event->rect().translated(offset))) {
        for (int row = rows->first; row <= rows->last; ++row)
            paintRow(painter, row, rowRect(row).translated(-offset));
    }
    const int top = event->rect().top() + offset.y();
    if (const auto headings = places().headingsIn(top, event->rect().bottom() + offset.y())) {
        for (int group = headings->first; group <= headings->last; ++group)
            paintHeading(painter, group, headingRect(group).translated(-offset));
    }
    paintBand(painter);
    if (dropRow_) {
        const QRect target = *dropRow_ >= 0 && *dropRow_ < rowCount()
                                 ? rowRect(*dropRow_).translated(-offset)
                                 : viewport()->rect();
        Paint::focusRing(painter, QRectF(target).adjusted(1, 1, -1, -1), Metrics::radiusRow);
    }
    // While results stream in, what has been on the screen keeps its place.
    if (const auto rows = visibleRows()) pane_.rowsSeen(rows->first, rows->last);
}

QRect PaneView::headingRect(int group) const {
    return {headingMargin(), places().headingTop(group), viewport()->width() - 2 * headingMargin(),
            measures().headingHeight};
}

void PaneView::paintHeading(QPainter& painter, int group, const QRect& rect) const {
    const RowGroup& heading = pane_.groups()[static_cast<std::size_t>(group)];
    // Nearer to its rows than to those of the group above.
    const QRect line = rect.adjusted(0, Metrics::space6, 0, -Metrics::space2);
    Paint::row(painter, line, false, hoveredHeading_ == group);
    const bool mirrored = isRightToLeft();
    const auto place = [&](int from, int width) {
        const QRect spot(line.left() + from, line.top(), width, line.height());
        return QStyle::visualRect(layoutDirection(), line, spot);
    };
    const std::string_view folded = mirrored ? "chevron.left" : "chevron.right";
    QRect arrow = place(Metrics::space8, Metrics::space12);
    arrow.setTop(arrow.center().y() - Metrics::space6 + 1);
    arrow.setHeight(Metrics::space12);
    Icons::symbol(heading.isFolded ? folded : "chevron.down", Icons::Tint::secondary)
        .paint(&painter, arrow);
    int left = Metrics::space8 + Metrics::space12 + Metrics::space6;
    const QFont bold = Fonts::semibold(Fonts::body());
    const QString count = QLocale().toString(heading.itemCount);
    const int countWidth = Fonts::textWidth(Fonts::small(), count) + Metrics::space8;
    const int room = line.width() - left - countWidth - Metrics::space8;
    const QString title = QFontMetrics(bold).elidedText(groupText(pane_.groupBy(), heading.title),
                                                        Qt::ElideRight, room);
    const int width = Fonts::textWidth(bold, title);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(place(left, width), Qt::AlignVCenter | Qt::TextSingleLine, title);
    left += width + Metrics::space8;
    painter.setFont(Fonts::small());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(place(left, countWidth), Qt::AlignVCenter | Qt::TextSingleLine, count);
}

void PaneView::paintBand(QPainter& painter) const {
    if (!bandStart_) return;
    const QRect band = QRect(*bandStart_, bandEnd_).normalized().translated(0, -verticalOffset());
    QColor fill = Colors::current().accent;
    fill.setAlpha(bandFillAlpha);
    Paint::fill(painter, band, Metrics::radiusSmall, fill);
    Paint::outline(painter, band, Metrics::radiusSmall, Colors::current().accent,
                   Metrics::hairline);
}

// --- Pointer

void PaneView::hover(int row) {
    if (row == hovered_) return;
    const int old = hovered_;
    hovered_ = row;
    const QPoint offset(0, verticalOffset());
    if (old >= 0 && old < rowCount()) viewport()->update(rowRect(old).translated(-offset));
    if (row >= 0) viewport()->update(rowRect(row).translated(-offset));
}

void PaneView::hoverHeading(std::optional<int> heading) {
    if (heading == hoveredHeading_) return;
    for (const auto& changed : {hoveredHeading_, heading})
        if (changed && *changed < static_cast<int>(pane_.groups().size()))
            viewport()->update(headingRect(*changed).translated(0, -verticalOffset()));
    hoveredHeading_ = heading;
}

bool PaneView::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::Leave:
            hover(-1);
            hoverHeading(std::nullopt);
            break;
        case QEvent::ToolTip: {
            const auto* help = static_cast<QHelpEvent*>(event);
            const QPoint point = toContent(help->pos());
            const int row = rowAt(point);
            const QString name = row < 0 ? QString() : elidedName(row, point);
            if (name.isEmpty())
                QToolTip::hideText();
            else
                QToolTip::showText(help->globalPos(), name.toHtmlEscaped(), viewport(),
                                   visualRect(model()->index(row, 0)));
            return true;
        }
        default:
            break;
    }
    return QAbstractItemView::viewportEvent(event);
}

void PaneView::mousePressEvent(QMouseEvent* event) {
    showsCursor_ = false;
    sincePointed_.start();
    pane_.holdRows();
    if (event->button() == Qt::MiddleButton) {
        asidePressed_ = rowAt(toContent(event->pos()));
        return;
    }
    const auto heading = places().headingAt(toContent(event->pos()).y());
    if (heading && event->button() == Qt::LeftButton) {
        const RowGroup group = pane_.groups()[static_cast<std::size_t>(*heading)];
        folding_ = Folding{group.title, !group.isFolded};
        pane_.setGroupFolded(group.title, !group.isFolded);
        takePress();
        return;
    }
    QAbstractItemView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && !indexAt(event->pos()).isValid()) {
        bandStart_ = bandEnd_ = toContent(event->pos());
    }
}

void PaneView::mouseMoveEvent(QMouseEvent* event) {
    const int row = rowAt(toContent(event->pos()));
    sincePointed_.start();
    hover(row);
    hoverHeading(places().headingAt(toContent(event->pos()).y()));
    if (row >= 0) pane_.holdRows();
    if (bandStart_) {
        bandEnd_ = toContent(event->pos());
        viewport()->update();
    }
    QAbstractItemView::mouseMoveEvent(event);
}

void PaneView::mouseReleaseEvent(QMouseEvent* event) {
    if (std::exchange(pressIsTaken_, false)) return;
    if (event->button() == Qt::MiddleButton) {
        const int row = rowAt(toContent(event->pos()));
        if (row >= 0 && row == asidePressed_) emit openedAside({pane_.items().item(row)});
        return;
    }
    QAbstractItemView::mouseReleaseEvent(event);
    if (!bandStart_) return;
    bandStart_.reset();
    viewport()->update();
}

// --- Dragging

void PaneView::startDrag(Qt::DropActions) {
    const std::vector<FileItem> items = pane_.selectedItems();
    if (items.empty()) return;
    hover(-1);
    const QPixmap image = FileDrag::image(items, dragPicture_, devicePixelRatioF());
    if (pane_.showsMembers()) {
        emit membersDragged(image);
        return;
    }
    std::vector<URL> urls;
    urls.reserve(items.size());
    for (const FileItem& item : items) urls.push_back(item.url);
    FileDrag::start(*this, urls, image);
}

std::optional<std::pair<URL, int>> PaneView::dropTarget(const QPoint& point) const {
    if (const int row = rowAt(toContent(point)); row >= 0 && !pane_.showsMembers()) {
        const FileItem& item = pane_.items().item(row);
        if (item.isDirectory) return std::pair(item.url, row);
        // Beside what is in an unfolded folder, that folder is meant.
        if (const int parent = parentRow(row); parent >= 0)
            return std::pair(pane_.items().item(parent).url, parent);
    }
    if (pane_.location().isFolder() && !pane_.showsResults())
        return std::pair(pane_.location().url, -1);
    return std::nullopt;
}

void PaneView::scrollWhileDragging(std::optional<QPoint> point) {
    dragScrollStep_ = 0;
    if (point && point->y() < dragScrollEdge) dragScrollStep_ = -dragScrollPixels;
    if (point && point->y() > viewport()->height() - dragScrollEdge)
        dragScrollStep_ = dragScrollPixels;
    if (dragScrollStep_ == 0)
        dragScroll_.stop();
    else if (!dragScroll_.isActive())
        dragScroll_.start(dragScrollInterval);
}

void PaneView::showDropTarget(std::optional<int> row) {
    dropFolder_.reset();
    if (row && *row >= 0) dropFolder_ = pane_.items().item(*row).url;
    if (row == dropRow_) return;
    dropRow_ = row;
    if (dropFolder_)
        spring_.start();
    else
        spring_.stop();
    viewport()->update();
}

void PaneView::openDropTarget() {
    if (!dropFolder_) return;
    const URL folder = *dropFolder_;
    // It takes the drop from now on, even if the pointer stays where it is.
    showDropTarget(-1);
    pane_.navigate(Location::folder(folder));
}

void PaneView::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void PaneView::dragMoveEvent(QDragMoveEvent* event) {
    const QPoint point = event->position().toPoint();
    scrollWhileDragging(point);
    const auto target = dropTarget(point);
    auto drop = target ? FileDrop::of(*event, target->first) : std::nullopt;
    int row = target ? target->second : -1;
    // Over a folder that is itself being dragged, its neighbours mean the pane.
    if (!drop && row >= 0 && pane_.location().isFolder() && !pane_.showsResults()) {
        row = -1;
        drop = FileDrop::of(*event, pane_.location().url);
    }
    if (!drop) {
        showDropTarget(std::nullopt);
        DropLabel::hide(*this);
        // Accepted all the same: a drag that was refused once would not be told of again.
        event->setDropAction(Qt::IgnoreAction);
        event->accept();
        return;
    }
    showDropTarget(row);
    DropLabel::show(*viewport(), point, *drop);
    drop->accept(*event);
}

void PaneView::dragLeaveEvent(QDragLeaveEvent*) {
    scrollWhileDragging(std::nullopt);
    showDropTarget(std::nullopt);
    DropLabel::hide(*this);
}

void PaneView::dropEvent(QDropEvent* event) {
    // Where the label has said, whatever has become of the rows since.
    std::optional<URL> folder = dropFolder_;
    if (!folder && dropRow_ && pane_.location().isFolder()) folder = pane_.location().url;
    scrollWhileDragging(std::nullopt);
    showDropTarget(std::nullopt);
    DropLabel::hide(*this);
    const auto drop = folder ? FileDrop::of(*event, *folder) : std::nullopt;
    if (!drop) {
        event->ignore();
        return;
    }
    drop->accept(*event);
    emit dropped(*drop);
}

// --- Selection

QItemSelection PaneView::rowRange(int first, int last) const {
    return QItemSelection(model()->index(first, 0), model()->index(last, paneColumnCount - 1));
}

void PaneView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    const QPoint offset(0, verticalOffset());
    if (bandStart_) {
        const QRect band = QRect(*bandStart_, bandEnd_).normalized();
        selectionModel()->select(rowsTouching(band), command);
        return;
    }
    // The corners are the row where the selection began and the one it has come to.
    const int from = rowNearest(rect.topLeft() + offset);
    const int to = rowNearest(rect.bottomRight() + offset);
    if (from < 0 || to < 0) {
        selectionModel()->select(QItemSelection(), command);
        return;
    }
    selectionModel()->select(rowRange(std::min(from, to), std::max(from, to)), command);
}

QRegion PaneView::visualRegionForSelection(const QItemSelection& selection) const {
    const auto visible = visibleRows();
    if (!visible) return {};
    QRegion region;
    const QPoint offset(0, verticalOffset());
    for (const QItemSelectionRange& range : selection) {
        const int first = std::max(range.top(), visible->first);
        const int last = std::min(range.bottom(), visible->last);
        for (int row = first; row <= last; ++row) region += rowRect(row).translated(-offset);
    }
    return region;
}

// --- Keyboard

void PaneView::enter() {
    setFocus(Qt::OtherFocusReason);
    showsCursor_ = true;
    if (rowCount() == 0) return;
    if (!currentIndex().isValid() || !selectionModel()->hasSelection())
        selectionModel()->setCurrentIndex(
            currentIndex().isValid() ? currentIndex() : model()->index(0, 0),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(currentIndex());
    viewport()->update();
}

QModelIndex PaneView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    if (rowCount() == 0) return {};
    const int current = currentIndex().row();
    if (current < 0) return model()->index(action == MoveEnd ? rowCount() - 1 : 0, 0);
    int row = current;
    switch (action) {
        case MoveHome:
            row = 0;
            break;
        case MoveEnd:
            row = rowCount() - 1;
            break;
        case MovePrevious:
            row = current - 1;
            break;
        case MoveNext:
            row = current + 1;
            break;
        default:
            row = rowAfter(current, action);
    }
    return model()->index(std::clamp(row, 0, rowCount() - 1), 0);
}

bool PaneView::isTyping() const {
    return !typed_.isEmpty() && sinceTyped_.isValid() && sinceTyped_.elapsed() < typingPause;
}

bool PaneView::event(QEvent* event) {
    // A blank inside of a name that is being typed is no shortcut.
    if (event->type() == QEvent::ShortcutOverride && isTyping()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Space && key->modifiers() == Qt::NoModifier) {
            event->accept();
            return true;
        }
    }
    return QAbstractItemView::event(event);
}

void PaneView::focusInEvent(QFocusEvent* event) {
    // Who comes by the keyboard sees where it is.
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        showsCursor_ = true;
    QAbstractItemView::focusInEvent(event);
    viewport()->update();
}

bool PaneView::selectFirst(const QKeyEvent& event) {
    constexpr int keys[] = {Qt::Key_Up,   Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right,
                            Qt::Key_Home, Qt::Key_End,  Qt::Key_PageUp, Qt::Key_PageDown};
    if (std::ranges::find(keys, event.key()) == std::end(keys) || rowCount() == 0 ||
        (event.modifiers() & ~Qt::KeypadModifier) || selectionModel()->hasSelection())
        return false;
    int row = std::max(0, currentIndex().row());
    if (event.key() == Qt::Key_Home) row = 0;
    if (event.key() == Qt::Key_End) row = rowCount() - 1;
    selectionModel()->setCurrentIndex(
        model()->index(row, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(model()->index(row, 0));
    viewport()->update();
    return true;
}

void PaneView::keyPressEvent(QKeyEvent* event) {
    showsCursor_ = true;
    pane_.holdRows();
    if (event->key() == Qt::Key_Up && event->modifiers() == Qt::NoModifier &&
        currentIndex().row() <= 0 && visibleRows()) {
        emit leftAtTop();
        if (!hasFocus() || selectionModel()->hasSelection()) return;
    }
    if (selectFirst(*event)) return;
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && event->modifiers() == Qt::ControlModifier) {
        emit openedAside(pane_.selectedItems());
        return;
    }
    if (isReturn && event->modifiers() == Qt::NoModifier && !pane_.returnOpens()) {
        emit renamePressed();
        return;
    }
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && isTyping()) {
        keyboardSearch(event->text());
        return;
    }
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier) {
        pane_.goBack();
        return;
    }
    // A key that moves or opens ends the word that was being typed.
    if (event->text().isEmpty() || !event->text().front().isPrint()) {
        if (event->key() != Qt::Key_Shift) typed_.clear();
    }
    QAbstractItemView::keyPressEvent(event);
    viewport()->update();
}

void PaneView::keyboardSearch(const QString& text) {
    if (text.isEmpty() || !text.front().isPrint()) return;
    const bool goesOn = isTyping();
    const bool repeats = goesOn && typed_ == text;
    typed_ = goesOn && !repeats ? typed_ + text : text;
    sinceTyped_.start();
    const int current = std::max(0, currentIndex().row());
    // One letter looks further on, so that pressing it again leads to the next name with it.
    const bool isAtOne = selectionModel()->isSelected(currentIndex());
    const int from = (goesOn && !repeats) || !isAtOne ? current : current + 1;
    const auto row = pane_.items().rowWithPrefix(typed_.toStdString(), from);
    if (!row) return;
    selectionModel()->setCurrentIndex(
        model()->index(*row, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(model()->index(*row, 0));
}

}  // namespace tarn
