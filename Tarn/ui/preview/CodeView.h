#pragma once

#include <vector>

#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtWidgets/QPlainTextEdit>

#include "TarnCore/preview/CodeTokens.h"

namespace tarn {

/// Text to be read: selectable, never edited, code in colours.
///
/// Main thread only. A long text comes in and is coloured piece by piece between events. A line
/// that is longer than a person reads is shown in pieces, since one of a megabyte would take
/// seconds to lay out; what is copied has it whole.
class CodeView final : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit CodeView(QWidget* parent = nullptr);

    /// `language` is null for text that is no code; it outlives the view.
    void showText(const QString& text, const CodeLanguage* language);
    /// More of the same text; what is shown stays where it is.
    void append(const QString& text);
    /// Text that is read like a book rather than line by line.
    void setProse(bool isProse);
    /// No part is still on its way.
    bool isComplete() const { return at_ >= pending_.size() && !colours_.isActive(); }

    static constexpr int longestLine = 2000;  ///< UTF-16 units; what is behind goes on below.

protected:
    QMimeData* createMimeDataFromSelection() const override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void addPiece();
    void colourPiece();
    void colour(QTextBlock block);
    void applyFont();
    void restartColours();

    QString pending_;
    qsizetype at_ = 0;          ///< How much of `pending_` is in the document.
    qsizetype lineLength_ = 0;  ///< Of the last line in the document.
    QTimer pieces_;
    QTimer colours_;
    const CodeLanguage* language_ = nullptr;
    int nextBlock_ = 0;  ///< To be coloured.
    CodeTokens::State state_ = 0;
    bool isProse_ = false;
    int zoomed_ = 0;  ///< Points.
};

}  // namespace tarn
