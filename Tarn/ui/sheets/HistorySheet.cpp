#include "Tarn/ui/sheets/HistorySheet.h"

#include <algorithm>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/sheets/HistoryRow.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 560;
constexpr int listHeight = 360;

/// As high as its rows, up to the height of a good list.
class List final : public QScrollArea {
public:
    QSize sizeHint() const override {
        return {sheetWidth, widget() ? std::min(listHeight, widget()->sizeHint().height()) : 0};
    }
};

}  // namespace

HistorySheet::HistorySheet(WindowModel& model, QWidget& window)
    : Sheet(window, sheetWidth),
      model_(model),
      scroll_(new List),
      list_(new QVBoxLayout),
      nothing_(new QLabel(tr("Changes to files show up here for seven days."))),
      done_(new QPushButton(tr("Done"))) {
    setTitle(tr("Undo History"));
    nothing_->setForegroundRole(QPalette::PlaceholderText);
    nothing_->setWordWrap(true);
    nothing_->hide();
    auto* content = new QWidget;
    auto* whole = new QVBoxLayout(content);
    whole->setContentsMargins(0, 0, 0, 0);
    list_->setSpacing(0);
    whole->addWidget(nothing_);
    whole->addLayout(list_);
    whole->addStretch();
    addScrolling(*scroll_, *content, *done_);
    scroll_->setMaximumHeight(listHeight);
    connect(&model.app().history(), &HistoryModel::changed, this, &HistorySheet::load);
    load();
}

void HistorySheet::load() {
    model_.app().history().list([self = QPointer(this)](const std::vector<HistoryModel::Row>& all) {
        if (!self) return;
        for (HistoryRow* row : self->rows_) {
            row->hide();
            row->deleteLater();
        }
        self->rows_.clear();
        for (const HistoryModel::Row& one : all) {
            auto* row = new HistoryRow(one);
            connect(row, &HistoryRow::undoRequested, self,
                    [self](const UUID& id) { self->model_.operations().undo(id); });
            self->list_->addWidget(row);
            // Now, so that it counts for the height of the list.
            row->show();
            self->rows_.push_back(row);
        }
        self->nothing_->setVisible(all.empty());
        self->isLoaded_ = true;
        self->scroll_->widget()->layout()->activate();
        self->scroll_->updateGeometry();
    });
}

}  // namespace tarn
