#include "Tarn/ui/inspector/FactRow.h"

#include <algorithm>

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

#include "Tarn/ui/inspector/FactText.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

FactRow::FactRow(QWidget* parent)
    : QWidget(parent),
      label_(new QLabel(this)),
      value_(new FactText(this)),
      copy_(new QToolButton(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Metrics::space8);
    label_->setForegroundRole(QPalette::PlaceholderText);
    label_->setTextFormat(Qt::PlainText);
    // One line of text stands in the middle of the button's height.
    const int pad = std::max(0, (Metrics::smallestTarget - fontMetrics().height()) / 2);
    const auto addText = [row, pad](QWidget* text, int stretch) {
        auto* column = new QVBoxLayout;
        column->setContentsMargins(0, pad, 0, pad);
        column->addWidget(text);
        column->addStretch(1);
        row->addLayout(column, stretch);
    };
    addText(label_, 0);
    addText(value_, 1);
    copy_->setAutoRaise(true);
    copy_->setIcon(Icons::symbol("doc.on.doc", Icons::Tint::secondary));
    copy_->setIconSize({Metrics::iconSmall, Metrics::iconSmall});
    copy_->setFixedSize(Metrics::smallestTarget, Metrics::smallestTarget);
    copy_->setFocusPolicy(Qt::TabFocus);
    row->addWidget(copy_, 0, Qt::AlignTop);
    copy_->installEventFilter(this);
    connect(copy_, &QToolButton::clicked, this, &FactRow::copy);
    setAttribute(Qt::WA_Hover);
    updateCopy();
}

void FactRow::setFact(const QString& label, const QString& value) {
    label_->setText(label);
    value_->setValue(value);
    value_->setAccessibleName(tr("%1: %2").arg(label, value));
    copy_->setAccessibleName(tr("Copy %1").arg(label));
    copy_->setToolTip(tr("Copy"));
}

int FactRow::labelWidth() const { return Fonts::textWidth(label_->font(), label_->text()); }

void FactRow::setLabelWidth(int width) { label_->setFixedWidth(width); }

void FactRow::updateCopy() {
    // An icon that is not drawn still takes the keyboard, which then shows it.
    const bool isShown = underMouse() || copy_->hasFocus();
    copy_->setIcon(isShown ? Icons::symbol("doc.on.doc", Icons::Tint::secondary) : QIcon());
}

void FactRow::copy() { QGuiApplication::clipboard()->setText(value_->value()); }

bool FactRow::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave ||
        event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        updateCopy();
    return handled;
}

bool FactRow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        QMetaObject::invokeMethod(this, &FactRow::updateCopy, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

}  // namespace tarn
