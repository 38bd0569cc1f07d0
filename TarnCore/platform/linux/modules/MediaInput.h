#pragma once

#include "TarnCore/platform/linux/modules/FileCursor.h"

struct AVIOContext;

namespace tarn {

/// A file as FFmpeg's libraries read it. For one thread at a time; the file must outlive it, and it
/// what was opened with it.
class MediaInput {
public:
    /// Reads pieces of `pieceSize` bytes.
    MediaInput(const FileBytes& file, int pieceSize);
    ~MediaInput();
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    /// Null where there was no memory for it.
    AVIOContext* context() const { return context_; }

private:
    FileCursor cursor_;
    AVIOContext* context_ = nullptr;
};

}  // namespace tarn
