#include "Tarn/ui/preview/PreviewWidget.h"

#include <QtWidgets/QStackedLayout>

#include "Tarn/ui/preview/ArchivePreview.h"
#include "Tarn/ui/preview/FontPreview.h"
#include "Tarn/ui/preview/IconPreview.h"
#include "Tarn/ui/preview/ImagePreview.h"
#include "Tarn/ui/preview/MediaPreview.h"
#include "Tarn/ui/preview/PDFPreview.h"
#include "Tarn/ui/preview/TablePreview.h"
#include "Tarn/ui/preview/TextPreview.h"

namespace tarn {

PreviewWidget::PreviewWidget(PreviewPlace place, QWidget* parent)
    : QWidget(parent),
      place_(place),
      stack_(new QStackedLayout(this)),
      icon_(new IconPreview(place, this)) {
    stack_->setContentsMargins(0, 0, 0, 0);
    stack_->addWidget(icon_);
    connect(icon_, &Preview::factChanged, this, &PreviewWidget::factChanged);
    for (QTimer* timer : {&patience_, &hurry_, &last_}) timer->setSingleShot(true);
    patience_.setInterval(patience);
    hurry_.setInterval(hurry);
    last_.setInterval(hurry);
    connect(&patience_, &QTimer::timeout, this, [this] { showIcon({}); });
    connect(&hurry_, &QTimer::timeout, this, &PreviewWidget::begin);
}

PreviewWidget::~PreviewWidget() = default;

Preview* PreviewWidget::make(PreviewKind kind) {
    switch (kind) {
        case PreviewKind::image:
            return new ImagePreview(place_, this);
        case PreviewKind::text:
            return new TextPreview(TextPreview::Source::bytes, place_, this);
        case PreviewKind::document:
            return new TextPreview(TextPreview::Source::document, place_, this);
        case PreviewKind::pdf:
            return new PDFPreview(place_, this);
        case PreviewKind::table:
            return new TablePreview(place_, this);
        case PreviewKind::font:
            return new FontPreview(place_, this);
        case PreviewKind::media:
            return new MediaPreview(place_, this);
        case PreviewKind::archive:
            return new ArchivePreview(place_, this);
        case PreviewKind::icon:
        case PreviewKind::folder:
            break;
    }
    return icon_;
}

Preview* PreviewWidget::of(PreviewKind kind) {
    auto [slot, isNew] = previews_.try_emplace(kind);
    if (!isNew) return slot->second;
    Preview* preview = make(kind);
    slot->second = preview;
    if (preview == icon_) return preview;
    stack_->addWidget(preview);
    connect(preview, &Preview::ready, this, [this, preview] { settle(preview); });
    connect(preview, &Preview::failed, this, [this, preview](const QString& sentence) {
        if (preview != wanted_) return;
        preview->end();
        showIcon(sentence);
        wanted_ = icon_;
        isSettled_ = true;
        emit factChanged();
    });
    connect(preview, &Preview::factChanged, this, [this, preview] {
        if (preview == wanted_) emit factChanged();
    });
    return preview;
}

void PreviewWidget::show(const FileItem& item, std::optional<PreviewKind> kind) {
    kind_ = kind.value_or(PreviewKinds::of(item));
    item_ = item;
    isSettled_ = false;
    const bool isHurried = last_.isActive();
    last_.start();
    if (wanted_ && wanted_ != icon_ && isHurried) wanted_->end();
    if (isHurried) {
        showIcon({});
        hurry_.start();
    } else {
        begin();
    }
}

void PreviewWidget::begin() {
    hurry_.stop();
    Preview* next = of(kind_);
    if (wanted_ && wanted_ != next && wanted_ != icon_) {
        // It is in front until the next one is ready, but reads no more.
        Preview* before = wanted_;
        if (before != stack_->currentWidget()) before->end();
    }
    wanted_ = next;
    if (next == icon_) {
        showIcon({});
        isSettled_ = true;
        emit factChanged();
        return;
    }
    patience_.start();
    // What it asks for depends on its size, and the stack gives one only to what is in front.
    next->setGeometry(rect());
    if (next->layout()) next->layout()->activate();
    next->begin(item_);
}

void PreviewWidget::settle(Preview* preview) {
    if (preview != wanted_) return;
    patience_.stop();
    isSettled_ = true;
    auto* before = qobject_cast<Preview*>(stack_->currentWidget());
    stack_->setCurrentWidget(preview);
    if (before && before != preview) before->end();
    emit factChanged();
    emit changed();
}

void PreviewWidget::showIcon(const QString& sentence) {
    patience_.stop();
    auto* before = qobject_cast<Preview*>(stack_->currentWidget());
    icon_->begin(item_);
    icon_->setSentence(sentence);
    stack_->setCurrentWidget(icon_);
    if (before && before != icon_ && before != wanted_) before->end();
    emit changed();
}

void PreviewWidget::say(const QString& sentence) {
    hurry_.stop();
    wanted_ = icon_;
    isSettled_ = true;
    showIcon(sentence);
}

void PreviewWidget::clear() {
    patience_.stop();
    hurry_.stop();
    for (const auto& [kind, preview] : previews_) preview->end();
    icon_->end();
    stack_->setCurrentWidget(icon_);
    wanted_ = nullptr;
    isSettled_ = true;
    item_ = {};
}

Preview* PreviewWidget::current() const { return qobject_cast<Preview*>(stack_->currentWidget()); }

QString PreviewWidget::fact() const { return wanted_ && isSettled_ ? wanted_->fact() : QString(); }

int PreviewWidget::heightFor(int width) const {
    const Preview* shown = current();
    return shown ? shown->heightFor(width) : 0;
}

}  // namespace tarn
