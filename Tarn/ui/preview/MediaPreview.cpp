#include "Tarn/ui/preview/MediaPreview.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QLocale>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>

#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/preview/MediaStage.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/Format.h"

namespace tarn {
namespace {

/// Positions of the slider for a second.
constexpr double steps = 100;
constexpr double skip = 5;  // seconds
constexpr int soundHeight = 168;
constexpr int coverHeight = 240;  // of sound, where there is room

QString clockText(double seconds) {
    const auto whole = static_cast<long>(std::floor(std::max(0.0, seconds)));
    const QString tail = QStringLiteral("%1:%2")
                             .arg(whole / 60 % 60, whole >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(whole % 60, 2, 10, QLatin1Char('0'));
    return whole >= 3600 ? QStringLiteral("%1:%2").arg(whole / 3600).arg(tail) : tail;
}

}  // namespace

MediaPreview::MediaPreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent),
      player_(new MediaPlayer(this)),
      stage_(new MediaStage(this)),
      title_(new QLabel(this)),
      caption_(new QLabel(this)),
      bar_(new QWidget(this)) {
    auto* column = new QVBoxLayout(this);
    const int side = isSmall() ? 0 : Metrics::space16;
    column->setContentsMargins(side, side, side, isSmall() ? 0 : Metrics::space8);
    column->setSpacing(Metrics::space8);
    column->addStretch(0);
    column->addWidget(stage_, 1);
    for (QLabel* label : {title_, caption_}) {
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setMinimumWidth(1);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->hide();
        column->addWidget(label);
    }
    title_->setFont(Fonts::title());
    caption_->setForegroundRole(QPalette::PlaceholderText);
    column->addStretch(0);
    column->addWidget(bar_);
    auto* row = new QHBoxLayout(bar_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Metrics::space8);
    play_ = addButton(bar_, "play");
    row->addWidget(play_);
    slider_ = new QSlider(Qt::Horizontal, bar_);
    slider_->setAccessibleName(tr("Position"));
    slider_->setPageStep(static_cast<int>(skip * steps));
    slider_->setSingleStep(static_cast<int>(skip * steps));
    row->addWidget(slider_, 1);
    time_ = new TabularLabel(bar_);
    row->addWidget(time_);
    sound_ = addButton(bar_, "speaker");
    row->addWidget(sound_);
    setFocusProxy(play_);
    connect(play_, &QToolButton::clicked, this, &MediaPreview::toggle);
    connect(sound_, &QToolButton::clicked, this, [this] {
        player_->setMuted(!player_->isMuted());
        updateButtons();
    });
    connect(slider_, &QSlider::actionTriggered, this,
            [this] { player_->seek(slider_->sliderPosition() / steps); });
    connect(stage_, &MediaStage::clicked, this, &MediaPreview::toggle);
    connect(player_, &MediaPlayer::opened, this, &MediaPreview::showOpened);
    connect(player_, &MediaPlayer::failed, this, [this](const QString& sentence) {
        if (!isReady_) emit failed(sentence);
    });
    connect(player_, &MediaPlayer::picture, this, [this](const QImage& image) {
        if (image.isNull()) return;
        const MediaFacts& facts = player_->facts();
        stage_->setPicture(image, facts.hasPicture ? QSize(facts.width, facts.height) : QSize());
    });
    connect(player_, &MediaPlayer::playingChanged, this, &MediaPreview::updateButtons);
    connect(player_, &MediaPlayer::positionChanged, this, &MediaPreview::updateTime);
    connect(player_, &MediaPlayer::soundFailed, this, [this] {
        caption_->setText(tr("No sound: this computer has no sound system that answers."));
        caption_->show();
        updateButtons();
    });
}

MediaPreview::~MediaPreview() = default;

QToolButton* MediaPreview::addButton(QWidget* bar, const char* symbol) {
    auto* button = new QToolButton(bar);
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol(symbol));
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QString MediaPreview::fact() const {
    if (!isReady_) return {};
    const MediaFacts& facts = player_->facts();
    QStringList all;
    const QLocale locale;
    if (facts.hasPicture)
        all.append(tr("%1 × %2").arg(locale.toString(facts.width), locale.toString(facts.height)));
    if (facts.duration > 0) all.append(QString::fromStdString(Format::duration(facts.duration)));
    return all.join(QStringLiteral(" · "));
}

int MediaPreview::heightFor(int width) const {
    const int controls = Metrics::controlHeight + Metrics::space8;
    const MediaFacts& facts = player_->facts();
    if (!facts.hasPicture || facts.width < 1) return soundHeight + controls;
    const double shown = std::min<double>(width, facts.width / devicePixelRatioF());
    return static_cast<int>(std::ceil(shown * facts.height / facts.width)) + controls;
}

void MediaPreview::load() {
    isReady_ = false;
    const QSize room = stage_->size().expandedTo({Metrics::inspectorMinimum, 200});
    player_->setPictureSize(room * devicePixelRatioF());
    player_->open(item().url);
}

void MediaPreview::showOpened() {
    const MediaFacts& facts = player_->facts();
    stage_->clear();
    stage_->setIcon(Icons::forItem(item()));
    const bool showsTitle = !facts.hasPicture && !isSmall();
    // The name of sound stands below its cover, both of them in the middle.
    auto* column = static_cast<QVBoxLayout*>(layout());
    column->setStretch(0, showsTitle ? 2 : 0);
    column->setStretch(column->indexOf(bar_) - 1, showsTitle ? 3 : 0);
    column->setStretch(column->indexOf(stage_), showsTitle ? 0 : 1);
    stage_->setMinimumHeight(showsTitle ? coverHeight : 1);
    title_->setText(displayText(facts.title.empty() ? item().name : facts.title));
    title_->setVisible(showsTitle);
    QStringList caption;
    for (const std::string& text : {facts.artist, facts.album})
        if (!text.empty()) caption.append(displayText(text));
    caption_->setText(caption.join(QStringLiteral(" — ")));
    caption_->setVisible(showsTitle && !caption.isEmpty());
    slider_->setRange(0, static_cast<int>(std::lround(facts.duration * steps)));
    slider_->setEnabled(facts.duration > 0);
    sound_->setVisible(facts.hasSound);
    stage_->setAccessibleName(facts.hasPicture ? tr("Film") : tr("Cover"));
    isReady_ = true;
    updateButtons();
    updateTime();
    emit factChanged();
    emit ready();
}

void MediaPreview::toggle() {
    if (player_->isPlaying())
        player_->pause();
    else
        player_->play();
}

void MediaPreview::updateButtons() {
    const bool isPlaying = player_->isPlaying();
    const QString play = isPlaying ? tr("Pause") : tr("Play");
    play_->setIcon(Icons::symbol(isPlaying ? "pause" : "play"));
    play_->setAccessibleName(play);
    play_->setToolTip(tr("%1 (K)").arg(play));
    const bool isMuted = player_->isMuted();
    const QString sound = isMuted ? tr("Turn Sound On") : tr("Turn Sound Off");
    sound_->setIcon(Icons::symbol(isMuted ? "speaker.slash" : "speaker"));
    sound_->setAccessibleName(sound);
    sound_->setToolTip(tr("%1 (M)").arg(sound));
}

void MediaPreview::updateTime() {
    const double at = player_->position();
    const double duration = player_->facts().duration;
    time_->setText(duration > 0 ? tr("%1 / %2").arg(clockText(at), clockText(duration))
                                : clockText(at));
    if (!slider_->isSliderDown()) slider_->setValue(static_cast<int>(std::lround(at * steps)));
}

void MediaPreview::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_K:
        case Qt::Key_MediaPlay:
        case Qt::Key_MediaTogglePlayPause:
            toggle();
            break;
        case Qt::Key_J:
            player_->seek(player_->position() - skip);
            break;
        case Qt::Key_L:
            player_->seek(player_->position() + skip);
            break;
        case Qt::Key_M:
            player_->setMuted(!player_->isMuted());
            updateButtons();
            break;
        default:
            event->ignore();
    }
}

void MediaPreview::resizeEvent(QResizeEvent* event) {
    Preview::resizeEvent(event);
    // What is drawn from now on has the new size.
    const QSize room = stage_->size().expandedTo({Metrics::inspectorMinimum, 200});
    player_->setPictureSize(room * devicePixelRatioF());
}

void MediaPreview::clear() {
    player_->close();
    stage_->clear();
    title_->clear();
    caption_->clear();
    isReady_ = false;
}

}  // namespace tarn
