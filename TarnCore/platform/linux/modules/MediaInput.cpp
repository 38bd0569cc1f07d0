#include "TarnCore/platform/linux/modules/MediaInput.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace tarn {
namespace {

// No exception may cross C.

int read(void* cursor, std::uint8_t* into, int size) {
    try {
        const std::size_t got = static_cast<FileCursor*>(cursor)->read(
            {reinterpret_cast<char*>(into), static_cast<std::size_t>(size)});
        return got == 0 ? AVERROR_EOF : static_cast<int>(got);
    } catch (...) {
        return AVERROR(EIO);
    }
}

std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
    auto& cursor = *static_cast<FileCursor*>(opaque);
    if (whence == AVSEEK_SIZE) return cursor.size();
    std::int64_t base = 0;
    if (whence == SEEK_CUR) base = cursor.place();
    if (whence == SEEK_END) base = cursor.size();
    std::int64_t to = 0;
    if (__builtin_add_overflow(base, offset, &to) || !cursor.moveTo(to)) return AVERROR(EINVAL);
    return to;
}

}  // namespace

MediaInput::MediaInput(const FileBytes& file, int pieceSize) : cursor_(file) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(static_cast<std::size_t>(pieceSize)));
    if (!buffer) return;
    context_ = avio_alloc_context(buffer, pieceSize, 0, &cursor_, read, nullptr, seek);
    if (!context_) av_free(buffer);
}

MediaInput::~MediaInput() {
    if (!context_) return;
    av_freep(&context_->buffer);
    avio_context_free(&context_);
}

}  // namespace tarn
