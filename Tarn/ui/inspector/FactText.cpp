#include "Tarn/ui/inspector/FactText.h"

#include <cmath>

#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtGui/QWheelEvent>

namespace tarn {

FactText::FactText(QWidget* parent) : QTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::ClickFocus);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void FactText::setValue(const QString& text) {
    if (text == value_) return;
    value_ = text;
    setPlainText(text);
    setAccessibleName(text);
    updateGeometry();
}

void FactText::setFontAndAlign(const QFont& font, Qt::Alignment alignment) {
    setFont(font);
    QTextOption option = document()->defaultTextOption();
    option.setAlignment(alignment);
    document()->setDefaultTextOption(option);
    updateGeometry();
}

int FactText::heightForWidth(int width) const {
    QTextDocument* text = document();
    const qreal before = text->textWidth();
    text->setTextWidth(width);
    const int height = static_cast<int>(std::ceil(text->size().height()));
    text->setTextWidth(before);
    return height;
}

QSize FactText::sizeHint() const { return {1, heightForWidth(std::max(1, width()))}; }

void FactText::resizeEvent(QResizeEvent* event) {
    QTextEdit::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
}

void FactText::wheelEvent(QWheelEvent* event) {
    event->ignore();  // It never scrolls; what it is in does.
}

void FactText::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange) updateGeometry();
}

}  // namespace tarn
