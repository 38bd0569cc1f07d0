#include "Tarn/ui/pane/RenameEditor.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/ui/pane/NoteBubble.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/ops/FileOps.h"

namespace tarn {
namespace {

constexpr int padding = Metrics::space6;
/// With what the style and the field itself add, the text stands where the row draws it.
constexpr int textMargin = 1;
constexpr int narrowest = 120;

/// How much of the name is selected first: what people mean to change.
qsizetype baseLength(const FileItem& item) {
    if (item.isDirectory) return QString::fromStdString(item.name).size();
    return QString::fromStdString(FileOps::split(item.name).base).size();
}

}  // namespace

RenameEditor::RenameEditor(const FileItem& item, QWidget* viewport)
    : QLineEdit(QString::fromStdString(item.name), viewport),
      oldName_(QString::fromStdString(item.name)),
      note_(new NoteBubble(viewport)) {
    setObjectName(QStringLiteral("renameEditor"));
    setAccessibleName(tr("New name"));
    setFont(Fonts::body());
    setFrame(false);
    setTextMargins(textMargin, 0, textMargin, 0);
    setSelection(0, static_cast<int>(baseLength(item)));
    connect(this, &QLineEdit::textEdited, this, &RenameEditor::check);
    connect(this, &QLineEdit::textChanged, this, &RenameEditor::layOut);
}

RenameEditor::~RenameEditor() { delete note_; }

QString RenameEditor::problem() const { return note_->text(); }

void RenameEditor::place(const QRect& name, bool isCentred) {
    nameRect_ = name;
    isCentred_ = isCentred;
    setAlignment(isCentred ? Qt::AlignCenter : Qt::AlignVCenter | Qt::AlignLeading);
    layOut();
}

void RenameEditor::layOut() {
    const QRect room = parentWidget()->rect().adjusted(Metrics::space4, 0, -Metrics::space4, 0);
    // The text stays where the row draws it; the frame lies around it.
    const int frame = padding + Metrics::hairline;
    const int wanted = std::max(narrowest, Fonts::textWidth(font(), text()) + Metrics::space24);
    QRect rect = nameRect_.adjusted(-frame, 0, frame, 0);
    rect.setHeight(std::max(fontMetrics().height() + Metrics::space8, Metrics::smallestTarget));
    rect.moveTop(isCentred_ ? nameRect_.top() - Metrics::space4
                            : nameRect_.center().y() - rect.height() / 2 + 1);
    if (isCentred_) {
        const int centre = rect.center().x();
        rect.setWidth(std::min(std::max(rect.width(), wanted), room.width()));
        rect.moveLeft(
            std::clamp(centre - rect.width() / 2, room.left(), room.right() + 1 - rect.width()));
    } else {
        const int right = rect.right();
        rect.setWidth(
            std::clamp(wanted, std::min(narrowest, rect.width()), std::max(1, rect.width())));
        if (isRightToLeft()) rect.moveRight(right);
    }
    setGeometry(rect);
    note_->pointAt(rect);
}

void RenameEditor::check() {
    const std::string name = text().toStdString();
    QString problem;
    // An empty field is only said to be wrong when someone wants to keep it.
    if (!text().trimmed().isEmpty()) {
        try {
            FileOps::validate(name);
        } catch (const FileOpError& error) {
            problem = coreSentence(error.what());
        }
    }
    note_->setText(problem);
    note_->pointAt(geometry());
    update();
}

void RenameEditor::accept(bool mayStay) {
    if (isWaiting_ || isOver_) return;
    const auto giveUp = [this] {
        isOver_ = true;
        emit cancelled();
    };
    if (text() == oldName_) return giveUp();
    try {
        FileOps::validate(text().toStdString());
    } catch (const FileOpError& error) {
        if (!mayStay) return giveUp();
        note_->setText(coreSentence(error.what()));
        note_->pointAt(geometry());
        update();
        return;
    }
    isWaiting_ = true;
    setReadOnly(true);
    deselect();
    emit accepted(text());
}

void RenameEditor::refuse(const QString& sentence) {
    isWaiting_ = false;
    step_ = 0;
    setReadOnly(false);
    note_->setText(sentence);
    note_->pointAt(geometry());
    setFocus();
    update();
}

bool RenameEditor::focusNextPrevChild(bool next) {
    if (isWaiting_ || isOver_) return true;
    step_ = next ? 1 : -1;
    accept(true);
    // The name cannot be used.
    if (!isWaiting_ && !isOver_) step_ = 0;
    return true;
}

void RenameEditor::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            accept(true);
            return;
        case Qt::Key_Escape:
            if (!isWaiting_ && !isOver_) {
                isOver_ = true;
                emit cancelled();
            }
            return;
        case Qt::Key_Up:
            setCursorPosition(0);
            return;
        case Qt::Key_Down:
            setCursorPosition(static_cast<int>(text().size()));
            return;
        default:
            QLineEdit::keyPressEvent(event);
            // Nothing that is typed here means anything to the rows.
            event->accept();
    }
}

void RenameEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // A menu of the field, or another window for a while, ends nothing.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    accept(false);
}

void RenameEditor::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    Paint::fill(painter, rect(), Metrics::radiusControl, Colors::current().base);
    Paint::outline(painter, rect(), Metrics::radiusControl,
                   note_->text().isEmpty() ? Colors::current().accent : Colors::current().danger,
                   Metrics::focusRing);
    painter.end();
    QLineEdit::paintEvent(event);
}

}  // namespace tarn
