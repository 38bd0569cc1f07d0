#include "TarnCore/base/Deflate.h"

#include <new>

#include <libdeflate.h>
#include <zlib.h>

namespace tarn {
namespace {

/// What zip and gzip use when nobody asks for another; higher ones gain 1 % for twice the time.
constexpr int level = 6;
constexpr int rawWindowBits = -15;  // 32 KiB, no header and no checksum around it
constexpr std::size_t pieceSize = 256 * 1024;

/// zlib reads through a pointer that is not const, and does not write.
Bytef* input(std::string_view bytes) {
    return const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
}

}  // namespace

std::uint32_t crc32(std::uint32_t crc, std::string_view bytes) {
    return libdeflate_crc32(crc, bytes.data(), bytes.size());
}

struct Inflater::State {
    libdeflate_decompressor* library = libdeflate_alloc_decompressor();
    State() {
        if (!library) throw std::bad_alloc();
    }
    ~State() { libdeflate_free_decompressor(library); }
};

Inflater::Inflater() : state_(std::make_unique<State>()) {}
Inflater::~Inflater() = default;

bool Inflater::inflate(std::string_view packed, std::span<char> out) {
    return libdeflate_deflate_decompress(state_->library, packed.data(), packed.size(), out.data(),
                                         out.size(), nullptr) == LIBDEFLATE_SUCCESS;
}

struct Deflater::State {
    libdeflate_compressor* library = libdeflate_alloc_compressor(level);
    State() {
        if (!library) throw std::bad_alloc();
    }
    ~State() { libdeflate_free_compressor(library); }
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

bool Deflater::deflate(std::string_view bytes, std::string& out) {
    if (bytes.size() < 2) return false;
    const std::size_t before = out.size();
    const std::size_t room = bytes.size() - 1;
    out.resize(before + room);
    const std::size_t size = libdeflate_deflate_compress(state_->library, bytes.data(),
                                                         bytes.size(), out.data() + before, room);
    out.resize(before + size);
    return size > 0;
}

struct InflateStream::State {
    z_stream stream{};
    std::string buffer = std::string(pieceSize, '\0');
    bool finished = false;
    State() {
        if (inflateInit2(&stream, rawWindowBits) != Z_OK) throw std::bad_alloc();
    }
    ~State() { inflateEnd(&stream); }
};

InflateStream::InflateStream() : state_(std::make_unique<State>()) {}
InflateStream::~InflateStream() = default;

bool InflateStream::push(std::string_view packed,
                         const std::function<void(std::string_view)>& sink) {
    z_stream& stream = state_->stream;
    while (!packed.empty() && !state_->finished) {
        const std::string_view now = packed.substr(0, pieceSize);
        packed.remove_prefix(now.size());
        stream.next_in = input(now);
        stream.avail_in = static_cast<uInt>(now.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(state_->buffer.data());
            stream.avail_out = static_cast<uInt>(pieceSize);
            const int result = ::inflate(&stream, Z_NO_FLUSH);
            state_->finished = result == Z_STREAM_END;
            // Z_BUF_ERROR: everything that could be done with this input is done.
            if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) return false;
            if (const std::size_t size = pieceSize - stream.avail_out; size > 0)
                sink(std::string_view(state_->buffer).substr(0, size));
        } while (stream.avail_out == 0 && !state_->finished);
    }
    return true;
}

bool InflateStream::isFinished() const { return state_->finished; }

std::string deflatePiece(std::string_view before, std::string_view piece, bool isLast) {
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, rawWindowBits, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    if (before.size() > deflateWindow) before = before.substr(before.size() - deflateWindow);
    if (!before.empty())
        deflateSetDictionary(&stream, input(before), static_cast<uInt>(before.size()));
    // Room for the empty block that brings a piece to a byte boundary, beside the bound.
    std::string out(deflateBound(&stream, static_cast<uLong>(piece.size())) + 16, '\0');
    stream.next_in = input(piece);
    stream.avail_in = static_cast<uInt>(piece.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    ::deflate(&stream, isLast ? Z_FINISH : Z_SYNC_FLUSH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

}  // namespace tarn
