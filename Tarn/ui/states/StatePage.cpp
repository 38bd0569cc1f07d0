#include "Tarn/ui/states/StatePage.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

StatePage::StatePage(QWidget* parent)
    : QWidget(parent),
      symbol_(new SymbolView(Metrics::iconState, Icons::Tint::secondary)),
      title_(new QLabel),
      sentence_(new QLabel),
      action_(new QPushButton) {
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    for (QLabel* label : {title_, sentence_}) {
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setMaximumWidth(Metrics::stateTextWidth);
        label->setMinimumWidth(1);
    }
    sentence_->setForegroundRole(QPalette::PlaceholderText);
    sentence_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Return presses it, as the space bar does.
    action_->setAutoDefault(true);
    connect(action_, &QPushButton::clicked, this, &StatePage::actionTriggered);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::space24, Metrics::space24, Metrics::space24,
                               Metrics::space24);
    column->setSpacing(0);
    // A little above the middle, where the eye takes it for the middle.
    column->addStretch(2);
    column->addWidget(symbol_, 0, Qt::AlignHCenter);
    column->addSpacing(Metrics::space16);
    const auto addLine = [column](QLabel* label) {
        auto* row = new QHBoxLayout;
        row->addStretch(0);
        row->addWidget(label, 1);
        row->addStretch(0);
        column->addLayout(row);
    };
    addLine(title_);
    column->addSpacing(Metrics::space6);
    addLine(sentence_);
    column->addSpacing(Metrics::space16);
    column->addWidget(action_, 0, Qt::AlignHCenter);
    column->addStretch(3);
    applyFonts();
    setContent({});
}

void StatePage::setContent(const StateContent& content) {
    content_ = content;
    symbol_->setVisible(!content.symbol.empty());
    if (!content.symbol.empty()) symbol_->setSymbol(content.symbol);
    title_->setText(content.title);
    title_->setVisible(!content.title.isEmpty());
    sentence_->setText(content.sentence);
    sentence_->setVisible(!content.sentence.isEmpty());
    action_->setText(content.action);
    action_->setVisible(!content.action.isEmpty());
    setAccessibleName(content.title);
    setAccessibleDescription(content.sentence);
}

void StatePage::setDropTarget(bool isTarget) {
    if (isTarget == isDropTarget_) return;
    isDropTarget_ = isTarget;
    update();
}

void StatePage::paintEvent(QPaintEvent*) {
    if (!isDropTarget_) return;
    QPainter painter(this);
    Paint::focusRing(painter, QRectF(rect()).adjusted(1, 1, -1, -1), Metrics::radiusRow);
}

void StatePage::applyFonts() { title_->setFont(Fonts::screenTitle()); }

void StatePage::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) applyFonts();
    QWidget::changeEvent(event);
}

}  // namespace tarn
