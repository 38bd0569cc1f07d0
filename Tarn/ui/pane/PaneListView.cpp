#include "Tarn/ui/pane/PaneListView.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/pane/ColumnMenu.h"
#include "Tarn/ui/pane/SnippetLine.h"
#include "Tarn/ui/tags/TagDots.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int sideMargin = Metrics::space8;
constexpr int cellPadding = Metrics::space8;
/// In front of the icon: the arrow that unfolds a folder, and what each level is moved on by.
constexpr int arrowRoom = Metrics::space16;
constexpr int indentStep = Metrics::space16;

/// Hidden files, and those that were cut, are shown but step back.
constexpr double hiddenOpacity = 0.55;

/// What each column needs, as texts of the usual length; the name takes the rest.
constexpr const char* widestTexts[paneColumnCount] = {"",
                                                      "Wed 00, 0000 at 00:00 PM",
                                                      "0,000.0 MB ",
                                                      "PowerPoint 2007 presentation",
                                                      "~/Documents/Projects/2024",
                                                      "Wed 00, 0000 at 00:00 PM",
                                                      "Wed 00, 0000 at 00:00 PM",
                                                      "Important, Work, Home",
                                                      "downloads.example.org"};
/// Milliseconds after which a width that was dragged is kept.
constexpr int dragPause = 400;
/// Columns go, last first, before the name gets narrower than this.
constexpr int narrowestName = 200;
constexpr PaneColumn droppedFirst[] = {PaneColumn::source,   PaneColumn::kind, PaneColumn::added,
                                       PaneColumn::created,  PaneColumn::tags, PaneColumn::folder,
                                       PaneColumn::modified, PaneColumn::size};

int section(PaneColumn column) { return static_cast<int>(column); }

}  // namespace

PaneListView::PaneListView(PaneModel& pane, QWidget* parent)
    : PaneView(pane, parent), header_(new QHeaderView(Qt::Horizontal, this)) {
    setObjectName(QStringLiteral("paneList"));
    setAccessibleName(tr("Files"));
    header_->setAccessibleName(tr("Columns"));
    header_->setModel(&pane.items());
    header_->setSectionsClickable(true);
    header_->setHighlightSections(false);
    header_->setSectionsMovable(true);
    header_->setFirstSectionMovable(false);
    header_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header_, &QHeaderView::customContextMenuRequested, this, [this](const QPoint& point) {
        QMenu menu(header_);
        ColumnMenu::fill(menu, this->pane().columns());
        menu.exec(header_->mapToGlobal(point));
    });
    connect(header_, &QHeaderView::sectionMoved, this, [this](int column, int, int to) {
        viewport()->update();
        if (!isLayingOut_) this->pane().columns().move(static_cast<PaneColumn>(column), to - 1);
    });
    connect(&pane.columns(), &ListColumns::changed, this, [this] {
        measureColumns();
        layOutColumns();
        showSort();
        viewport()->update();
    });
    header_->setStretchLastSection(false);
    header_->setSortIndicatorShown(true);
    header_->setMinimumSectionSize(Metrics::smallestTarget);
    header_->setSectionResizeMode(QHeaderView::Interactive);
    header_->setSectionResizeMode(section(PaneColumn::name), QHeaderView::Stretch);
    header_->setFocusPolicy(Qt::NoFocus);
    connect(header_, &QHeaderView::sectionClicked, this, [this](int column) {
        if (const auto field = PaneItems::sortField(static_cast<PaneColumn>(column)))
            this->pane().sortBy(*field);
        showSort();
    });
    connect(header_, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        viewport()->update();
        if (isLayingOut_ || column == 0 || width <= 0) return;
        widths_[static_cast<std::size_t>(column)] = width;
        dragged_.insert(static_cast<PaneColumn>(column));
        keepWidths_.start();
    });
    connect(&pane, &PaneModel::sortChanged, this, &PaneListView::showSort);
    connect(&pane, &PaneModel::rowsChanged, this, &PaneListView::layOutColumns);
    connect(&pane, &PaneModel::snippetsChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&pane, &PaneModel::stateChanged, this, [this] {
        layOutColumns();
        showSort();
    });
    keepWidths_.setSingleShot(true);
    keepWidths_.setInterval(dragPause);
    connect(&keepWidths_, &QTimer::timeout, this, [this] {
        for (const PaneColumn column : std::exchange(dragged_, {}))
            this->pane().columns().setWidth(column,
                                            widths_[static_cast<std::size_t>(section(column))]);
    });
    measureColumns();
    showSort();
    begin();
}

void PaneListView::showSort() {
    // Results with the best first follow no column.
    if (pane().showsResults() && pane().isRanked()) {
        header_->setSortIndicator(-1, Qt::AscendingOrder);
        return;
    }
    for (int column = 0; column < paneColumnCount; ++column) {
        if (PaneItems::sortField(static_cast<PaneColumn>(column)) != pane().sort().field) continue;
        header_->setSortIndicator(
            column, pane().sort().ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
        return;
    }
    header_->setSortIndicator(-1, Qt::AscendingOrder);
}

void PaneListView::updateGeometries() {
    const int height = header_->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect area = viewport()->geometry();
    header_->setGeometry(area.left() + sideMargin, area.top() - height,
                         area.width() - 2 * sideMargin, height);
    layOutColumns();
    PaneView::updateGeometries();
}

void PaneListView::measureColumns() {
    const QFontMetrics metrics(Fonts::body());
    for (int column = 1; column < paneColumnCount; ++column) {
        const int kept = pane().columns().column(static_cast<PaneColumn>(column)).width;
        const int usual =
            metrics.horizontalAdvance(QString::fromUtf8(widestTexts[column])) + 2 * cellPadding;
        widths_[static_cast<std::size_t>(column)] = kept > 0 ? kept : usual;
    }
}

void PaneListView::layOutColumns() {
    const int room = header_->width() - narrowestName;
    bool shown[paneColumnCount] = {true};
    for (const ListColumns::Column& column : pane().columns().columns())
        shown[section(column.which)] = column.isShown;
    // Of the rows of a folder, everyone knows where they are.
    if (!pane().showsResults() && !pane().location().isQuery())
        shown[section(PaneColumn::folder)] = false;
    int wanted = 0;
    for (int column = 1; column < paneColumnCount; ++column)
        wanted += shown[column] ? widths_[static_cast<std::size_t>(column)] : 0;
    for (const PaneColumn column : droppedFirst) {
        if (wanted <= room) break;
        if (!shown[section(column)]) continue;
        shown[section(column)] = false;
        wanted -= widths_[static_cast<std::size_t>(column)];
    }
    isLayingOut_ = true;
    int place = 1;
    for (const ListColumns::Column& column : pane().columns().columns()) {
        const int from = header_->visualIndex(section(column.which));
        if (from != place) header_->moveSection(from, place);
        ++place;
    }
    for (int column = 1; column < paneColumnCount; ++column) {
        const int width = widths_[static_cast<std::size_t>(column)];
        header_->setSectionHidden(column, !shown[column]);
        if (shown[column] && header_->sectionSize(column) != width)
            header_->resizeSection(column, width);
    }
    isLayingOut_ = false;
}

void PaneListView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measureColumns();
        updateGeometries();
    }
    PaneView::changeEvent(event);
}

// --- Geometry

int PaneListView::rowHeight() const {
    return pane().showsSnippets() ? Metrics::rowTwoLines : Metrics::rowDefault;
}

QRect PaneListView::columnsRect(const QRect& row) const {
    if (!pane().showsSnippets()) return row;
    return row.adjusted(0, Metrics::space4, 0, -(Metrics::rowTwoLines / 2) + Metrics::space4);
}

int PaneListView::stepHeight() const { return rowHeight(); }

RowPlaces::Measures PaneListView::measures() const {
    return {1, rowHeight(), Metrics::rowRoomy, Metrics::space4};
}

QRect PaneListView::rowRect(int row) const {
    return {sideMargin, places().top(row), viewport()->width() - 2 * sideMargin, rowHeight()};
}

int PaneListView::headingMargin() const { return sideMargin; }

int PaneListView::rowNearest(const QPoint& content) const {
    return places().nearest(content.y(), 0);
}

int PaneListView::rowAt(const QPoint& content) const {
    if (content.x() < 0 || content.x() >= viewport()->width()) return -1;
    return places().rowAt(content.y(), 0);
}

QItemSelection PaneListView::rowsTouching(const QRect& content) const {
    const auto rows = rowsIn(content);
    return rows ? rowRange(rows->first, rows->last) : QItemSelection();
}

int PaneListView::rowAfter(int row, CursorAction action) const {
    const int page = std::max(1, viewport()->height() / rowHeight() - 1);
    switch (action) {
        case MoveUp:
            return row - 1;
        case MoveDown:
            return row + 1;
        case MovePageUp:
            return row - page;
        case MovePageDown:
            return row + page;
        default:
            return row;
    }
}

// --- Painting

QRect PaneListView::cellRect(const QRect& row, int column) const {
    if (header_->isSectionHidden(column)) return {};
    const QRect columns = columnsRect(row);
    const QRect cell(columns.left() + header_->sectionPosition(column), columns.top(),
                     header_->sectionSize(column), columns.height());
    return QStyle::visualRect(layoutDirection(), columns, cell)
        .adjusted(cellPadding, 0, -cellPadding, 0);
}

QRect PaneListView::without(const QRect& rect, int leading, int trailing) const {
    return isRightToLeft() ? rect.adjusted(trailing, 0, -leading, 0)
                           : rect.adjusted(leading, 0, -trailing, 0);
}

int PaneListView::indent(int row) const {
    return pane().showsTree() ? arrowRoom + pane().items().depth(row) * indentStep : 0;
}

QRect PaneListView::nameCell(int row, const QRect& rect) const {
    const QRect cell = cellRect(rect, section(PaneColumn::name));
    // Deep folders leave the name some room.
    return without(cell, std::min(indent(row), std::max(0, cell.width() - narrowestName / 2)), 0);
}

QRect PaneListView::arrowRect(int row, const QRect& rect) const {
    if (!pane().showsTree() || !pane().items().item(row).isDirectory) return {};
    const QRect name = nameCell(row, rect);
    return {isRightToLeft() ? name.right() + 1 : name.left() - arrowRoom, rect.top(), arrowRoom,
            rect.height()};
}

QRect PaneListView::nameRect(int row, const QRect& rect) const {
    const int dots = TagDots::width(pane().items().item(row).tags.size());
    return without(nameCell(row, rect), Metrics::iconRow + Metrics::space8,
                   dots > 0 ? dots + Metrics::space8 : 0);
}

QRect PaneListView::nameRect(int row) const {
    return without(nameCell(row, rowRect(row)), Metrics::iconRow + Metrics::space8, 0);
}

void PaneListView::paintArrow(QPainter& painter, int row, const QRect& rect) const {
    const QRect place = arrowRect(row, rect);
    if (place.isEmpty()) return;
    QRect arrow(0, 0, Metrics::space12, Metrics::space12);
    arrow.moveCenter(place.center() - QPoint(Metrics::space4 / 2, -1));
    Icons::symbol(pane().isUnfolded(pane().items().item(row).url) ? "chevron.down"
                  : isRightToLeft()                               ? "chevron.left"
                                                                  : "chevron.right",
                  Icons::Tint::secondary)
        .paint(&painter, arrow);
}

void PaneListView::paintRow(QPainter& painter, int row, const QRect& rect) {
    const FileItem& item = pane().items().item(row);
    const bool selected = isSelected(row);
    // A pixel of air between neighbours keeps several selected rows apart.
    Paint::row(painter, QRectF(rect).adjusted(0, 0.5, 0, -0.5), selected, isHovered(row));
    if (hasCursor(row))
        Paint::focusRing(painter, QRectF(rect).adjusted(1, 1, -1, -1), Metrics::radiusRow);

    const double opacity = item.isHidden || pane().isCut(item.url) ? hiddenOpacity : 1.0;
    painter.setOpacity(opacity);
    const QRect cell = nameCell(row, rect);
    paintArrow(painter, row, rect);
    const QRect iconRect(isRightToLeft() ? cell.right() + 1 - Metrics::iconRow : cell.left(),
                         rect.center().y() - Metrics::iconRow / 2 + 1, Metrics::iconRow,
                         Metrics::iconRow);
    Icons::forItem(item).paint(&painter, iconRect);

    painter.setFont(Fonts::body());
    painter.setPen(palette().color(QPalette::Text));
    const QFontMetrics metrics(painter.font());
    const auto leading = Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft);
    const auto trailing = isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight;
    if (!isNamed(row)) {
        const QRect text = nameRect(row, rect);
        const QString name = PaneItems::displayName(item);
        const QString shown = metrics.elidedText(name, Qt::ElideMiddle, text.width());
        painter.drawText(text, Qt::AlignVCenter | leading | Qt::TextSingleLine, shown);
        // The dots follow the name, where the eye is.
        if (!item.tags.empty()) {
            const std::size_t count = item.tags.size();
            const int from = metrics.horizontalAdvance(shown) + Metrics::space8;
            const QRect dots(text.left() + from, text.top(), TagDots::width(count), text.height());
            TagDots::paint(painter, QStyle::visualRect(layoutDirection(), text, dots),
                           pane().tagColors(item), rowGround(row));
        }
    }

    painter.setPen(palette().color(selected ? QPalette::Text : QPalette::PlaceholderText));
    for (int column = 1; column < paneColumnCount; ++column) {
        const QRect place = cellRect(rect, column);
        if (place.width() <= 0) continue;
        const QString value = model()->index(row, column).data().toString();
        const auto which = static_cast<PaneColumn>(column);
        if (which == PaneColumn::size || which == PaneColumn::modified ||
            which == PaneColumn::created || which == PaneColumn::added) {
            const QString shown = metrics.elidedText(value, Qt::ElideRight, place.width());
            Fonts::drawTabular(painter, place,
                               which == PaneColumn::size ? trailing
                               : isRightToLeft()         ? Qt::AlignRight
                                                         : Qt::AlignLeft,
                               shown);
        } else {
            painter.drawText(
                place, Qt::AlignVCenter | leading | Qt::TextSingleLine,
                metrics.elidedText(value,
                                   which == PaneColumn::folder ? Qt::ElideMiddle : Qt::ElideRight,
                                   place.width()));
        }
    }
    if (const TextMatch* match = pane().snippet(item)) {
        const QRect name = nameRect(row);
        const int top = columnsRect(rect).bottom();
        SnippetLine::paint(
            painter,
            isRightToLeft()
                ? QRect(rect.left() + cellPadding, top, name.right() - rect.left() - cellPadding,
                        rect.bottom() - Metrics::space4 - top)
                : QRect(name.left(), top, rect.right() - cellPadding - name.left(),
                        rect.bottom() - Metrics::space4 - top),
            *match, palette(), selected);
    }
    painter.setOpacity(1);
}

QString PaneListView::elidedName(int row, const QPoint& content) const {
    const QRect rect = rowRect(row);
    const QRect cell = cellRect(rect, section(PaneColumn::name));
    if (content.x() < cell.left() || content.x() > cell.right()) return {};
    const QString name = PaneItems::displayName(pane().items().item(row));
    const QFontMetrics metrics(Fonts::body());
    return metrics.horizontalAdvance(name) > nameRect(row, rect).width() ? name : QString();
}

// --- Folders that are unfolded in place

void PaneListView::mousePressEvent(QMouseEvent* event) {
    const int row = rowAt(event->pos() + QPoint(0, verticalOffset()));
    if (row >= 0 && event->button() == Qt::LeftButton) {
        const QRect rect = rowRect(row).translated(0, -verticalOffset());
        if (arrowRect(row, rect).contains(event->pos())) {
            toggle(row);
            takePress();
            return;
        }
    }
    PaneView::mousePressEvent(event);
}

void PaneListView::mouseDoubleClickEvent(QMouseEvent* event) {
    const int row = rowAt(event->pos() + QPoint(0, verticalOffset()));
    // Two quick clicks on an arrow unfold and fold; they open nothing.
    if (row >= 0 &&
        arrowRect(row, rowRect(row).translated(0, -verticalOffset())).contains(event->pos())) {
        toggle(row);
        takePress();
        return;
    }
    PaneView::mouseDoubleClickEvent(event);
}

void PaneListView::toggle(int row) {
    const URL folder = pane().items().item(row).url;
    if (pane().isUnfolded(folder))
        pane().foldChildren(folder);
    else
        pane().loadChildren(folder);
    viewport()->update();
}

void PaneListView::keyPressEvent(QKeyEvent* event) {
    const int row = currentIndex().row();
    const bool isPlain =
        event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
    const bool isSideways = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (!isPlain || !isSideways || row < 0 || row >= rowCount() || !pane().showsTree()) {
        PaneView::keyPressEvent(event);
        return;
    }
    const bool inwards = (event->key() == Qt::Key_Right) != isRightToLeft();
    const FileItem& item = pane().items().item(row);
    const bool isUnfolded = item.isDirectory && pane().isUnfolded(item.url);
    int target = -1;
    if (inwards && isUnfolded) {
        const bool hasChildren =
            row + 1 < rowCount() && pane().items().depth(row + 1) > pane().items().depth(row);
        if (hasChildren) target = row + 1;
    } else if (item.isDirectory && inwards != isUnfolded) {
        toggle(row);
    } else if (!inwards) {
        target = parentRow(row);
    }
    if (target < 0) return;
    selectionModel()->setCurrentIndex(
        model()->index(target, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(currentIndex());
}

}  // namespace tarn
