#include "Tarn/ui/sheets/QuestionSheet.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 420;

}  // namespace

QuestionSheet::QuestionSheet(const Question& question, QWidget& window)
    : Sheet(window, sheetWidth),
      yes_(new QPushButton(question.yes)),
      no_(new QPushButton(question.no)) {
    setTitle(question.title);
    setAccessibleDescription(question.sentence);
    auto* sentence = new QLabel(question.sentence);
    sentence->setTextFormat(Qt::PlainText);
    sentence->setWordWrap(true);
    sentence->setMinimumWidth(1);
    sentence->setForegroundRole(QPalette::PlaceholderText);
    column()->addWidget(sentence);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Metrics::space8);
    buttons->addStretch();
    buttons->addWidget(yes_);
    buttons->addWidget(no_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(buttons);
    no_->setDefault(true);
    connect(no_, &QPushButton::clicked, this, &Sheet::finish);
    connect(yes_, &QPushButton::clicked, this, [this] {
        finish();
        emit accepted();
    });
}

void QuestionSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return finish();
    Sheet::keyPressEvent(event);
}

}  // namespace tarn
