#include "Tarn/ui/trash/TrashBar.h"

#include <utility>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/Paths.h"

namespace tarn {

TrashBar::TrashBar(WindowModel& model, PaneModel& pane, QWidget& window)
    : QWidget(&window),
      model_(model),
      pane_(pane),
      window_(window),
      trash_(model.app().trash()),
      text_(new TabularLabel),
      button_(new QPushButton) {
    text_->setForegroundRole(QPalette::PlaceholderText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(
        Margins::directed(Metrics::space16, 0, Metrics::space12, Metrics::space8));
    row->setSpacing(Metrics::space8);
    row->addWidget(text_, 1);
    row->addWidget(button_);
    // Return presses it, as the space bar does.
    button_->setAutoDefault(true);
    connect(button_, &QPushButton::clicked, this, [this] {
        if (trash_.isEmptying())
            trash_.cancelEmptying();
        else
            ask();
    });
    connect(&trash_, &TrashService::changed, this, &TrashBar::follow);
    connect(&pane, &PaneModel::locationChanged, this, &TrashBar::follow);
    const auto tell = [this](const QString& sentence, bool isError) {
        if (!std::exchange(tells_, false)) return;
        Toast toast;
        toast.message = sentence;
        toast.symbol = isError ? "exclamationmark.triangle" : "trash";
        toast.isError = isError;
        model_.showToast(std::move(toast));
    };
    connect(&trash_, &TrashService::emptied, this,
            [tell](const QString& notice) { tell(notice, false); });
    connect(&trash_, &TrashService::emptyingFailed, this,
            [tell](const QString& sentence) { tell(sentence, true); });
    follow();
}

bool TrashBar::isTrash(const Location& location) {
    return location.canonical() == Location::folder(Paths::trash()).canonical();
}

QString TrashBar::contents(const TrashService& trash) {
    if (!trash.bytes()) return tr("Measuring…");
    if (trash.items() == 0) return tr("The Trash is empty");
    return tr("%1 · %2").arg(Counts::items(trash.items()), Counts::bytes(*trash.bytes()));
}

bool TrashBar::canEmpty(const TrashService& trash) {
    return !trash.isEmptying() && trash.items() > 0;
}

void TrashBar::follow() {
    const bool isHere = isTrash(pane_.location());
    setVisible(isHere);
    if (!isHere) return;
    if (trash_.isEmptying()) {
        text_->setText(tr("Deleting… %1 so far").arg(Counts::files(trash_.deletedFiles())));
        button_->setText(tr("Stop"));
        button_->setEnabled(true);
        return;
    }
    text_->setText(contents(trash_));
    button_->setText(tr("Empty Trash…"));
    button_->setEnabled(canEmpty(trash_));
}

void TrashBar::ask() {
    if ((question_ && question_->isVisible()) || !canEmpty(trash_)) return;
    question_ = new QuestionSheet(
        {tr("Empty the Trash?"),
         tr("%1 will be deleted, %2 in all. This can’t be undone.")
             .arg(Counts::items(trash_.items()), Counts::bytes(trash_.bytes().value_or(0))),
         tr("Empty Trash"), tr("Cancel")},
        window_);
    connect(question_, &QuestionSheet::accepted, this, [this] {
        tells_ = true;
        trash_.empty();
    });
    question_->open(question_->no());
}

}  // namespace tarn
