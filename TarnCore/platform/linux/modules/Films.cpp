extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

#include <taglib/fileref.h>
#include <taglib/tag.h>
#include <taglib/tiostream.h>

#include "TarnCore/platform/linux/MediaReader.h"
#include "TarnCore/platform/linux/modules/FileCursor.h"
#include "TarnCore/platform/linux/modules/MediaInput.h"

namespace tarn {
namespace {

/// Formats that hold their own sound and pictures. Playlists are left out: following one would
/// open other files, or the network, on behalf of whoever wrote it.
constexpr const char* formats =
    "mov,mp4,matroska,webm,avi,mpegts,mpeg,asf,flv,ogg,mp3,flac,wav,w64,aac,aiff,ape,wv,mpc,"
    "mpc8,amr,ac3,eac3,dts,tta,caf,au,h264,hevc,m4v,mpegvideo,rm,gxf,mxf,nut,dv";

constexpr int readBuffer = 32 * 1024;  // bytes

// TagLib’s types for sizes and places.
using Count = std::size_t;
#if TAGLIB_MAJOR_VERSION >= 2
using Offset = TagLib::offset_t;
using Start = TagLib::offset_t;
#else
using Offset = long;
using Start = unsigned long;
#endif

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};

std::optional<std::string> text(const TagLib::String& value) {
    std::string utf8 = value.stripWhiteSpace().to8Bit(true);
    return utf8.empty() ? std::nullopt : std::optional(std::move(utf8));
}

/// A file as TagLib reads it. Writing does nothing.
class TagStream final : public TagLib::IOStream {
public:
    TagStream(const FileBytes& file, const std::string& name) : cursor_(file), name_(name) {}

    TagLib::FileName name() const override { return name_.c_str(); }
    TagLib::ByteVector readBlock(Count length) override {
        // A broken file may ask for more than there is memory for.
        const std::int64_t left = std::clamp<std::int64_t>(cursor_.size() - cursor_.place(), 0,
                                                           std::numeric_limits<int>::max());
        TagLib::ByteVector block(static_cast<unsigned>(std::min(length, static_cast<Count>(left))),
                                 0);
        block.resize(static_cast<unsigned>(cursor_.read({block.data(), block.size()})));
        return block;
    }
    void seek(Offset offset, Position from) override {
        std::int64_t base = 0;
        if (from == Current) base = cursor_.place();
        if (from == End) base = cursor_.size();
        std::int64_t to = 0;
        if (!__builtin_add_overflow(base, std::int64_t{offset}, &to)) cursor_.moveTo(to);
    }
    Offset tell() const override { return static_cast<Offset>(cursor_.place()); }
    Offset length() override { return static_cast<Offset>(cursor_.size()); }
    bool isOpen() const override { return true; }

    bool readOnly() const override { return true; }
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, Start, Count) override {}
    void removeBlock(Start, Count) override {}
    void truncate(Offset) override {}

private:
    FileCursor cursor_;
    const std::string& name_;
};

/// Tags and length of sound files; knows more about tags than libavformat does.
void readTags(const FileBytes& bytes, const std::string& name, ItemMetadata& metadata) {
    TagStream stream(bytes, name);
    const TagLib::FileRef file(&stream, true, TagLib::AudioProperties::Fast);
    if (file.isNull()) return;
    if (const TagLib::Tag* tag = file.tag()) {
        metadata.title = text(tag->title());
        metadata.artist = text(tag->artist());
        metadata.album = text(tag->album());
    }
    if (const TagLib::AudioProperties* properties = file.audioProperties())
        if (properties->lengthInMilliseconds() > 0)
            metadata.duration = properties->lengthInMilliseconds() / 1000.0;
}

/// True when the film is to be turned by a quarter before it is shown.
bool isSideways(const AVStream& stream) {
#if LIBAVFORMAT_VERSION_MAJOR >= 61
    const AVPacketSideData* data =
        av_packet_side_data_get(stream.codecpar->coded_side_data,
                                stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    const std::uint8_t* matrix = data ? data->data : nullptr;
#else
    const std::uint8_t* matrix =
        av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
#endif
    if (!matrix) return false;
    const double angle = av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    return std::isfinite(angle) && std::lround(angle / 90) % 2 != 0;
}

void setTag(std::optional<std::string>& field, const AVDictionary* tags, const char* key) {
    const AVDictionaryEntry* entry = av_dict_get(tags, key, nullptr, 0);
    if (!field && entry && *entry->value) field = entry->value;
}

void readStreams(const FileBytes& bytes, const std::string& name, ItemMetadata& metadata) {
    const MediaInput input(bytes, readBuffer);
    AVFormatContext* opened = avformat_alloc_context();
    if (!input.context() || !opened) {
        avformat_free_context(opened);
        return;
    }
    opened->pb = input.context();
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "", 0);  // It names nothing else to be opened.
    av_dict_set(&options, "format_whitelist", formats, 0);
    // Which frees what it cannot open.
    const int result = avformat_open_input(&opened, name.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (result < 0) return;
    const std::unique_ptr<AVFormatContext, CloseInput> context(opened);
    if (avformat_find_stream_info(context.get(), nullptr) < 0) return;
    if (!metadata.duration && context->duration > 0)
        metadata.duration = static_cast<double>(context->duration) / AV_TIME_BASE;

    // Ogg keeps its tags with a stream.
    const auto readDictionary = [&](const AVDictionary* tags) {
        setTag(metadata.title, tags, "title");
        setTag(metadata.artist, tags, "artist");
        setTag(metadata.album, tags, "album");
    };
    readDictionary(context->metadata);
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        const AVStream& stream = *context->streams[i];
        const AVCodecParameters& codec = *stream.codecpar;
        const bool isVideo = codec.codec_type == AVMEDIA_TYPE_VIDEO;
        if (!isVideo && codec.codec_type != AVMEDIA_TYPE_AUDIO) continue;
        readDictionary(stream.metadata);
        // The cover of a record is no film.
        if ((stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) continue;
        const std::string codecName = avcodec_get_name(codec.codec_id);
        if (std::find(metadata.codecs.begin(), metadata.codecs.end(), codecName) ==
            metadata.codecs.end())
            metadata.codecs.push_back(codecName);
        if (!isVideo || metadata.pixelWidth || codec.width <= 0 || codec.height <= 0) continue;
        const bool isTurned = isSideways(stream);
        metadata.pixelWidth = isTurned ? codec.height : codec.width;
        metadata.pixelHeight = isTurned ? codec.width : codec.height;
    }
}

class FilmReader final : public MediaReader {
public:
    FilmReader() { av_log_set_level(AV_LOG_QUIET); }

    void read(const LinuxFileBytes& file, const std::string& name,
              ItemMetadata& metadata) const override {
        try {
            readTags(file, name, metadata);
            readStreams(file, name, metadata);
        } catch (const std::exception&) {
            // No memory for a broken file, or a disk that fails: what was read so far stands.
        }
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::MediaReader* tarnMediaReader(
    int version) {
    static const tarn::FilmReader reader;
    return version == tarn::mediaReaderVersion ? &reader : nullptr;
}
