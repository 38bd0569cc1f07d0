#include "Tarn/ui/settings/SettingsSheet.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/ui/settings/IndexSection.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 600;

/// As high as its content.
class Sections final : public QScrollArea {
public:
    QSize sizeHint() const override {
        if (!widget()) return {};
        const int width = viewport()->width();
        const QLayout* layout = widget()->layout();
        return {sheetWidth, layout && layout->hasHeightForWidth()
                                ? layout->totalHeightForWidth(width)
                                : widget()->sizeHint().height()};
    }
};

}  // namespace

SettingsSheet::SettingsSheet(WindowModel& model, QWidget& window)
    : Sheet(window, sheetWidth),
      scroll_(new Sections),
      sections_(nullptr),
      index_(new IndexSection(model, window)),
      done_(new QPushButton(tr("Done"))) {
    setObjectName(QStringLiteral("settingsSheet"));
    setTitle(tr("Settings"));
    auto* content = new QWidget;
    sections_ = new QVBoxLayout(content);
    sections_->setContentsMargins(0, 0, Metrics::scrollBarWidth, 0);
    sections_->setSpacing(Metrics::space24);
    addSection(tr("Text in Files"), index_);
    sections_->addStretch();
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setWidget(content);
    scroll_->setMinimumHeight(Metrics::rowRoomy);
    for (QWidget* ground : {static_cast<QWidget*>(scroll_), scroll_->viewport(), content})
        ground->setAutoFillBackground(false);
    content->installEventFilter(this);
    // The scroll bar stands in the margin.
    QMargins margins = column()->contentsMargins();
    margins.setRight(margins.right() - Metrics::scrollBarWidth);
    column()->setContentsMargins(margins);
    column()->addWidget(scroll_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, 0, Metrics::scrollBarWidth, 0);
    buttons->addStretch();
    buttons->addWidget(done_);
    column()->addLayout(buttons);
    done_->setDefault(true);
    connect(done_, &QPushButton::clicked, this, &Sheet::finish);
    // What has the keyboard is in sight.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && scroll_->widget()->isAncestorOf(now)) scroll_->ensureWidgetVisible(now);
    });
}

void SettingsSheet::addSection(const QString& title, QWidget* section) {
    auto* heading = new QLabel(title);
    heading->setFont(Fonts::semibold(Fonts::body()));
    auto* part = new QVBoxLayout;
    part->setSpacing(Metrics::space12);
    part->addWidget(heading);
    part->addWidget(section);
    sections_->addLayout(part);
}

void SettingsSheet::layOut() { scroll_->updateGeometry(); }

bool SettingsSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == scroll_->widget() && event->type() == QEvent::LayoutRequest)
        scroll_->updateGeometry();
    return Sheet::eventFilter(watched, event);
}

}  // namespace tarn
