#include "Tarn/ui/preview/MediaPlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QtCore/QPointer>

#include "Tarn/model/MainThread.h"
#include "Tarn/ui/preview/DrawnImage.h"
#include "Tarn/ui/preview/SoundPump.h"

namespace tarn {
namespace {

using PreviewProtocol::Ask;

constexpr std::size_t picturesAhead = 6;
constexpr std::size_t mostPictures = 20;
constexpr double soundAhead = 0.6;  // seconds
/// A film that is this far behind its clock waits for its pictures.
constexpr double mostBehind = 0.4;
constexpr int slowestTick = 100;  // milliseconds; for the position of sound

}  // namespace

MediaPlayer::MediaPlayer(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &MediaPlayer::tick);
}

MediaPlayer::~MediaPlayer() { token_.cancel(); }

template <class Show>
void MediaPlayer::ask(const Question& question, Show show) {
    reader_->ask(
        file_, question, token_,
        [self = QPointer(this), generation = generation_, show = std::move(show)](Answer answer) {
            MainThread::post(self,
                             [generation, show, answer = std::move(answer)](MediaPlayer& there) {
                                 if (generation == there.generation_) show(there, answer);
                             });
        });
}

void MediaPlayer::open(const URL& file) {
    close();
    file_ = file;
    if (!reader_) reader_ = std::make_unique<PreviewReader>();
    Question question;
    question.ask = Ask::media;
    ask(question, [](MediaPlayer& self, const Answer& answer) {
        const auto facts = answer.outcome == PreviewReader::Outcome::answered
                               ? PreviewProtocol::decodeMediaFacts(answer.bytes)
                               : std::nullopt;
        if (!facts) {
            emit self.failed(answer.outcome == PreviewReader::Outcome::missing
                                 ? tr("The program that plays it is missing.")
                                 : tr("It is damaged, or of a kind that cannot be played."));
            return;
        }
        self.facts_ = *facts;
        self.isMuted_ = facts->hasPicture;  // A film makes no noise until somebody wants it.
        emit self.opened();
        self.askCover();
    });
}

void MediaPlayer::askCover() {
    Question question;
    question.ask = Ask::mediaCover;
    question.width = size_.width();
    question.height = size_.height();
    ask(question, [](MediaPlayer& self, const Answer& answer) {
        const auto cover = PreviewProtocol::decodePicture(answer.bytes);
        if (cover && !self.isPlaying_) emit self.picture(DrawnImage::image(*cover));
    });
}

void MediaPlayer::close() {
    token_.cancel();
    token_ = CancelToken();
    ++generation_;
    ++run_;
    const bool wasPlaying = std::exchange(isPlaying_, false);
    stopClock();
    start_ = 0;
    facts_ = {};
    pictures_.clear();
    isAsking_ = isAtEnd_ = false;
    if (sound_) sound_->close();
    if (wasPlaying) emit playingChanged();
}

bool MediaPlayer::wantsSound() const {
    return facts_.hasSound && !isMuted_ && (!sound_ || sound_->works());
}

double MediaPlayer::position() const {
    if (!isPlaying_ || !clock_.isValid()) return start_;
    double at = start_ + static_cast<double>(clock_.nsecsElapsed()) * 1e-9;
    if (soundLeads()) {
        // Nothing moves until the first sound is heard.
        const double heard = sound_->heard();
        at = heard < 0 ? start_ : heard;
    }
    return facts_.duration > 0 ? std::min(at, facts_.duration) : at;
}

void MediaPlayer::stopClock() {
    timer_.stop();
    clock_.invalidate();
}

void MediaPlayer::play() {
    if (isPlaying_ || (!facts_.hasPicture && !facts_.hasSound)) return;
    const bool isOver = facts_.duration > 0 && start_ >= facts_.duration - 0.05;
    isPlaying_ = true;
    restartAt(isOver ? 0 : start_);
    emit playingChanged();
}

void MediaPlayer::pause() {
    if (!isPlaying_) return;
    start_ = position();
    isPlaying_ = false;
    ++run_;
    stopClock();
    pictures_.clear();
    if (sound_) sound_->drop();
    emit playingChanged();
    emit positionChanged();
}

void MediaPlayer::seek(double seconds) {
    const double most = facts_.duration > 0 ? facts_.duration : seconds;
    restartAt(std::clamp(seconds, 0.0, std::max(0.0, most)));
}

void MediaPlayer::setMuted(bool muted) {
    if (muted == isMuted_) return;
    const double at = position();
    isMuted_ = muted;
    // The decoder has passed by the sound that was not wanted.
    if (isPlaying_) restartAt(at);
}

void MediaPlayer::restartAt(double seconds) {
    ++run_;
    start_ = seconds;
    asked_ = seconds;
    soundUntil_ = seconds;
    isSeeking_ = true;
    isAtEnd_ = false;
    isAsking_ = false;
    isSoundLate_ = false;
    pictures_.clear();
    stopClock();
    if (sound_) sound_->drop();
    if (isPlaying_ && wantsSound() && !sound_) sound_ = std::make_unique<SoundPump>();
    emit positionChanged();
    if (isPlaying_ && !facts_.hasPicture && !wantsSound()) {
        // Nothing will come that could start it.
        clock_.start();
        timer_.start(0);
    }
    feed();
}

bool MediaPlayer::isHungry() const {
    if (isAtEnd_ || pictures_.size() >= mostPictures) return false;
    // While it stands still, the one picture that belongs to the place is wanted.
    if (!isPlaying_) return isSeeking_ && facts_.hasPicture;
    if (facts_.hasPicture && pictures_.size() < picturesAhead) return true;
    return wantsSound() && soundUntil_ - position() < soundAhead;
}

void MediaPlayer::feed() {
    if (isAsking_ || !reader_ || !isHungry()) return;
    isAsking_ = true;
    Question question;
    question.ask = Ask::mediaPiece;
    question.first = static_cast<std::int32_t>(std::lround(asked_ * 1000));
    question.count = std::exchange(isSeeking_, false) ? 1 : 0;
    question.width = facts_.hasPicture ? size_.width() : 0;
    question.height = facts_.hasPicture ? size_.height() : 0;
    question.text = isPlaying_ && wantsSound() ? "sound" : "";
    ask(question, [run = run_](MediaPlayer& self, const Answer& answer) {
        if (run != self.run_) return;
        self.isAsking_ = false;
        self.takePiece(answer);
    });
}

void MediaPlayer::takePiece(const Answer& answer) {
    auto piece = answer.outcome == PreviewReader::Outcome::answered
                     ? PreviewProtocol::decodeMediaPiece(answer.bytes)
                     : std::nullopt;
    if (!piece && answer.outcome == PreviewReader::Outcome::killed) {
        pause();
        emit failed(tr("It is damaged, or takes too long to decode."));
        return;
    }
    if (!piece || piece->what == MediaPiece::What::end) {
        isAtEnd_ = true;
    } else if (piece->what == MediaPiece::What::picture) {
        asked_ = std::max(asked_, piece->time);
        QImage image = DrawnImage::image(piece->picture);
        if (!isPlaying_) {
            emit picture(image);
            return;
        }
        pictures_.push_back({piece->time, std::move(image)});
    } else if (wantsSound() && sound_) {
        const double length = static_cast<double>(piece->samples.size()) /
                              (2.0 * MediaDecoding::channels * MediaDecoding::rate);
        soundUntil_ = piece->time + length;
        asked_ = std::max(asked_, soundUntil_);
        sound_->play(piece->time, std::move(piece->samples));
    }
    if (isPlaying_ && !clock_.isValid()) {
        clock_.start();
        tick();
    }
    feed();
}

void MediaPlayer::tick() {
    if (!isPlaying_) return;
    if (sound_ && !sound_->works() && !isMuted_) {
        isMuted_ = true;
        emit soundFailed();
        restartAt(start_);
        return;
    }
    // A film whose sound never comes goes on without.
    if (soundLeads() && pictures_.size() >= mostPictures && sound_->heard() < 0) {
        isSoundLate_ = true;
        clock_.restart();
    }
    double at = position();
    if (!soundLeads() && !pictures_.empty() && at - pictures_.back().time > mostBehind) {
        // Slower than it goes: the clock waits.
        start_ = pictures_.front().time;
        clock_.restart();
        at = start_;
    }
    std::optional<Shown> due;
    while (!pictures_.empty() && pictures_.front().time <= at + 0.002) {
        due = std::move(pictures_.front());
        pictures_.pop_front();
    }
    if (due) emit picture(due->image);
    emit positionChanged();
    const bool isSilent = !soundLeads() || at >= soundUntil_ - 0.02;
    const bool isPast = facts_.duration > 0 && at >= facts_.duration && !facts_.hasPicture;
    if (pictures_.empty() && isSilent && (isAtEnd_ || isPast)) {
        isPlaying_ = false;
        start_ = facts_.duration > 0 ? facts_.duration : at;
        stopClock();
        ++run_;
        emit playingChanged();
        emit positionChanged();
        return;
    }
    int wait = slowestTick;
    if (!pictures_.empty())
        wait = std::clamp(static_cast<int>((pictures_.front().time - at) * 1000), 1, slowestTick);
    timer_.start(wait);
    feed();
}

}  // namespace tarn
