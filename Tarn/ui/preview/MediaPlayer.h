#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QSize>
#include <QtCore/QTimer>
#include <QtGui/QImage>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/MediaDecoding.h"
#include "TarnCore/preview/PreviewReader.h"

namespace tarn {

class SoundPump;

/// Plays sound and films that `tarn-extract` decodes: pictures come one by one, as large as they
/// are shown, sound goes to the machine; what is heard is the clock, and without sound the time
/// that passes. A film that cannot be decoded as fast as it goes is played slower.
///
/// Main thread only. Little is kept ahead, so that a film takes some 30 MB of memory.
class MediaPlayer final : public QObject {
    Q_OBJECT
public:
    explicit MediaPlayer(QObject* parent = nullptr);
    ~MediaPlayer() override;

    /// opened() or failed() follows; the cover or a picture of the film after that.
    void open(const URL& file);
    void close();

    const MediaFacts& facts() const { return facts_; }
    /// Of the pictures, in device pixels, at most.
    void setPictureSize(QSize pixels) { size_ = pixels; }

    bool isPlaying() const { return isPlaying_; }
    void play();
    void pause();
    /// Seconds from the beginning.
    double position() const;
    void seek(double seconds);
    bool isMuted() const { return isMuted_; }
    void setMuted(bool muted);

signals:
    void opened();
    /// It cannot be played; a finished sentence.
    void failed(const QString& sentence);
    void picture(const QImage& image);
    void playingChanged();
    void positionChanged();
    /// There is no sound system: it is played without sound.
    void soundFailed();

private:
    struct Shown {
        double time = 0;
        QImage image;
    };
    using Question = PreviewProtocol::Question;
    using Answer = PreviewReader::Answer;

    template <class Show>
    void ask(const Question& question, Show show);
    void askCover();
    void takePiece(const Answer& answer);
    bool wantsSound() const;
    /// What is heard is the clock.
    bool soundLeads() const { return sound_ && wantsSound() && !isSoundLate_; }
    bool isHungry() const;
    void feed();
    void tick();
    void restartAt(double seconds);
    void stopClock();

    std::unique_ptr<PreviewReader> reader_;
    std::unique_ptr<SoundPump> sound_;
    URL file_;
    CancelToken token_;
    std::uint64_t generation_ = 0;  ///< Counts files.
    std::uint64_t run_ = 0;         ///< Counts places that were begun at; pieces of others are old.
    MediaFacts facts_;
    QSize size_{640, 360};

    bool isPlaying_ = false;
    bool isMuted_ = false;
    bool isAsking_ = false;
    bool isSeeking_ = false;    ///< The next question says where.
    bool isAtEnd_ = false;      ///< Nothing more comes.
    bool isSoundLate_ = false;  ///< The pictures wait for none any more.
    double start_ = 0;          ///< Where the clock was started, in seconds of the file.
    QElapsedTimer clock_;       ///< Valid while it runs.
    double asked_ = 0;          ///< Up to where pieces have come.
    double soundUntil_ = 0;
    std::deque<Shown> pictures_;
    QTimer timer_;
};

}  // namespace tarn
