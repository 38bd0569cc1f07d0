#include "Tarn/ui/rename/RenameSheet.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/rename/RenamePreviewView.h"
#include "Tarn/ui/rename/RuleEditor.h"
#include "Tarn/ui/sheets/ButtonRow.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/files/Format.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 920;
constexpr int rulesWidth = 320;
constexpr int contentHeight = 460;
/// Rules and names stand one above the other in less than this.
constexpr int besideWidth = 640;
constexpr int rulesHeight = 220;

/// The ground of a list on a card, with a line around it.
class FramedArea final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const Colors& colors = Colors::current();
        Paint::fill(painter, rect(), Metrics::radiusControl, colors.base);
        Paint::outline(painter, rect(), Metrics::radiusControl, colors.border, Metrics::hairline);
    }
};

QString itemsInTitle(std::size_t count) {
    return Counts::itemsInTitle(static_cast<std::int64_t>(count));
}

}  // namespace

RenameSheet::RenameSheet(QWidget& window, WindowModel& model, std::vector<URL> urls)
    : Sheet(window, sheetWidth),
      window_(model),
      rename_(model.app().pool(), std::move(urls)),
      halves_(new QBoxLayout(QBoxLayout::LeftToRight)) {
    setObjectName(QStringLiteral("renameSheet"));
    setTitle(tr("Rename %1").arg(itemsInTitle(rename_.fileCount())));
    halves_->setSpacing(Metrics::space16);
    halves_->addWidget(makeRules());
    halves_->addWidget(makePreview(), 1);
    column()->addLayout(halves_, 1);
    column()->addSpacing(Metrics::space4);
    column()->addWidget(makeButtons());
    connect(&rename_, &RenameModel::draftsChanged, this, &RenameSheet::showDrafts);
    connect(&rename_, &RenameModel::previewsChanged, this, &RenameSheet::showState);
    showDrafts();
    showState();
}

QWidget* RenameSheet::firstField() const { return editors_.front()->firstField(); }

// --- Parts

QWidget* RenameSheet::makeRules() {
    auto* half = new QWidget;
    auto* column = new QVBoxLayout(half);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space8);
    scroll_ = new QScrollArea;
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->viewport()->setAutoFillBackground(false);
    rules_ = new QWidget;
    rules_->setAutoFillBackground(false);
    auto* list = new QVBoxLayout(rules_);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(Metrics::space8);
    scroll_->setWidget(rules_);
    rules_->setAutoFillBackground(false);
    column->addWidget(scroll_, 1);

    add_ = new QPushButton(Icons::symbol("plus"), tr("Add Rule"));
    add_->setObjectName(QStringLiteral("addRule"));
    add_->setAutoDefault(false);
    add_->setIconSize({Metrics::space12, Metrics::space12});
    auto* kinds = new QMenu(add_);
    for (int kind = 0; kind < ruleKindCount; ++kind) {
        kinds->addAction(coreText(ruleTitle(static_cast<std::size_t>(kind))), this, [this, kind] {
            rename_.addDraft(kind);
            editors_.back()->firstField()->setFocus(Qt::OtherFocusReason);
            // The new rule has no place before the layout has run.
            QMetaObject::invokeMethod(
                this, [this] { scroll_->ensureWidgetVisible(editors_.back()); },
                Qt::QueuedConnection);
        });
    }
    connect(add_, &QPushButton::clicked, kinds, [this, kinds] {
        kinds->popup(add_->mapToGlobal(QPoint(0, add_->height() + Metrics::space4)));
    });
    extension_ = new WrappingCheckBox(tr("Include the extension"));
    extension_->setToolTip(tr("The rules see “Report.pdf” instead of “Report”."));
    connect(extension_, &QCheckBox::toggled, &rename_, &RenameModel::setIncludesExtension);
    auto* foot = new QHBoxLayout;
    foot->addWidget(add_);
    foot->addStretch();
    foot->addWidget(extension_);
    column->addLayout(foot);
    return half;
}

QWidget* RenameSheet::makePreview() {
    auto* half = new QWidget;
    auto* column = new QVBoxLayout(half);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space8);
    preview_ = new RenamePreviewView;
    preview_->setModel(&rename_);
    auto* framed = new FramedArea;
    auto* inner = new QVBoxLayout(framed);
    inner->setContentsMargins(
        Margins::directed(Metrics::space4, Metrics::hairline, Metrics::hairline, Metrics::space4));
    inner->addWidget(preview_);
    column->addWidget(framed, 1);
    auto* foot = new QHBoxLayout;
    count_ = new QLabel;
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setTextFormat(Qt::PlainText);
    count_->setWordWrap(true);
    count_->setMinimumWidth(1);
    nextProblem_ = new QToolButton;
    nextProblem_->setAutoRaise(true);
    nextProblem_->setText(tr("Show First"));
    nextProblem_->setToolTip(tr("Show the first name that can’t be used"));
    connect(nextProblem_, &QToolButton::clicked, this, [this] {
        if (const auto row = rename_.firstProblem())
            preview_->scrollTo(rename_.index(*row, 0), QAbstractItemView::PositionAtCenter);
    });
    foot->addWidget(count_, 1);
    foot->addWidget(nextProblem_);
    column->addLayout(foot);
    return half;
}

QWidget* RenameSheet::makeButtons() {
    reason_ = new QLabel;
    reason_->setObjectName(QStringLiteral("renameReason"));
    reason_->setTextFormat(Qt::PlainText);
    reason_->setWordWrap(true);
    reason_->setMinimumWidth(1);
    reason_->setForegroundRole(QPalette::PlaceholderText);
    cancel_ = new QPushButton(tr("Cancel"));
    apply_ = new QPushButton(tr("Rename"));
    apply_->setObjectName(QStringLiteral("applyRename"));
    apply_->setDefault(true);
    connect(cancel_, &QPushButton::clicked, this, &RenameSheet::finish);
    connect(apply_, &QPushButton::clicked, this, &RenameSheet::apply);
    auto* row = new ButtonRow(reason_);
    row->add(*cancel_);
    row->add(*apply_);
    return row;
}

void RenameSheet::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // From every field of the rules.
    if (isReturn && !pressFocused() && apply_->isEnabled()) return apply_->click();
    if (!isReturn) Sheet::keyPressEvent(event);
}

void RenameSheet::layOut() {
    const bool isBeside = contentWidth() >= besideWidth;
    halves_->setDirection(isBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    QWidget* rules = halves_->itemAt(0)->widget();
    rules->setMinimumWidth(0);
    rules->setMaximumWidth(isBeside ? rulesWidth : QWIDGETSIZE_MAX);
    if (isBeside) rules->setMinimumWidth(rulesWidth);
    rules->setMaximumHeight(isBeside ? QWIDGETSIZE_MAX : rulesHeight);
    preview_->setMinimumHeight(isBeside ? contentHeight - Metrics::space24 : 0);
}

// --- What is shown

void RenameSheet::showDrafts() {
    auto* list = static_cast<QVBoxLayout*>(rules_->layout());
    const int offset = scroll_->verticalScrollBar()->value();
    while (QLayoutItem* item = list->takeAt(0)) {
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
    editors_.clear();
    for (const RuleDraft& draft : rename_.drafts()) {
        const std::size_t index = editors_.size();
        auto* editor = new RuleEditor(draft);
        editor->setPlace(index, rename_.drafts().size());
        connect(editor, &RuleEditor::changed, this,
                [this, index, editor] { rename_.setDraft(index, editor->draft()); });
        connect(editor, &RuleEditor::moved, this,
                [this, index](int by) { rename_.moveDraft(index, by); });
        connect(editor, &RuleEditor::removed, this, [this, index] { rename_.removeDraft(index); });
        list->addWidget(editor);
        editors_.push_back(editor);
    }
    list->addStretch();
    scroll_->verticalScrollBar()->setValue(offset);
}

void RenameSheet::showState() {
    const QString why = isApplying_ ? tr("Renaming…") : rename_.whyNot();
    // The last answer stays in sight while the next is worked out; a flicker would say nothing.
    if (!rename_.isWorking()) {
        QString text =
            rename_.changedCount() == 0
                ? tr("No name changes")
                : tr("%1 of %2 get a new name")
                      .arg(QLocale().toString(rename_.changedCount()),
                           Counts::items(static_cast<std::int64_t>(rename_.fileCount())));
        if (rename_.problemCount() > 0)
            text += QStringLiteral(" · ") +
                    Counts::problems(static_cast<std::int64_t>(rename_.problemCount()));
        count_->setText(text);
        nextProblem_->setVisible(rename_.problemCount() > 0);
        reason_->setText(why);
        apply_->setText(rename_.changedCount() > 0
                            ? tr("Rename %1").arg(itemsInTitle(rename_.changedCount()))
                            : tr("Rename"));
    }
    apply_->setEnabled(why.isEmpty());
    apply_->setToolTip(why);
    for (RuleEditor* editor : editors_) editor->setEnabled(!isApplying_);
    add_->setEnabled(!isApplying_);
    extension_->setEnabled(!isApplying_);
    cancel_->setEnabled(!isApplying_);
}

void RenameSheet::apply() {
    if (isApplying_ || !rename_.whyNot().isEmpty()) return;
    isApplying_ = true;
    showState();
    reason_->setText(tr("Renaming…"));
    window_.edits().renameAll(rename_.previews(),
                              [self = QPointer<RenameSheet>(this)](const QString& refusal) {
                                  if (!self) return;
                                  if (refusal.isEmpty()) return self->finish();
                                  self->isApplying_ = false;
                                  self->showState();
                                  self->reason_->setText(refusal);
                              });
}

}  // namespace tarn
