#include "Tarn/ui/sheets/HistoryRow.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QPushButton>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/Format.h"

namespace tarn {

HistoryRow::HistoryRow(const HistoryModel::Row& row, QWidget* parent)
    : QWidget(parent), id_(row.entry.id), undo_(new QPushButton(tr("Undo"))) {
    const QString title = coreSentence(row.entry.title);
    auto* symbol = new SymbolView(Metrics::iconRow, Icons::Tint::secondary);
    symbol->setSymbol(tarn::symbol(row.entry.kind));
    auto* name = new ElidedLabel(title);
    auto* when = new TabularLabel;
    QStringList facts(QString::fromStdString(Format::date(row.entry.date)));
    if (row.entry.fileCount > 1) facts << Counts::items(row.entry.fileCount);
    if (!row.canUndo) facts << tr("moved or changed since");
    when->setText(facts.join(QStringLiteral(" · ")));
    undo_->setEnabled(row.canUndo);
    undo_->setAccessibleName(tr("Undo: %1").arg(title));
    if (!row.canUndo) {
        const QString why = tr("Its files have been moved or changed since.");
        undo_->setToolTip(why);
        undo_->setAccessibleDescription(why);
        name->setEnabled(false);
    }
    connect(undo_, &QPushButton::clicked, this, [this] { emit undoRequested(id_); });

    auto* texts = new QVBoxLayout;
    texts->setSpacing(Metrics::space2);
    texts->addWidget(name);
    texts->addWidget(when);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(
        Margins::directed(0, Metrics::space6, Metrics::scrollBarWidth, Metrics::space6));
    line->setSpacing(Metrics::space12);
    line->addWidget(symbol);
    line->addLayout(texts, 1);
    line->addWidget(undo_);
}

}  // namespace tarn
