#include "Tarn/ui/preview/CodeView.h"

#include <algorithm>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMimeData>
#include <QtGui/QFontDatabase>
#include <QtGui/QTextBlock>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/theme/CodeColors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr qsizetype pieceSize = 24 * 1024;
constexpr qint64 sliceTime = 4;  // milliseconds between two looks at the events
constexpr int widestProse = 720;
constexpr int tabStop = 4;      // spaces
constexpr int mostZoomed = 24;  // points
/// Marks a block that goes on where a line was cut; the next block belongs to it.
constexpr int goesOn = 1;

}  // namespace

CodeView::CodeView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    // The cursor keys are for the files; the mouse selects, and Ctrl+A and Ctrl+C work.
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(Metrics::space12);
    setAccessibleName(tr("Text"));
    new FocusOutline(*this);
    applyFont();
    for (QTimer* timer : {&pieces_, &colours_}) timer->setInterval(0);
    connect(&pieces_, &QTimer::timeout, this, &CodeView::addPiece);
    connect(&colours_, &QTimer::timeout, this, &CodeView::colourPiece);
}

void CodeView::setProse(bool isProse) {
    isProse_ = isProse;
    applyFont();
}

void CodeView::applyFont() {
    QFont font = Fonts::body();
    if (!isProse_) {
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSizeF(Fonts::body().pointSizeF());
    }
    font.setPointSizeF(std::max(4.0, font.pointSizeF() + zoomed_));
    setFont(font);
    setTabStopDistance(tabStop * fontMetrics().horizontalAdvance(u' '));
}

void CodeView::showText(const QString& text, const CodeLanguage* language) {
    language_ = language;
    // The shape of code is part of what it says.
    const bool isCode = language && language->form != CodeLanguage::Form::markdown;
    setLineWrapMode(isCode ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
    clear();
    lineLength_ = 0;
    pending_ = text;
    at_ = 0;
    restartColours();
    addPiece();
    verticalScrollBar()->setValue(0);
}

void CodeView::append(const QString& text) {
    pending_.remove(0, at_);
    at_ = 0;
    pending_ += text;
    if (!pieces_.isActive()) pieces_.start();
}

void CodeView::addPiece() {
    QString piece;
    std::vector<int> cut;  // lines of the piece that go on in the next block
    int line = 0;
    while (piece.size() < pieceSize && at_ < pending_.size()) {
        const qsizetype found = pending_.indexOf(u'\n', at_);
        const qsizetype lineEnd = found < 0 ? pending_.size() : found;
        const qsizetype room = longestLine - lineLength_;
        qsizetype length = std::min(lineEnd - at_, room);
        // Not between the halves of a character.
        if (length == room && length > 1 && pending_[at_ + length - 1].isHighSurrogate()) --length;
        piece += QStringView(pending_).sliced(at_, length);
        at_ += length;
        lineLength_ += length;
        const bool isWhole = at_ == found;
        if (!isWhole && at_ == pending_.size()) break;
        if (isWhole)
            ++at_;
        else
            cut.push_back(line);
        piece += u'\n';
        ++line;
        lineLength_ = 0;
    }
    const int first = document()->blockCount() - 1;
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(piece);
    for (const int number : cut) document()->findBlockByNumber(first + number).setUserState(goesOn);
    if (at_ < pending_.size()) {
        if (!pieces_.isActive()) pieces_.start();
    } else {
        pieces_.stop();
        pending_.clear();
        at_ = 0;
    }
    if (language_ && !colours_.isActive()) colours_.start();
}

void CodeView::restartColours() {
    nextBlock_ = 0;
    state_ = 0;
    if (language_) colours_.start();
}

void CodeView::colourPiece() {
    QElapsedTimer time;
    time.start();
    QTextBlock block = document()->findBlockByNumber(nextBlock_);
    // The last block may still grow.
    const bool isGrowing = pieces_.isActive();
    while (block.isValid() && !(isGrowing && !block.next().isValid()) &&
           time.elapsed() < sliceTime) {
        colour(block);
        block = block.next();
        ++nextBlock_;
    }
    if (!block.isValid() || isGrowing) colours_.stop();
}

void CodeView::colour(QTextBlock block) {
    const QString text = block.text();
    std::vector<CodeSpan> spans;
    state_ = CodeTokens::tokenize(
        *language_, {reinterpret_cast<const char16_t*>(text.utf16()), std::size_t(text.size())},
        state_, spans);
    QList<QTextLayout::FormatRange> ranges;
    for (const CodeSpan& span : spans) {
        QTextLayout::FormatRange range;
        range.start = static_cast<int>(span.start);
        range.length = static_cast<int>(span.length);
        range.format.setForeground(CodeColors::of(span.token));
        if (span.token == CodeToken::heading) range.format.setFontWeight(QFont::DemiBold);
        ranges.append(range);
    }
    if (ranges.isEmpty() && block.layout()->formats().isEmpty()) return;
    block.layout()->setFormats(ranges);
    document()->markContentsDirty(block.position(), block.length());
}

QMimeData* CodeView::createMimeDataFromSelection() const {
    const QTextCursor cursor = textCursor();
    QString text;
    QTextBlock block = document()->findBlock(cursor.selectionStart());
    for (; block.isValid() && block.position() < cursor.selectionEnd(); block = block.next()) {
        const int from = std::max(0, cursor.selectionStart() - block.position());
        const int to = std::min(block.length() - 1, cursor.selectionEnd() - block.position());
        text += QStringView(block.text()).sliced(from, to - from);
        const bool takesEnd = cursor.selectionEnd() >= block.position() + block.length();
        if (takesEnd && block.userState() != goesOn) text += u'\n';
    }
    auto* mime = new QMimeData;
    mime->setText(text);
    return mime;
}

void CodeView::resizeEvent(QResizeEvent* event) {
    // Lines that are longer than a book's tire the eye.
    const int side = isProse_ ? std::max(0, (width() - widestProse) / 2) : 0;
    if (viewportMargins().left() != side) setViewportMargins(side, 0, side, 0);
    QPlainTextEdit::resizeEvent(event);
}

void CodeView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) restartColours();
    if (event->type() == QEvent::ApplicationFontChange) applyFont();
}

void CodeView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    zoomed_ =
        std::clamp(zoomed_ + (event->angleDelta().y() > 0 ? 1 : -1), -mostZoomed / 4, mostZoomed);
    applyFont();
    event->accept();
}

}  // namespace tarn
