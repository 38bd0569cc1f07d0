#include "Tarn/ui/preview/FontView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/preview/DrawnImage.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int largeSizes[] = {12, 16, 24, 36, 48, 72};
constexpr int smallSizes[] = {14, 24, 40};
/// Height of a line, for letters of one pixel.
constexpr double lineHeight = 1.5;
constexpr int cell = 48;
constexpr int rowsOfBlock = 6;
constexpr std::size_t mostBlocks = 60;
/// The column in front of the samples that says how large they are.
constexpr int sizeColumn = 40;

int margin(bool isSmall) { return isSmall ? Metrics::space8 : Metrics::space24; }

}  // namespace

FontView::FontView(bool isSmall, QWidget* parent) : QAbstractScrollArea(parent), isSmall_(isSmall) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(isSmall ? Qt::NoFocus : Qt::StrongFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents, isSmall);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(cell);
    setAccessibleName(tr("Characters of the font"));
    new FocusOutline(*this);
}

std::vector<int> FontView::sizes() const {
    return isSmall_ ? std::vector<int>(std::begin(smallSizes), std::end(smallSizes))
                    : std::vector<int>(std::begin(largeSizes), std::end(largeSizes));
}

void FontView::showFont(const FontFacts& facts, const QString& sample) {
    clear();
    facts_ = facts;
    sample_ = sample;
    layOut();
    emit wanted();
}

void FontView::clear() {
    facts_ = {};
    sample_.clear();
    lines_.clear();
    blocks_.clear();
    verticalScrollBar()->setValue(0);
    layOut();
}

QSize FontView::room() const {
    return isVisible() ? viewport()->size() : QAbstractScrollArea::size();
}

int FontView::columns() const {
    return std::max(1, (room().width() - 2 * margin(isSmall_)) / cell);
}

int FontView::rowCount() const {
    if (isSmall_) return 0;
    const int characters = static_cast<int>(facts_.characters.size());
    return (characters + columns() - 1) / columns();
}

int FontView::blockHeight() const { return rowsOfBlock * cell; }

int FontView::linesHeight() const {
    double height = margin(isSmall_);
    for (const int size : sizes()) height += size * lineHeight;
    return static_cast<int>(std::lround(height)) + (isSmall_ ? 0 : Metrics::space24);
}

void FontView::layOut() {
    const int height = linesHeight() + rowCount() * cell + margin(isSmall_);
    verticalScrollBar()->setRange(0, isSmall_ ? 0 : std::max(0, height - room().height()));
    verticalScrollBar()->setPageStep(room().height());
    viewport()->update();
}

QString FontView::charactersOf(int block) const {
    const std::size_t each = static_cast<std::size_t>(columns()) * rowsOfBlock;
    const std::size_t first = static_cast<std::size_t>(block) * each;
    if (first >= facts_.characters.size()) return {};
    const std::size_t count = std::min(each, facts_.characters.size() - first);
    return QString::fromUcs4(&facts_.characters[first], static_cast<qsizetype>(count));
}

std::pair<int, int> FontView::seenBlocks() const {
    const int blocks = (rowCount() + rowsOfBlock - 1) / rowsOfBlock;
    const int top = verticalScrollBar()->value() - linesHeight();
    const int first = std::clamp(top / blockHeight(), 0, blocks);
    const int bottom = top + room().height();
    const int end = bottom <= 0 ? first : std::clamp(bottom / blockHeight() + 1, first, blocks);
    return {first, end};
}

std::optional<FontView::Wish> FontView::wish() const {
    if (facts_.glyphs == 0) return std::nullopt;
    const qreal ratio = devicePixelRatioF();
    const int width = static_cast<int>(
        (room().width() - 2 * margin(isSmall_) - (isSmall_ ? 0 : sizeColumn)) * ratio);
    if (width < 1) return std::nullopt;
    const std::vector<int> all = sizes();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto drawn = lines_.find(static_cast<int>(i));
        if (drawn != lines_.end() && drawn->second.width == width) continue;
        return Wish{true, static_cast<int>(i), width, static_cast<int>(all[i] * ratio), sample_};
    }
    const auto [first, end] = seenBlocks();
    for (int block = first; block < end; ++block) {
        const auto drawn = blocks_.find(block);
        if (drawn != blocks_.end() && drawn->second.width == columns()) continue;
        return Wish{false, block, columns(), static_cast<int>(cell * ratio), charactersOf(block)};
    }
    return std::nullopt;
}

void FontView::setPicture(const Wish& wish, const QImage& mask) {
    auto& drawn = wish.isLine ? lines_ : blocks_;
    while (!wish.isLine && drawn.size() >= mostBlocks) drawn.erase(drawn.begin());
    drawn[wish.index] = {mask, wish.width, devicePixelRatioF()};
    viewport()->update();
}

void FontView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    const Colors& colors = Colors::current();
    painter.fillRect(viewport()->rect(), colors.base);
    const int side = margin(isSmall_);
    double y = side - verticalScrollBar()->value();
    const std::vector<int> all = sizes();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double height = all[i] * lineHeight;
        if (!isSmall_) {
            painter.setFont(Fonts::small());
            painter.setPen(colors.secondary);
            painter.drawText(QRectF(side, y, sizeColumn, height), Qt::AlignLeft | Qt::AlignVCenter,
                             QString::number(all[i]));
        }
        const auto drawn = lines_.find(static_cast<int>(i));
        if (drawn != lines_.end() && !drawn->second.mask.isNull()) {
            QImage image = DrawnImage::tinted(drawn->second.mask, colors.text);
            image.setDevicePixelRatio(drawn->second.ratio);
            const QSizeF size = image.deviceIndependentSize();
            painter.drawImage(QPointF(side + (isSmall_ ? 0 : sizeColumn),
                                      std::round(y + (height - size.height()) / 2)),
                              image);
        }
        y += height;
    }
    if (!isSmall_) paintGrid(painter);
}

void FontView::paintGrid(QPainter& painter) {
    const Colors& colors = Colors::current();
    const int side = margin(isSmall_);
    const int top = linesHeight() - verticalScrollBar()->value();
    painter.fillRect(side, top - Metrics::space12, viewport()->width() - 2 * side,
                     Metrics::hairline, colors.separator);
    const auto [first, end] = seenBlocks();
    for (int block = first; block < end; ++block) {
        const auto drawn = blocks_.find(block);
        if (drawn == blocks_.end() || drawn->second.mask.isNull()) continue;
        if (drawn->second.width != columns()) continue;
        QImage image = DrawnImage::tinted(drawn->second.mask, colors.text);
        image.setDevicePixelRatio(drawn->second.ratio);
        painter.drawImage(QPointF(side, top + block * blockHeight()), image);
    }
}

void FontView::resizeEvent(QResizeEvent*) {
    layOut();
    emit wanted();
}

void FontView::scrollContentsBy(int, int) {
    viewport()->update();
    emit wanted();
}

bool FontView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip && !isSmall_) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const int x = help->pos().x() - margin(isSmall_);
        const int y = help->pos().y() + verticalScrollBar()->value() - linesHeight();
        const int column = x / cell;
        const auto at = static_cast<std::size_t>(y / cell * columns() + column);
        if (x < 0 || y < 0 || column >= columns() || at >= facts_.characters.size()) {
            QToolTip::hideText();
            return true;
        }
        const char32_t character = facts_.characters[at];
        QToolTip::showText(help->globalPos(),
                           tr("%1  U+%2")
                               .arg(QString::fromUcs4(&character, 1).toHtmlEscaped())
                               .arg(static_cast<uint>(character), 4, 16, QLatin1Char('0')),
                           this);
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

}  // namespace tarn
