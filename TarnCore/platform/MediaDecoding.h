#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "TarnCore/platform/DrawnPicture.h"
#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// What a file of sound or film is. Strings are UTF-8 and empty when unknown.
struct MediaFacts {
    double duration = 0;  ///< Seconds; 0 when unknown.
    bool hasPicture = false;
    bool hasSound = false;
    std::int32_t width = 0;  ///< Of the upright picture as it is shown, in pixels.
    std::int32_t height = 0;
    std::string title;
    std::string artist;
    std::string album;
    bool operator==(const MediaFacts&) const = default;
};

/// Something that is played: a picture or a stretch of sound.
struct MediaPiece {
    enum class What : std::uint8_t {
        end,
        picture,
        sound,
    };
    What what = What::end;
    double time = 0;  ///< Seconds from the beginning, when it is due.
    DrawnPicture picture;
    /// Interleaved samples of 16 bits in the machine's order, `MediaDecoding::rate` a second and
    /// channel.
    std::string samples;
    bool operator==(const MediaPiece&) const = default;
};

/// A file of sound or film that is open. For one thread at a time.
class OpenMedia {
public:
    virtual ~OpenMedia() = default;
    virtual MediaFacts facts() const = 0;
    /// The picture that belongs to the sound, or one of the film from where something can be seen;
    /// within `width` × `height`. What is played goes on behind it.
    virtual std::optional<DrawnPicture> cover(int width, int height) = 0;
    /// The next piece is the first one at `time` or later.
    virtual void seek(double time) = 0;
    struct Wants {
        int width = 0;  ///< Pictures fit into this; no pictures at 0.
        int height = 0;
        bool sound = false;
    };
    /// `end` behind the last, and when nothing can be read any more.
    virtual MediaPiece next(const Wants& wants) = 0;
};

/// Decodes sound and films. Reads what strangers made with large libraries: only for the helper
/// program that is locked in.
class MediaDecoding {
public:
    virtual ~MediaDecoding() = default;
    static constexpr int rate = 48'000;  ///< Of all sound.
    static constexpr int channels = 2;
    /// Null when it is nothing that can be decoded. `bytes` must outlive it.
    virtual std::unique_ptr<OpenMedia> open(const FileBytes& bytes) const = 0;
};

}  // namespace tarn
