#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The beginning of a file that is text, for showing it.
struct TextHead {
    /// UTF-8 in any lines, each ended by "\n" alone; control characters as their visible pictures.
    std::string text;
    std::int64_t bytesRead = 0;
    std::int64_t size = 0;  ///< Of the file, in bytes.
    bool isWhole = true;    ///< Nothing of the file is missing.

    /// At most this much is ever decoded; what is behind it needs an editor.
    static constexpr std::int64_t mostBytes = 8'000'000;

    /// Reads at most `bytes` of the file, in whatever encoding it looks to be in; a text that is
    /// cut ends with a whole line where it has any. Absent when the file is no text, no ordinary
    /// file or cannot be read. Takes a while: not on the main thread.
    static std::optional<TextHead> read(const URL& url, std::int64_t bytes,
                                        const CancelToken& token);

    /// What `read` does with bytes that it has; `isWhole` tells whether they are all.
    static std::optional<std::string> decode(std::string_view bytes, bool isWhole);
};

}  // namespace tarn
