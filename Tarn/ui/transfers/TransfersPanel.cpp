#include "Tarn/ui/transfers/TransfersPanel.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/ActivityList.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "Tarn/ui/transfers/ActivityRow.h"
#include "Tarn/ui/transfers/TransferRow.h"

namespace tarn {
namespace {

constexpr int panelWidth = 444;
constexpr int tallest = 420;
constexpr int shadowReach = Metrics::space12;

}  // namespace

TransfersPanel::TransfersPanel(TransferList& list, ActivityList& activities, QWidget& anchor,
                               QWidget& window)
    : QWidget(&window),
      list_(list),
      activities_(activities),
      anchor_(anchor),
      card_(new QVBoxLayout),
      scroll_(new QScrollArea),
      content_(new QWidget),
      column_(new QVBoxLayout(content_)),
      nothing_(new QLabel(tr("Nothing is being copied or moved."))) {
    setAccessibleName(tr("Transfers"));
    // It has the keyboard for Escape when it opens; Tab goes on to what it lists.
    setFocusPolicy(Qt::ClickFocus);
    hide();
    auto* heading = new QLabel(tr("Transfers"));
    heading->setFont(Fonts::semibold(Fonts::body()));
    heading->setContentsMargins(Metrics::space16, Metrics::space4, Metrics::space16, 0);
    nothing_->setForegroundRole(QPalette::PlaceholderText);
    nothing_->setContentsMargins(Metrics::space16, Metrics::space4, Metrics::space16,
                                 Metrics::space8);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    for (QWidget* ground : {static_cast<QWidget*>(scroll_), scroll_->viewport(), content_})
        ground->setAutoFillBackground(false);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    column_->addWidget(nothing_);
    scroll_->setWidget(content_);
    content_->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(shadowReach, shadowReach, shadowReach, shadowReach);
    whole->addLayout(card_);
    card_->setContentsMargins(0, Metrics::space8, 0, Metrics::space8);
    card_->setSpacing(Metrics::space4);
    card_->addWidget(heading);
    card_->addWidget(scroll_, 1);
    connect(&list, &TransferList::listChanged, this, &TransfersPanel::showRows);
    connect(&activities, &ActivityList::listChanged, this, &TransfersPanel::showRows);
    window.installEventFilter(this);
    showRows();
}

void TransfersPanel::open() {
    showRows();
    show();
    raise();
    place();
    setFocus(Qt::PopupFocusReason);
    qApp->installEventFilter(this);
}

void TransfersPanel::close() {
    if (isHidden()) return;
    qApp->removeEventFilter(this);
    hide();
    list_.removeEnded();
    emit closed();
}

void TransfersPanel::showRows() {
    const auto& transfers = list_.transfers();
    std::erase_if(rows_, [&transfers](TransferRow* row) {
        const bool isThere =
            std::find(transfers.begin(), transfers.end(), &row->transfer()) != transfers.end();
        if (isThere) return false;
        row->hide();
        row->deleteLater();
        return true;
    });
    for (TransferModel* transfer : transfers) {
        const auto shown = [transfer](TransferRow* row) { return &row->transfer() == transfer; };
        if (std::any_of(rows_.begin(), rows_.end(), shown)) continue;
        rows_.push_back(new TransferRow(list_, *transfer, content_));
        column_->addWidget(rows_.back());
    }
    showActivities();
    nothing_->setVisible(rows_.empty() && activityRows_.empty());
    if (isVisible()) place();
}

void TransfersPanel::showActivities() {
    std::erase_if(activityRows_, [this](ActivityRow* row) {
        for (const auto& task : activities_.tasks())
            if (task.get() == row->task()) return false;
        row->hide();
        row->deleteLater();
        return true;
    });
    for (const auto& task : activities_.tasks()) {
        const auto shown = [&task](ActivityRow* row) { return row->task() == task.get(); };
        if (std::any_of(activityRows_.begin(), activityRows_.end(), shown)) continue;
        activityRows_.push_back(new ActivityRow(*task, content_));
        column_->addWidget(activityRows_.back());
    }
}

void TransfersPanel::place() {
    const QRect room = parentWidget()->rect().adjusted(0, 0, -Metrics::space2, 0);
    const int width = std::min(panelWidth, room.width());
    const QMargins margins = layout()->contentsMargins() + card_->contentsMargins();
    const int inner = width - margins.left() - margins.right();
    content_->layout()->activate();
    const int rows = content_->layout()->hasHeightForWidth()
                         ? content_->layout()->totalHeightForWidth(inner)
                         : content_->layout()->totalSizeHint().height();
    const int heading = card_->itemAt(0)->sizeHint().height() + card_->spacing();
    const int height = margins.top() + heading + std::min(rows, tallest) + margins.bottom();
    const QPoint below = anchor_.mapTo(parentWidget(), QPoint(0, anchor_.height()));
    const int middle = below.x() + anchor_.width() / 2;
    const int right = room.x() + room.width() - width;
    const int x = std::clamp(middle - width / 2, room.left(), std::max(room.left(), right));
    const int y = below.y() + Metrics::space6 - shadowReach;
    setGeometry(x, y, width, std::min(height, room.height() - y));
}

bool TransfersPanel::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::LayoutRequest:
            if (isVisible()) place();
            break;
        case QEvent::MouseButtonPress:
        case QEvent::Wheel:
            // Not for the window below.
            event->accept();
            return true;
        default:
            break;
    }
    return QWidget::event(event);
}

bool TransfersPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) place();
    if (event->type() == QEvent::MouseButtonPress && isVisible()) {
        auto* widget = qobject_cast<QWidget*>(watched);
        const bool isOurs = !widget || widget == this || isAncestorOf(widget) ||
                            widget == &anchor_ || widget->window() != window();
        if (!isOurs) close();
    }
    return QWidget::eventFilter(watched, event);
}

void TransfersPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void TransfersPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::card(painter, rect().adjusted(shadowReach, shadowReach, -shadowReach, -shadowReach),
                shadowReach);
}

}  // namespace tarn
