extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}
#include <algorithm>
#include <cmath>
#include <memory>

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include "TarnCore/platform/linux/MediaReader.h"

namespace tarn {
namespace {

/// Formats that hold their own sound and pictures. Playlists are left out: following one would
/// open other files, or the network, on behalf of whoever wrote it.
constexpr const char* formats =
    "mov,mp4,matroska,webm,avi,mpegts,mpeg,asf,flv,ogg,mp3,flac,wav,w64,aac,aiff,ape,wv,mpc,"
    "mpc8,amr,ac3,eac3,dts,tta,caf,au,h264,hevc,m4v,mpegvideo,rm,gxf,mxf,nut,dv";

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};

std::optional<std::string> text(const TagLib::String& value) {
    std::string utf8 = value.stripWhiteSpace().to8Bit(true);
    return utf8.empty() ? std::nullopt : std::optional(std::move(utf8));
}

/// Tags and length of sound files; knows more about tags than libavformat does.
void readTags(const std::string& path, ItemMetadata& metadata) {
    const TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
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

void readStreams(const std::string& path, ItemMetadata& metadata) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    av_dict_set(&options, "format_whitelist", formats, 0);
    AVFormatContext* opened = nullptr;
    const int result = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, &options);
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
        const std::string name = avcodec_get_name(codec.codec_id);
        if (std::find(metadata.codecs.begin(), metadata.codecs.end(), name) ==
            metadata.codecs.end())
            metadata.codecs.push_back(name);
        if (!isVideo || metadata.pixelWidth || codec.width <= 0 || codec.height <= 0) continue;
        const bool isTurned = isSideways(stream);
        metadata.pixelWidth = isTurned ? codec.height : codec.width;
        metadata.pixelHeight = isTurned ? codec.width : codec.height;
    }
}

class FilmReader final : public MediaReader {
public:
    FilmReader() { av_log_set_level(AV_LOG_QUIET); }

    void read(const std::string& path, ItemMetadata& metadata) const override {
        try {
            readTags(path, metadata);
            readStreams(path, metadata);
        } catch (const std::exception&) {
            // Out of memory over a broken file: what was read so far stands.
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
