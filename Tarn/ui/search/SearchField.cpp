#include "Tarn/ui/search/SearchField.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

using namespace Metrics;

SearchField::SearchField(QWidget* parent)
    : QWidget(parent),
      edit_(new QLineEdit(this)),
      clear_(new QToolButton(this)),
      placeholder_(tr("Search")),
      width_(searchFieldWidth) {
    setFocusProxy(edit_);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    edit_->setFrame(false);
    edit_->setAutoFillBackground(false);
    QPalette clearGround;
    clearGround.setColor(QPalette::Base, Qt::transparent);
    edit_->setPalette(clearGround);
    edit_->setAccessibleName(tr("Search"));
    edit_->installEventFilter(this);
    clear_->setIcon(Icons::symbol("xmark.circle.fill", Icons::Tint::secondary));
    clear_->setFocusPolicy(Qt::NoFocus);
    clear_->setToolTip(tr("Clear"));
    clear_->setAccessibleName(tr("Clear search"));
    clear_->setFixedSize(smallestTarget, smallestTarget);
    clear_->setCursor(Qt::ArrowCursor);
    clear_->hide();
    connect(clear_, &QToolButton::clicked, this, &SearchField::takeAway);
    connect(edit_, &QLineEdit::textChanged, this, [this](const QString& text) {
        clear_->setVisible(!text.isEmpty());
        placeParts();
        grow();
        emit textChanged(text);
    });
    growth_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&growth_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        width_ = value.toInt();
        updateGeometry();
    });
}

QString SearchField::text() const { return edit_->text(); }

void SearchField::setText(const QString& text) { edit_->setText(text); }

void SearchField::clear() { edit_->clear(); }

void SearchField::setPlaceholder(const QString& text) {
    placeholder_ = text;
    placeParts();
}

void SearchField::beginEditing() {
    edit_->setFocus(Qt::ShortcutFocusReason);
    edit_->selectAll();
}

void SearchField::continueEditing() {
    edit_->setFocus(Qt::OtherFocusReason);
    edit_->end(false);
}

QSize SearchField::sizeHint() const {
    return {width_, std::max(controlHeight, fontMetrics().height() + space12)};
}

QSize SearchField::minimumSizeHint() const {
    return {isFolded_ && !isOpen() ? controlHeight : searchFieldMinimum, sizeHint().height()};
}

bool SearchField::isOpen() const { return edit_->hasFocus() || !edit_->text().isEmpty(); }

int SearchField::wantedWidth() const {
    if (isOpen()) return searchFieldFocused;
    return isFolded_ ? controlHeight : searchFieldWidth;
}

void SearchField::setFolded(bool folded) {
    if (folded == isFolded_) return;
    isFolded_ = folded;
    setToolTip(folded ? tr("Search") : QString());
    growth_.stop();
    width_ = wantedWidth();
    updateGeometry();
}

void SearchField::takeAway() {
    edit_->clear();
    edit_->setFocus(Qt::OtherFocusReason);
    emit cleared();
}

void SearchField::grow() {
    if (isOpen() != wasOpen_) {
        wasOpen_ = isOpen();
        emit openChanged();
    }
    const int target = wantedWidth();
    const int motion = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this);
    if (growth_.state() == QAbstractAnimation::Running ? growth_.endValue().toInt() == target
                                                       : width_ == target)
        return;
    growth_.stop();
    if (motion <= 0 || !isVisible()) {
        width_ = target;
        updateGeometry();
        return;
    }
    growth_.setDuration(motion);
    growth_.setStartValue(width_);
    growth_.setEndValue(target);
    growth_.start();
}

void SearchField::placeParts() {
    const int left = space8 + iconSmall + space4;
    const int right = clear_->isVisibleTo(this) ? smallestTarget + space4 : space8;
    const auto placed = [this](const QRect& logical) {
        return QStyle::visualRect(layoutDirection(), rect(), logical);
    };
    // Folded there is no room for any text; the keyboard still comes here.
    edit_->setGeometry(placed(
        QRect(left, focusRing, std::max(1, width() - left - right), height() - 2 * focusRing)));
    // A word that is whole says more than the beginning of several.
    const int room = edit_->width() - 2 * space4;
    edit_->setPlaceholderText(Fonts::textWidth(edit_->font(), placeholder_) <= room ? placeholder_
                                                                                    : tr("Search"));
    clear_->setGeometry(
        placed(QRect(width() - smallestTarget - space4, (height() - smallestTarget) / 2,
                     smallestTarget, smallestTarget)));
}

void SearchField::resizeEvent(QResizeEvent*) { placeParts(); }

void SearchField::mousePressEvent(QMouseEvent*) {
    // Beside the text the field is meant as well.
    edit_->setFocus(Qt::MouseFocusReason);
}

void SearchField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::field(painter, rect(), edit_->hasFocus());
    const QRect icon(space8, (height() - iconSmall) / 2, iconSmall, iconSmall);
    Icons::symbol("magnifyingglass", Icons::Tint::secondary)
        .paint(&painter, QStyle::visualRect(layoutDirection(), rect(), icon));
}

bool SearchField::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            // The filter runs before the edit knows.
            QMetaObject::invokeMethod(
                this,
                [this] {
                    grow();
                    update();
                },
                Qt::QueuedConnection);
            break;
        case QEvent::KeyPress: {
            const auto* key = static_cast<QKeyEvent*>(event);
            const bool empty = edit_->text().isEmpty();
            if (key->key() == Qt::Key_Down || key->key() == Qt::Key_Return ||
                key->key() == Qt::Key_Enter) {
                emit downPressed();
                return true;
            }
            if (key->key() == Qt::Key_Escape) {
                if (empty)
                    emit escaped();
                else
                    takeAway();
                return true;
            }
            if (key->key() == Qt::Key_Backspace && empty) {
                emit backspaceInEmpty();
                return true;
            }
            break;
        }
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tarn
