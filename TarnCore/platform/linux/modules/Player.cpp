// Sound and films, by FFmpeg's libraries; the module tarn-player.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <span>
#include <utility>

#include "TarnCore/platform/linux/DrawingModules.h"
#include "TarnCore/platform/linux/modules/MediaInput.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

namespace tarn {
namespace {

constexpr int readBuffer = 256 * 1024;
constexpr int largestSide = 8192;  // pixels of a film
/// Sound is handed on in stretches of at least this, so that they are worth a message.
constexpr std::size_t shortestSound = std::size_t{MediaDecoding::rate} / 10 * 4;  // bytes
/// Packets that say nothing in a row, before the file counts as broken.
constexpr int mostSilent = 20'000;

struct Release {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Release>;

/// Quarter turns to the right that make the picture upright.
int quarterTurns(const AVStream* stream) {
#if LIBAVCODEC_VERSION_MAJOR >= 61
    const AVPacketSideData* side =
        av_packet_side_data_get(stream->codecpar->coded_side_data,
                                stream->codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    const std::uint8_t* matrix = side ? side->data : nullptr;
#else
    const std::uint8_t* matrix =
        av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
#endif
    if (!matrix) return 0;
    const double degrees = -av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    if (!std::isfinite(degrees)) return 0;
    return (static_cast<int>(std::lround(degrees / 90)) % 4 + 4) % 4;
}

DrawnPicture turned(DrawnPicture picture, int quarters) {
    if (quarters == 0) return picture;
    DrawnPicture out = picture;
    if (quarters != 2) std::swap(out.width, out.height);
    const auto pixel = [&picture](int x, int y) {
        return &picture
                    .pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                             static_cast<std::size_t>(x)) *
                            4];
    };
    std::size_t to = 0;
    for (int y = 0; y < out.height; ++y) {
        for (int x = 0; x < out.width; ++x, to += 4) {
            const char* from = quarters == 1 ? pixel(y, picture.height - 1 - x)
                               : quarters == 2
                                   ? pixel(picture.width - 1 - x, picture.height - 1 - y)
                                   : pixel(picture.width - 1 - y, x);
            std::memcpy(&out.pixels[to], from, 4);
        }
    }
    return out;
}

class Decoder {
public:
    bool open(AVStream* stream) {
        const AVCodec* codec = avcodec_find_decoder(stream->codecpar->codec_id);
        if (!codec) return false;
        context_.reset(avcodec_alloc_context3(codec));
        if (!context_ || avcodec_parameters_to_context(context_.get(), stream->codecpar) < 0)
            return false;
        context_->thread_count = 1;
        context_->max_pixels = std::int64_t{largestSide} * largestSide;
        if (avcodec_open2(context_.get(), codec, nullptr) < 0) return false;
        stream_ = stream;
        return true;
    }
    explicit operator bool() const { return stream_ != nullptr; }
    AVStream* stream() const { return stream_; }
    AVCodecContext* context() const { return context_.get(); }
    void flush() { avcodec_flush_buffers(context_.get()); }
    void send(const AVPacket* packet) { avcodec_send_packet(context_.get(), packet); }
    bool receive(AVFrame* frame) { return avcodec_receive_frame(context_.get(), frame) >= 0; }
    /// Seconds from the beginning of the file.
    double time(const AVFrame* frame, std::int64_t start) const {
        if (frame->best_effort_timestamp == AV_NOPTS_VALUE) return -1;
        return static_cast<double>(frame->best_effort_timestamp) * av_q2d(stream_->time_base) -
               static_cast<double>(start) / AV_TIME_BASE;
    }

private:
    Owned<AVCodecContext> context_;
    AVStream* stream_ = nullptr;
};

class FFmpegMedia final : public OpenMedia {
public:
    explicit FFmpegMedia(const FileBytes& bytes) : input_(bytes, readBuffer) {}

    bool open() {
        if (!input_.context()) return false;
        AVFormatContext* format = avformat_alloc_context();
        if (!format) return false;
        format->pb = input_.context();
        // What a file names beside itself is not looked for.
        format->flags |= AVFMT_FLAG_CUSTOM_IO;
        format->max_streams = 64;
        if (avformat_open_input(&format, "", nullptr, nullptr) < 0) return false;
        format_.reset(format);
        if (avformat_find_stream_info(format, nullptr) < 0) return false;
        openStreams();
        frame_.reset(av_frame_alloc());
        packet_.reset(av_packet_alloc());
        return frame_ && packet_ && (film_ || sound_ || attached_ >= 0);
    }

    MediaFacts facts() const override {
        MediaFacts facts;
        if (format_->duration > 0)
            facts.duration = static_cast<double>(format_->duration) / AV_TIME_BASE;
        facts.hasPicture = static_cast<bool>(film_);
        facts.hasSound = static_cast<bool>(sound_);
        if (film_) {
            const auto [width, height] = uprightSize();
            facts.width = width;
            facts.height = height;
        }
        facts.title = tag("title");
        facts.artist = tag("artist");
        facts.album = tag("album");
        return facts;
    }

    std::optional<DrawnPicture> cover(int width, int height) override {
        if (attached_ >= 0)
            if (auto picture = attachedPicture(width, height)) return picture;
        if (!film_) return std::nullopt;
        // A little way in, where it is not black any more.
        const double duration = facts().duration;
        seek(duration > 0 ? std::min(duration / 10, 30.0) : 0);
        waitsUntil_ = -1;  // The nearest frame that stands alone is good enough.
        const MediaPiece piece = next({width, height, false});
        seek(0);
        if (piece.what != MediaPiece::What::picture) return std::nullopt;
        return piece.picture;
    }

    void seek(double time) override {
        const double most = facts().duration;
        time = std::isfinite(time) ? std::max(0.0, most > 0 ? std::min(time, most) : time) : 0;
        const auto place = static_cast<std::int64_t>(time * AV_TIME_BASE) + start();
        if (avformat_seek_file(format_.get(), -1, INT64_MIN, place, place, 0) < 0)
            avformat_seek_file(format_.get(), -1, INT64_MIN, place, INT64_MAX, 0);
        if (film_) film_.flush();
        if (sound_) sound_.flush();
        resampler_.reset();
        ready_.clear();
        samples_.clear();
        isAtEnd_ = false;
        waitsUntil_ = time;
    }

    MediaPiece next(const Wants& wants) override {
        int silent = 0;
        while (ready_.empty() && silent < mostSilent) {
            if (isAtEnd_) return {};
            const int read = av_read_frame(format_.get(), packet_.get());
            if (read < 0) {
                isAtEnd_ = true;
                drain(wants);
            } else {
                ++silent;
                decode(wants, packet_.get());
                av_packet_unref(packet_.get());
            }
        }
        if (ready_.empty()) return {};
        MediaPiece piece = std::move(ready_.front());
        ready_.pop_front();
        return piece;
    }

private:
    std::int64_t start() const {
        return format_->start_time == AV_NOPTS_VALUE ? 0 : format_->start_time;
    }
    std::string tag(const char* key) const {
        const AVDictionaryEntry* entry = av_dict_get(format_->metadata, key, nullptr, 0);
        for (unsigned i = 0; !entry && i < format_->nb_streams; ++i)
            entry = av_dict_get(format_->streams[i]->metadata, key, nullptr, 0);
        return entry && entry->value ? entry->value : "";
    }

    void openStreams() {
        AVFormatContext* format = format_.get();
        for (unsigned i = 0; i < format->nb_streams; ++i) {
            AVStream* stream = format->streams[i];
            const bool isCover = stream->disposition & AV_DISPOSITION_ATTACHED_PIC;
            if (isCover && attached_ < 0) attached_ = static_cast<int>(i);
            stream->discard = AVDISCARD_ALL;
        }
        const int film = av_find_best_stream(format, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        if (film >= 0 && !(format->streams[film]->disposition & AV_DISPOSITION_ATTACHED_PIC) &&
            film_.open(format->streams[film]))
            format->streams[film]->discard = AVDISCARD_DEFAULT;
        const int sound = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, film, nullptr, 0);
        if (sound >= 0 && sound_.open(format->streams[sound]))
            format->streams[sound]->discard = AVDISCARD_DEFAULT;
    }

    std::pair<int, int> uprightSize() const {
        const AVCodecParameters* parameters = film_.stream()->codecpar;
        double width = parameters->width;
        const double height = parameters->height;
        const AVRational shape = film_.stream()->sample_aspect_ratio.num > 0
                                     ? film_.stream()->sample_aspect_ratio
                                     : parameters->sample_aspect_ratio;
        if (shape.num > 0 && shape.den > 0) width *= av_q2d(shape);
        const int w = static_cast<int>(std::clamp(std::lround(width), 1L, long{largestSide}));
        const int h = static_cast<int>(std::clamp(std::lround(height), 1L, long{largestSide}));
        return quarterTurns(film_.stream()) % 2 == 1 ? std::pair(h, w) : std::pair(w, h);
    }

    void decode(const Wants& wants, const AVPacket* packet) {
        if (film_ && packet->stream_index == film_.stream()->index && wants.width > 0) {
            film_.send(packet);
            takePictures(wants);
        } else if (sound_ && packet->stream_index == sound_.stream()->index && wants.sound) {
            sound_.send(packet);
            takeSound();
        }
    }
    void drain(const Wants& wants) {
        if (film_ && wants.width > 0) {
            film_.send(nullptr);
            takePictures(wants);
        }
        if (sound_ && wants.sound) {
            sound_.send(nullptr);
            takeSound();
            handOnSound();
        }
    }

    void takePictures(const Wants& wants) {
        while (film_.receive(frame_.get())) {
            const double time = film_.time(frame_.get(), start());
            if (time >= 0) filmTime_ = time;
            // Between the frame that stands alone and the one that was asked for.
            if (filmTime_ + 1e-3 < waitsUntil_) continue;
            const auto [width, height] = uprightSize();
            auto picture = drawn(frame_.get(), width, height, wants, quarterTurns(film_.stream()),
                                 filmScaler_);
            if (!picture) continue;
            ready_.push_back({MediaPiece::What::picture, filmTime_, std::move(*picture), {}});
        }
    }

    /// The frame within the wanted size, keeping the shape of `width` × `height`.
    static std::optional<DrawnPicture> drawn(const AVFrame* frame, int width, int height,
                                             const Wants& wants, int quarters,
                                             Owned<SwsContext>& scaler) {
        if (frame->width < 1 || frame->height < 1 || frame->width > largestSide ||
            frame->height > largestSide)
            return std::nullopt;
        const double shrunk = std::min({1.0, static_cast<double>(wants.width) / width,
                                        static_cast<double>(wants.height) / height});
        int w = std::max(1, static_cast<int>(std::lround(width * shrunk)));
        int h = std::max(1, static_cast<int>(std::lround(height * shrunk)));
        if (quarters % 2 == 1) std::swap(w, h);
        scaler.reset(sws_getCachedContext(scaler.release(), frame->width, frame->height,
                                          static_cast<AVPixelFormat>(frame->format), w, h,
                                          AV_PIX_FMT_BGRA, SWS_BILINEAR, nullptr, nullptr,
                                          nullptr));
        if (!scaler) return std::nullopt;
        DrawnPicture picture{w, h, DrawnPicture::Form::colour, {}};
        // The scaler writes whole vectors, past the end of a row.
        constexpr std::size_t slack = 64;
        const std::size_t rowBytes = static_cast<std::size_t>(w) * 4;
        picture.pixels.resize(rowBytes * static_cast<std::size_t>(h) + slack);
        std::uint8_t* rows[4] = {reinterpret_cast<std::uint8_t*>(picture.pixels.data())};
        const int strides[4] = {static_cast<int>(rowBytes)};
        sws_scale(scaler.get(), frame->data, frame->linesize, 0, frame->height, rows, strides);
        picture.pixels.resize(rowBytes * static_cast<std::size_t>(h));
        // Films are opaque, whatever the scaler makes of the fourth byte.
        for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
            picture.pixels[i] = static_cast<char>(0xFF);
        return turned(std::move(picture), quarters);
    }

    std::optional<DrawnPicture> attachedPicture(int width, int height) const {
        Decoder decoder;
        AVStream* stream = format_->streams[attached_];
        if (stream->attached_pic.size < 1 || !decoder.open(stream)) return std::nullopt;
        decoder.send(&stream->attached_pic);
        decoder.send(nullptr);
        const Owned<AVFrame> frame(av_frame_alloc());
        if (!frame || !decoder.receive(frame.get())) return std::nullopt;
        Owned<SwsContext> scaler;
        return drawn(frame.get(), frame->width, frame->height, {width, height, false}, 0, scaler);
    }

    void takeSound() {
        while (sound_.receive(frame_.get())) {
            const double time = sound_.time(frame_.get(), start());
            if (time >= 0 && samples_.empty()) soundTime_ = time;
            if (!resampler_ && !makeResampler()) return;
            const int most = swr_get_out_samples(resampler_.get(), frame_->nb_samples);
            if (most <= 0 || most > MediaDecoding::rate * 30) continue;
            const std::size_t before = samples_.size();
            samples_.resize(before + static_cast<std::size_t>(most) * 4);
            auto* out = reinterpret_cast<std::uint8_t*>(&samples_[before]);
            const int got = swr_convert(resampler_.get(), &out, most,
                                        const_cast<const std::uint8_t**>(frame_->extended_data),
                                        frame_->nb_samples);
            samples_.resize(before + static_cast<std::size_t>(std::max(got, 0)) * 4);
            if (samples_.size() >= shortestSound) handOnSound();
        }
    }
    void handOnSound() {
        if (samples_.empty()) return;
        const double length =
            static_cast<double>(samples_.size()) / 4 / double{MediaDecoding::rate};
        if (soundTime_ + length > waitsUntil_)
            ready_.push_back({MediaPiece::What::sound, soundTime_, {}, std::move(samples_)});
        soundTime_ += length;
        samples_.clear();
    }
    bool makeResampler() {
        SwrContext* made = nullptr;
        AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
        AVChannelLayout from{};
        if (av_channel_layout_copy(&from, &frame_->ch_layout) < 0) return false;
        if (from.order == AV_CHANNEL_ORDER_UNSPEC)
            av_channel_layout_default(&from, std::clamp(from.nb_channels, 1, 8));
        const int failed = swr_alloc_set_opts2(
            &made, &stereo, AV_SAMPLE_FMT_S16, MediaDecoding::rate, &from,
            static_cast<AVSampleFormat>(frame_->format), frame_->sample_rate, 0, nullptr);
        av_channel_layout_uninit(&from);
        resampler_.reset(made);
        if (failed < 0 || swr_init(made) < 0) resampler_.reset();
        return resampler_ != nullptr;
    }

    MediaInput input_;
    Owned<AVFormatContext> format_;
    Decoder film_;
    Decoder sound_;
    int attached_ = -1;
    Owned<AVFrame> frame_;
    Owned<AVPacket> packet_;
    Owned<SwsContext> filmScaler_;
    Owned<SwrContext> resampler_;
    std::deque<MediaPiece> ready_;
    std::string samples_;
    double filmTime_ = 0;
    double soundTime_ = 0;
    double waitsUntil_ = -1;
    bool isAtEnd_ = false;
};

class FFmpegDecoding final : public MediaDecoding {
public:
    FFmpegDecoding() { av_log_set_level(AV_LOG_QUIET); }
    std::unique_ptr<OpenMedia> open(const FileBytes& bytes) const override {
        auto media = std::make_unique<FFmpegMedia>(bytes);
        if (!media->open()) return nullptr;
        return media;
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::MediaDecoding* tarnMediaDecoding(
    int version) {
    static const tarn::FFmpegDecoding decoding;
    return version == tarn::mediaDecodingVersion ? &decoding : nullptr;
}
