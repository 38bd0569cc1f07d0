// The field that edits a name in its row.
#include <utility>

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
    connect(editor_, &RenameEditor::cancelled, this, [this] {
        const auto next = nextToName();
        pane_.endRename();
        if (next) pane_.beginRename(*next);
    });
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
    next_ = nextToName();
    pane_.endRename();
    if (editor_->hasFocus()) setFocus(Qt::OtherFocusReason);
    if (pane_.items().row(*awaited_)) return endNaming();
    QTimer::singleShot(longestWait, editor_, [this] { endNaming(); });
}

std::optional<URL> PaneView::nextToName() const {
    if (!editor_ || editor_->step() == 0) return std::nullopt;
    const auto row = pane_.items().row(*named_);
    const int next = row ? *row + editor_->step() : -1;
    if (next < 0 || next >= pane_.items().count()) return std::nullopt;
    return pane_.items().item(next).url;
}

void PaneView::endNaming() {
    const auto next = std::exchange(next_, std::nullopt);
    closeEditor();
    if (!next) return;
    // After the one that has just got its name is selected.
    QMetaObject::invokeMethod(
        this,
        [this, url = *next] {
            if (hasFocus()) pane_.beginRename(url);
        },
        Qt::QueuedConnection);
}

void PaneView::closeEditor() {
    awaited_.reset();
    named_.reset();
    next_.reset();
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
