// The field that edits a name in its row.
#include <QtCore/QTimer>

#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/RenameEditor.h"

namespace tarn {
namespace {

/// Milliseconds that a field stays over a row whose new name is not listed.
constexpr int longestWait = 1500;

}  // namespace

bool PaneView::isNamed(int row) const {
    return editor_ && named_ && pane_.items().item(row).url == *named_;
}

void PaneView::renamingChanged() {
    const auto& item = pane_.renaming();
    if (!item) {
        if (!awaited_) closeEditor();
        return;
    }
    closeEditor();
    const auto row = pane_.items().row(*item);
    if (!isVisible() || !row) return;
    named_ = item;
    editor_ = new RenameEditor(pane_.items().item(*row), viewport());
    connect(editor_, &RenameEditor::accepted, this,
            [this](const QString& name) { emit nameEdited(*named_, name); });
    connect(editor_, &RenameEditor::cancelled, this, [this] { pane_.endRename(); });
    scrollTo(model()->index(*row, 0));
    placeEditor();
    editor_->show();
    editor_->setFocus(Qt::OtherFocusReason);
    viewport()->update();
}

void PaneView::placeEditor() {
    if (!editor_) return;
    // An item that is gone for the moment leaves the field where it was.
    if (const auto row = pane_.items().row(*named_))
        editor_->place(nameRect(*row).translated(0, -verticalOffset()), centresNames());
}

void PaneView::refuseName(const QString& sentence) {
    if (editor_) editor_->refuse(sentence);
}

void PaneView::acceptName(const QString& name) {
    if (!editor_) return;
    awaited_ = named_->parent().appending(name.toStdString());
    pane_.endRename();
    if (editor_->hasFocus()) setFocus(Qt::OtherFocusReason);
    if (pane_.items().row(*awaited_)) return closeEditor();
    QTimer::singleShot(longestWait, editor_, [this] { closeEditor(); });
}

void PaneView::closeEditor() {
    awaited_.reset();
    named_.reset();
    if (!editor_) return;
    const bool hadFocus = editor_->hasFocus();
    editor_->disconnect(this);
    editor_->hide();
    editor_->deleteLater();
    editor_ = nullptr;
    if (hadFocus) setFocus(Qt::OtherFocusReason);
    viewport()->update();
}

void PaneView::hideEvent(QHideEvent* event) {
    QAbstractItemView::hideEvent(event);
    if (editor_) pane_.endRename();
}

}  // namespace tarn
