#include "Tarn/ui/pane/PaneListView.h"

#include <algorithm>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QScrollBar>

#include "Tarn/model/PaneModel.h"
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

/// Hidden files, and those that were cut, are shown but step back.
constexpr double hiddenOpacity = 0.55;

/// What each column needs, as texts of the usual length; the name takes the rest.
constexpr const char* widestTexts[paneColumnCount] = {"", "Wed 00, 0000 at 00:00 PM", "0,000.0 MB ",
                                                      "PowerPoint 2007 presentation",
                                                      "~/Documents/Projects/2024"};
/// Columns go, last first, before the name gets narrower than this.
constexpr int narrowestName = 200;
constexpr PaneColumn droppedFirst[] = {PaneColumn::kind, PaneColumn::folder, PaneColumn::modified,
                                       PaneColumn::size};

int section(PaneColumn column) { return static_cast<int>(column); }

}  // namespace

PaneListView::PaneListView(PaneModel& pane, QWidget* parent)
    : PaneView(pane, parent), header_(new QHeaderView(Qt::Horizontal, this)) {
    setObjectName(QStringLiteral("paneList"));
    setAccessibleName(tr("Files"));
    header_->setModel(&pane.items());
    header_->setSectionsClickable(true);
    header_->setHighlightSections(false);
    header_->setSectionsMovable(false);
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
        if (!isLayingOut_ && column > 0 && width > 0)
            widths_[static_cast<std::size_t>(column)] = width;
    });
    connect(&pane, &PaneModel::sortChanged, this, &PaneListView::showSort);
    connect(&pane, &PaneModel::rowsChanged, this, &PaneListView::layOutColumns);
    connect(&pane, &PaneModel::snippetsChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&pane, &PaneModel::stateChanged, this, [this] {
        layOutColumns();
        showSort();
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
    for (int column = 1; column < paneColumnCount; ++column)
        widths_[static_cast<std::size_t>(column)] =
            metrics.horizontalAdvance(QString::fromUtf8(widestTexts[column])) + 2 * cellPadding;
}

void PaneListView::layOutColumns() {
    const int room = header_->width() - narrowestName;
    bool shown[paneColumnCount] = {true, true, true, true, pane().showsResults()};
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

int PaneListView::contentHeight() const { return rowCount() * rowHeight() + 2 * Metrics::space4; }

QRect PaneListView::rowRect(int row) const {
    return {sideMargin, Metrics::space4 + row * rowHeight(), viewport()->width() - 2 * sideMargin,
            rowHeight()};
}

std::optional<PaneView::Rows> PaneListView::rowsIn(const QRect& content) const {
    const int first = std::max(0, (content.top() - Metrics::space4) / rowHeight());
    const int last = std::min(rowCount() - 1, (content.bottom() - Metrics::space4) / rowHeight());
    if (first > last || content.bottom() < Metrics::space4) return std::nullopt;
    return Rows{first, last};
}

int PaneListView::rowNearest(const QPoint& content) const {
    if (rowCount() == 0) return -1;
    return std::clamp((content.y() - Metrics::space4) / rowHeight(), 0, rowCount() - 1);
}

int PaneListView::rowAt(const QPoint& content) const {
    if (content.y() < Metrics::space4 || content.x() < 0 || content.x() >= viewport()->width())
        return -1;
    const int row = (content.y() - Metrics::space4) / rowHeight();
    return row < rowCount() ? row : -1;
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
    return QRect(columns.left() + header_->sectionPosition(column), columns.top(),
                 header_->sectionSize(column), columns.height())
        .adjusted(cellPadding, 0, -cellPadding, 0);
}

QRect PaneListView::nameRect(const QRect& row, const FileItem& item) const {
    const int dots = TagDots::width(item.tags.size());
    return cellRect(row, section(PaneColumn::name))
        .adjusted(Metrics::iconRow + Metrics::space8, 0, dots > 0 ? -dots - Metrics::space8 : 0, 0);
}

QRect PaneListView::nameRect(int row) const {
    return cellRect(rowRect(row), section(PaneColumn::name))
        .adjusted(Metrics::iconRow + Metrics::space8, 0, 0, 0);
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
    const QRect nameCell = cellRect(rect, section(PaneColumn::name));
    const QRect iconRect(nameCell.left(), rect.center().y() - Metrics::iconRow / 2 + 1,
                         Metrics::iconRow, Metrics::iconRow);
    Icons::forItem(item).paint(&painter, iconRect);

    painter.setFont(Fonts::body());
    painter.setPen(palette().color(QPalette::Text));
    const QFontMetrics metrics(painter.font());
    if (!isNamed(row)) {
        const QRect text = nameRect(rect, item);
        const QString name = PaneItems::displayName(item);
        const QString shown = metrics.elidedText(name, Qt::ElideMiddle, text.width());
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
        // The dots follow the name, where the eye is.
        if (!item.tags.empty()) {
            const QRect dots = text.adjusted(metrics.horizontalAdvance(shown) + Metrics::space8, 0,
                                             text.width(), 0);
            TagDots::paint(painter, dots, pane().tagColors(item), rowGround(row));
        }
    }

    painter.setPen(palette().color(selected ? QPalette::Text : QPalette::PlaceholderText));
    for (int column = 1; column < paneColumnCount; ++column) {
        const QRect cell = cellRect(rect, column);
        if (cell.width() <= 0) continue;
        const QString value = model()->index(row, column).data().toString();
        const auto which = static_cast<PaneColumn>(column);
        if (which == PaneColumn::size || which == PaneColumn::modified) {
            const QString shown = metrics.elidedText(value, Qt::ElideRight, cell.width());
            Fonts::drawTabular(painter, cell,
                               which == PaneColumn::size ? Qt::AlignRight : Qt::AlignLeft, shown);
        } else {
            painter.drawText(
                cell, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                metrics.elidedText(value,
                                   which == PaneColumn::folder ? Qt::ElideMiddle : Qt::ElideRight,
                                   cell.width()));
        }
    }
    if (const TextMatch* match = pane().snippet(item)) {
        const QRect name = nameRect(row);
        const int top = columnsRect(rect).bottom();
        SnippetLine::paint(painter,
                           QRect(name.left(), top, rect.right() - cellPadding - name.left(),
                                 rect.bottom() - Metrics::space4 - top),
                           *match, palette(), selected);
    }
    painter.setOpacity(1);
}

QString PaneListView::elidedName(int row, const QPoint& content) const {
    const QRect rect = rowRect(row);
    if (content.x() > cellRect(rect, section(PaneColumn::name)).right()) return {};
    const QString name = PaneItems::displayName(pane().items().item(row));
    const QFontMetrics metrics(Fonts::body());
    const FileItem& item = pane().items().item(row);
    return metrics.horizontalAdvance(name) > nameRect(rect, item).width() ? name : QString();
}

}  // namespace tarn
