#include "Tarn/ui/preview/PageView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr qsizetype memoryBytes = qsizetype{96} << 20;
constexpr int gap = Metrics::space12;
constexpr PageSize letter = {612, 792};
/// A page is not blown up beyond this for the sake of filling a wide view.
constexpr double widestScale = 1.6;
constexpr double leastZoom = 0.25;
constexpr double mostZoom = 6;
constexpr double zoomStep = 1.25;
/// The helper draws no larger picture.
constexpr double mostPixels = 12e6;
constexpr std::size_t mostTexts = 64;
constexpr float selectionAlpha = 0.35F;
constexpr double nearLetter = 40;  // points

bool isKnown(const PageSize& size) { return size.width > 0 && size.height > 0; }

}  // namespace

PageView::PageView(QWidget* parent) : QAbstractScrollArea(parent), pictures_(memoryBytes) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setMouseTracking(true);
    verticalScrollBar()->setSingleStep(3 * Metrics::space16);
    setAccessibleName(tr("Pages"));
    new FocusOutline(*this);
}

void PageView::setStill(bool isStill) {
    isStill_ = isStill;
    setFocusPolicy(isStill ? Qt::NoFocus : Qt::StrongFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents, isStill);
    setVerticalScrollBarPolicy(isStill ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(isStill ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
}

void PageView::setPages(int count, std::vector<PageSize> sizes) {
    clear();
    count_ = isStill_ ? std::min(count, 1) : count;
    sizes_ = std::move(sizes);
    sizes_.resize(static_cast<std::size_t>(count_));
    layOut(/*keepsPlace=*/false);
}

void PageView::setSizes(const std::vector<PageSize>& sizes, int first) {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const std::size_t page = static_cast<std::size_t>(first) + i;
        if (page < sizes_.size()) sizes_[page] = sizes[i];
    }
    layOut(/*keepsPlace=*/true);
}

void PageView::clear() {
    count_ = 0;
    sizes_.clear();
    tops_.clear();
    pictures_.clear();
    texts_.clear();
    selectedPage_ = -1;
    shownPage_ = -1;
    zoom_ = 1;
    verticalScrollBar()->setValue(0);
    layOut(/*keepsPlace=*/false);
}

QSize PageView::room() const {
    // A view that was never shown has a size, but has not handed it down yet.
    return isVisible() ? viewport()->size() : QAbstractScrollArea::size();
}

PageSize PageView::sizeOf(int page) const {
    const PageSize& own = sizes_[static_cast<std::size_t>(page)];
    if (isKnown(own)) return own;
    return !sizes_.empty() && isKnown(sizes_.front()) ? sizes_.front() : letter;
}

double PageView::scale() const {
    const int margins = isStill_ ? 0 : 2 * Metrics::space24;
    const double fitting = std::max(40, room().width() - margins) / widest_;
    return (isStill_ ? fitting : std::min(fitting, widestScale)) * zoom_;
}

void PageView::layOut(bool keepsPlace) {
    const int page = keepsPlace && !tops_.empty() ? pageAt(0) : 0;
    const double within =
        keepsPlace && !tops_.empty() && page < static_cast<int>(tops_.size())
            ? static_cast<double>(-pageRect(page).top()) / std::max(1, pageRect(page).height())
            : 0;
    widest_ = 1;
    for (int i = 0; i < count_; ++i) widest_ = std::max<double>(widest_, sizeOf(i).width);
    tops_.resize(static_cast<std::size_t>(count_));
    int y = isStill_ ? 0 : gap;
    for (int i = 0; i < count_; ++i) {
        tops_[static_cast<std::size_t>(i)] = y;
        y += static_cast<int>(std::lround(sizeOf(i).height * scale())) + gap;
    }
    height_ = y;
    verticalScrollBar()->setRange(0, isStill_ ? 0 : std::max(0, height_ - room().height()));
    verticalScrollBar()->setPageStep(room().height() - gap);
    const int width = static_cast<int>(std::lround(widest_ * scale())) + 2 * Metrics::space24;
    horizontalScrollBar()->setRange(0, isStill_ ? 0 : std::max(0, width - room().width()));
    horizontalScrollBar()->setPageStep(room().width());
    if (keepsPlace && page < count_) {
        const double height = sizeOf(page).height * scale();
        verticalScrollBar()->setValue(tops_[static_cast<std::size_t>(page)] +
                                      static_cast<int>(within * height));
    }
    viewport()->update();
    emit wanted();
}

QRect PageView::pageRect(int page) const {
    const PageSize points = sizeOf(page);
    const int width = static_cast<int>(std::lround(points.width * scale()));
    const int height = static_cast<int>(std::lround(points.height * scale()));
    int x = (room().width() - width) / 2;
    if (horizontalScrollBar()->maximum() > 0)
        x = (horizontalScrollBar()->maximum() + room().width() - width) / 2 -
            horizontalScrollBar()->value();
    const int y = tops_[static_cast<std::size_t>(page)] - verticalScrollBar()->value();
    return {x, y, width, height};
}

QSize PageView::pixels(int page) const {
    const double ratio = devicePixelRatioF();
    const PageSize points = sizeOf(page);
    double width = points.width * scale() * ratio;
    double height = points.height * scale() * ratio;
    if (width * height > mostPixels) {
        const double shrunk = std::sqrt(mostPixels / (width * height));
        width *= shrunk;
        height *= shrunk;
    }
    return {std::max(1, static_cast<int>(std::lround(width))),
            std::max(1, static_cast<int>(std::lround(height)))};
}

int PageView::pageAt(int y) const {
    const int wanted = y + verticalScrollBar()->value();
    const auto after = std::upper_bound(tops_.begin(), tops_.end(), wanted);
    return std::max(0, static_cast<int>(after - tops_.begin()) - 1);
}

std::pair<int, int> PageView::seen() const {
    if (count_ == 0) return {0, 0};
    return {pageAt(0), pageAt(room().height() - 1) + 1};
}

int PageView::currentPage() const { return count_ == 0 ? 0 : pageAt(room().height() / 2); }

std::optional<PageView::Wish> PageView::wish() const {
    if (count_ == 0 || room().width() < 2) return std::nullopt;
    const auto [first, end] = seen();
    // Those that are seen, the one in the middle first; then the next, for when one goes on.
    std::vector<int> pages;
    for (int page = first; page < end; ++page) pages.push_back(page);
    std::stable_sort(pages.begin(), pages.end(), [this](int a, int b) {
        return std::abs(a - currentPage()) < std::abs(b - currentPage());
    });
    if (end < count_ && !isStill_) pages.push_back(end);
    for (const int page : pages) {
        const Kept* kept = pictures_.object(page);
        const QSize wanted = pixels(page);
        if (!kept || kept->pixels != wanted) return Wish{page, wanted};
    }
    return std::nullopt;
}

void PageView::setPicture(const Wish& wish, const QImage& image) {
    if (wish.page >= count_) return;
    // A page that cannot be drawn stays white, and is not asked for again.
    auto* kept = new Kept{wish.pixels, QPixmap::fromImage(image)};
    pictures_.insert(wish.page, kept, qsizetype{image.sizeInBytes()} + qsizetype{256});
    viewport()->update();
}

std::optional<int> PageView::textWish() const {
    if (isStill_) return std::nullopt;
    const auto [first, end] = seen();
    for (int page = first; page < end; ++page)
        if (!texts_.contains(page)) return page;
    return std::nullopt;
}

void PageView::setText(int page, PageText text) {
    while (texts_.size() >= mostTexts) {
        const auto far = std::max_element(texts_.begin(), texts_.end(), [&](auto& a, auto& b) {
            return std::abs(a.first - page) < std::abs(b.first - page);
        });
        texts_.erase(far);
    }
    texts_.insert_or_assign(page, std::move(text));
}

void PageView::setZoom(double zoom) {
    zoom_ = std::clamp(zoom, leastZoom, mostZoom);
    layOut(/*keepsPlace=*/true);
}

void PageView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    const Colors& colors = Colors::current();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const Colors paper = Colors::light(false);  // It is white in the dark too.
    const auto [first, end] = seen();
    for (int page = first; page < end; ++page) {
        const QRect rect = pageRect(page);
        const Kept* kept = pictures_.object(page);
        painter.fillRect(rect, paper.base);
        if (kept && !kept->picture.isNull())
            painter.drawPixmap(QRectF(rect), kept->picture, QRectF(kept->picture.rect()));
        Paint::outline(painter, rect, 0, colors.border, Metrics::hairline);
        if (page != selectedPage_ || selectionFrom_ == selectionTo_) continue;
        const auto text = texts_.find(page);
        if (text == texts_.end()) continue;
        QColor color = paper.accent;
        color.setAlphaF(selectionAlpha);
        const auto [from, to] = std::minmax(selectionFrom_, selectionTo_);
        for (int i = from; i < to; ++i) {
            const PageText::Box& box = text->second.boxes[static_cast<std::size_t>(i)];
            const QRectF shown(
                rect.left() + double{box.left} * scale(), rect.top() + double{box.top} * scale(),
                double{box.right - box.left} * scale(), double{box.bottom - box.top} * scale());
            painter.fillRect(shown, color);
        }
    }
}

void PageView::resizeEvent(QResizeEvent*) { layOut(/*keepsPlace=*/true); }

void PageView::scrollContentsBy(int, int) {
    viewport()->update();
    if (currentPage() != shownPage_) {
        shownPage_ = currentPage();
        emit currentPageChanged();
    }
    emit wanted();
}

void PageView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const int turned = event->angleDelta().y();
    if (turned != 0) setZoom(zoom_ * (turned > 0 ? zoomStep : 1 / zoomStep));
    event->accept();
}

void PageView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        const QString text = selectedText();
        if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        const auto text = texts_.find(currentPage());
        if (text == texts_.end()) return;
        selectedPage_ = text->first;
        selectionFrom_ = 0;
        selectionTo_ = static_cast<int>(text->second.boxes.size());
        viewport()->update();
        return;
    }
    QScrollBar* bar = verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            setZoom(zoom_ * zoomStep);
            break;
        case Qt::Key_Minus:
            setZoom(zoom_ / zoomStep);
            break;
        case Qt::Key_0:
            setZoom(1);
            break;
        case Qt::Key_Home:
            bar->setValue(0);
            break;
        case Qt::Key_End:
            bar->setValue(bar->maximum());
            break;
        case Qt::Key_PageDown:
            bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
            break;
        case Qt::Key_PageUp:
            bar->triggerAction(QAbstractSlider::SliderPageStepSub);
            break;
        default:
            event->ignore();
    }
}

// --- Selecting

int PageView::characterAt(int page, QPoint point) const {
    const auto text = texts_.find(page);
    if (text == texts_.end()) return -1;
    const QRect rect = pageRect(page);
    const double x = (point.x() - rect.left()) / scale();
    const double y = (point.y() - rect.top()) / scale();
    int nearest = -1;
    double least = 0;
    const auto& boxes = text->second.boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const auto outside = [](double value, float low, float high) {
            return value < double{low} ? double{low} - value
                                       : (value > double{high} ? value - double{high} : 0);
        };
        // Another line is farther than another letter of the same one.
        const double distance = outside(x, boxes[i].left, boxes[i].right) +
                                8 * outside(y, boxes[i].top, boxes[i].bottom);
        if (nearest >= 0 && distance >= least) continue;
        least = distance;
        nearest = static_cast<int>(i);
    }
    return nearest;
}

void PageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || count_ == 0) return;
    const int page = pageAt(event->pos().y());
    selectedPage_ = page;
    selectionFrom_ = selectionTo_ = std::max(0, characterAt(page, event->pos()));
    viewport()->update();
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
    if (count_ == 0) return;
    if (!(event->buttons() & Qt::LeftButton)) {
        const int page = pageAt(event->pos().y());
        const auto text = texts_.find(page);
        const int nearest = characterAt(page, event->pos());
        bool isOver = false;
        if (nearest >= 0) {
            const PageText::Box& box = text->second.boxes[static_cast<std::size_t>(nearest)];
            const QRect rect = pageRect(page);
            const QPointF at((event->pos().x() - rect.left()) / scale(),
                             (event->pos().y() - rect.top()) / scale());
            const QRectF letters(QPointF(double{box.left}, double{box.top}),
                                 QPointF(double{box.right}, double{box.bottom}));
            isOver = letters.adjusted(-nearLetter / 8, 0, nearLetter / 8, 0).contains(at);
        }
        viewport()->setCursor(isOver ? Qt::IBeamCursor : Qt::ArrowCursor);
        return;
    }
    if (selectedPage_ < 0 || selectedPage_ >= count_) return;
    const int at = characterAt(selectedPage_, event->pos());
    if (at < 0) return;
    // The letter under the pointer belongs to it, in whichever direction.
    selectionTo_ = at >= selectionFrom_ ? at + 1 : at;
    viewport()->update();
}

QString PageView::selectedText() const {
    const auto text = texts_.find(selectedPage_);
    if (text == texts_.end() || selectionFrom_ == selectionTo_) return {};
    const auto [from, to] = std::minmax(selectionFrom_, selectionTo_);
    const QList<uint> all = QString::fromStdString(text->second.text).toUcs4();
    const QList<uint> part = all.mid(from, to - from);
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(part.constData()), part.size());
}

}  // namespace tarn
