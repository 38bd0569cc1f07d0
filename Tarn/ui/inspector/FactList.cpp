#include "Tarn/ui/inspector/FactList.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtWidgets/QBoxLayout>

#include "Tarn/ui/inspector/FactRow.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

/// The first column takes no more, so that the second one keeps most of the room.
constexpr int widestLabel = 112;

}  // namespace

FactList::FactList(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(Metrics::space2);
}

void FactList::setFacts(const std::vector<PreviewFact>& facts) {
    if (facts == facts_) return;
    facts_ = facts;
    while (rows_.size() > facts.size()) {
        delete rows_.back();
        rows_.pop_back();
    }
    while (rows_.size() < facts.size()) {
        rows_.push_back(new FactRow(this));
        column_->addWidget(rows_.back());
    }
    for (std::size_t i = 0; i < facts.size(); ++i)
        rows_[i]->setFact(facts[i].label, facts[i].value);
    alignLabels();
}

void FactList::alignLabels() {
    int width = 0;
    for (const FactRow* row : rows_) width = std::max(width, row->labelWidth());
    for (FactRow* row : rows_) row->setLabelWidth(std::min(width, widestLabel));
}

void FactList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) alignLabels();
    QWidget::changeEvent(event);
}

}  // namespace tarn
