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
    addScrolling(*scroll_, *content, *done_);
    content->installEventFilter(this);
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
