#include "Tarn/ui/pane/PaneGridView.h"

#include <algorithm>

#include <QtGui/QTextLayout>

#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/tags/TagDots.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int gap = Metrics::space6;
constexpr int margin = Metrics::space16;
constexpr int padding = Metrics::space6;
constexpr int nameLines = 2;
constexpr int narrowestCell = 96;
constexpr int frame = 16;  // milliseconds
constexpr double hiddenOpacity = 0.55;

/// A name in at most two lines, of which the first has `taken` less room; the second is elided in
/// its middle, so that the extension stays.
QStringList nameLinesOf(const QString& name, const QFont& font, int width, int taken) {
    const QFontMetrics metrics(font);
    if (metrics.horizontalAdvance(name) <= width - taken) return {name};
    QTextLayout layout(name, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    first.setLineWidth(width - taken);
    layout.endLayout();
    const auto end = static_cast<qsizetype>(first.textLength());
    return {name.left(end).trimmed(),
            metrics.elidedText(name.mid(end).trimmed(), Qt::ElideMiddle, width)};
}

/// Room of the dots before the first line of a name.
int dotsRoom(const FileItem& item) {
    const int dots = TagDots::width(item.tags.size());
    return dots > 0 ? dots + Metrics::space4 : 0;
}

bool isElided(const QString& name, const QFont& font, int width, int taken) {
    return nameLinesOf(name, font, width, taken).join(QString()).contains(QChar(0x2026)) &&
           !name.contains(QChar(0x2026));
}

}  // namespace

PaneGridView::PaneGridView(PaneModel& pane, QWidget* parent) : PaneView(pane, parent) {
    setObjectName(QStringLiteral("paneGrid"));
    setAccessibleName(tr("Files"));
    connect(&fadeTimer_, &QTimer::timeout, this, &PaneGridView::stepFades);
    connect(&pane, &PaneModel::iconSizeChanged, this, [this] {
        updateGeometries();
        viewport()->update();
    });
    begin();
}

int PaneGridView::iconSize() const { return static_cast<int>(pane().iconSize()); }

PaneGridView::Cells PaneGridView::cells() const {
    Cells cells;
    const int lines = nameLines * QFontMetrics(Fonts::body()).lineSpacing();
    cells.size = {std::max(narrowestCell, iconSize() + 2 * Metrics::space16),
                  padding + iconSize() + Metrics::space6 + lines + padding};
    const int room = std::max(cells.size.width(), viewport()->width() - 2 * margin);
    cells.columns = std::max(1, (room + gap) / (cells.size.width() + gap));
    // What is left over widens the cells, so that both edges stay straight.
    cells.pitch = (room + gap) / cells.columns;
    cells.size.setWidth(cells.pitch - gap);
    cells.left = margin;
    cells.vertical = cells.size.height() + gap;
    return cells;
}

int PaneGridView::stepHeight() const { return cells().vertical / 3; }

RowPlaces::Measures PaneGridView::measures() const {
    const Cells cells = this->cells();
    return {cells.columns, cells.vertical, Metrics::rowRoomy, margin};
}

int PaneGridView::headingMargin() const { return margin - Metrics::space8; }

QRect PaneGridView::rowRect(int row) const {
    const Cells cells = this->cells();
    const QRect rect(QPoint(cells.left + places().column(row) * cells.pitch, places().top(row)),
                     cells.size);
    const QRect line(cells.left, rect.top(), cells.columns * cells.pitch - gap, rect.height());
    return QStyle::visualRect(layoutDirection(), line, rect);
}

int PaneGridView::rowNearest(const QPoint& content) const {
    const Cells cells = this->cells();
    const int fromLeft = std::clamp((content.x() - cells.left) / cells.pitch, 0, cells.columns - 1);
    const int column = isRightToLeft() ? cells.columns - 1 - fromLeft : fromLeft;
    return places().nearest(content.y(), column);
}

int PaneGridView::rowAt(const QPoint& content) const {
    const int row = rowNearest(content);
    return row >= 0 && rowRect(row).contains(content) ? row : -1;
}

QItemSelection PaneGridView::rowsTouching(const QRect& content) const {
    QItemSelection touched;
    const auto rows = rowsIn(content);
    if (!rows) return touched;
    for (int row = rows->first; row <= rows->last; ++row) {
        if (rowRect(row).intersects(content)) touched.append(rowRange(row, row).front());
    }
    return touched;
}

int PaneGridView::rowAfter(int row, CursorAction action) const {
    const Cells cells = this->cells();
    const int page = std::max(1, viewport()->height() / cells.vertical) * cells.columns;
    const bool mirrored = isRightToLeft();
    switch (action) {
        case MoveUp:
            return places().above(row);
        case MoveDown:
            return places().below(row);
        case MoveLeft:
            return mirrored ? row + 1 : row - 1;
        case MoveRight:
            return mirrored ? row - 1 : row + 1;
        case MovePageUp:
            return row - page;
        case MovePageDown:
            return row + page;
        default:
            return row;
    }
}

void PaneGridView::showThumbnail(const URL& file) {
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0 &&
        isVisible()) {
        fades_[file].start();
        if (!fadeTimer_.isActive()) fadeTimer_.start(frame);
    }
    if (const auto row = pane().items().row(file))
        viewport()->update(visualRect(model()->index(*row, 0)));
}

double PaneGridView::fadedIn(const URL& file) const {
    const auto fade = fades_.find(file);
    if (fade == fades_.end()) return 1;
    return std::min(1.0, static_cast<double>(fade->second.elapsed()) / Metrics::fadeIn);
}

void PaneGridView::stepFades() {
    for (const auto& [file, since] : fades_)
        if (const auto row = pane().items().row(file))
            viewport()->update(visualRect(model()->index(*row, 0)));
    std::erase_if(fades_,
                  [](const auto& fade) { return fade.second.elapsed() >= Metrics::fadeIn; });
    if (fades_.empty()) fadeTimer_.stop();
}

void PaneGridView::paintPicture(QPainter& painter, const FileItem& item, const QRect& place) const {
    const auto pixels = static_cast<int>(iconSize() * devicePixelRatioF());
    const QPixmap picture = thumbnail_ ? thumbnail_(item, pixels) : QPixmap();
    if (picture.isNull()) {
        Icons::forItem(item).paint(&painter, place);
        return;
    }
    // Small pictures are not blown up.
    QSizeF size = picture.deviceIndependentSize();
    if (size.width() > place.width() || size.height() > place.height())
        size.scale(place.size(), Qt::KeepAspectRatio);
    QRectF target({}, size);
    target.moveCenter(QRectF(place).center());
    target.moveBottom(place.bottom());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double whole = painter.opacity();
    painter.setOpacity(whole * fadedIn(item.url));
    painter.drawPixmap(target, picture, QRectF(picture.rect()));
    // White pages must stand out on white.
    Paint::outline(painter, target, 0, Colors::current().border, Metrics::hairline);
    painter.setOpacity(whole);
}

void PaneGridView::paintRow(QPainter& painter, int row, const QRect& rect) {
    const FileItem& item = pane().items().item(row);
    Paint::row(painter, rect, isSelected(row), isHovered(row));
    if (hasCursor(row))
        Paint::focusRing(painter, QRectF(rect).adjusted(1, 1, -1, -1), Metrics::radiusRow);
    painter.setOpacity(item.isHidden || pane().isCut(item.url) ? hiddenOpacity : 1.0);
    const QRect place(rect.left() + (rect.width() - iconSize()) / 2, rect.top() + padding,
                      iconSize(), iconSize());
    paintPicture(painter, item, place);

    if (!isNamed(row)) paintName(painter, row, rect);
    painter.setOpacity(1);
}

QRect PaneGridView::nameRect(int row) const {
    const QRect cell = rowRect(row);
    const int top = cell.top() + padding + iconSize() + Metrics::space6;
    return {cell.left() + padding, top, cell.width() - 2 * padding,
            QFontMetrics(Fonts::body()).lineSpacing()};
}

void PaneGridView::paintName(QPainter& painter, int row, const QRect& rect) const {
    const FileItem& item = pane().items().item(row);
    painter.setFont(Fonts::body());
    painter.setPen(palette().color(QPalette::Text));
    const QFontMetrics metrics(painter.font());
    const int width = rect.width() - 2 * padding;
    const int dots = dotsRoom(item);
    QRect line(rect.left() + padding, rect.top() + padding + iconSize() + Metrics::space6, width,
               metrics.lineSpacing());
    bool isFirst = true;
    for (const QString& text :
         nameLinesOf(PaneItems::displayName(item), painter.font(), width, dots)) {
        QRect words = line;
        if (isFirst && dots > 0) {
            const int whole = metrics.horizontalAdvance(text) + dots;
            const QRect together((line.left() + line.right() + 1 - whole) / 2, line.top(), whole,
                                 line.height());
            TagDots::paint(painter, together, pane().tagColors(item), rowGround(row));
            words = together.adjusted(dots, 0, Metrics::space2, 0);
        }
        painter.drawText(words,
                         (words == line ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter |
                             Qt::TextSingleLine,
                         text);
        line.translate(0, line.height());
        isFirst = false;
    }
}

QString PaneGridView::elidedName(int row, const QPoint&) const {
    const QString name = PaneItems::displayName(pane().items().item(row));
    const int taken = dotsRoom(pane().items().item(row));
    return isElided(name, Fonts::body(), cells().size.width() - 2 * padding, taken) ? name
                                                                                    : QString();
}

}  // namespace tarn
