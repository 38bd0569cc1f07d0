#pragma once

#include <string>

#include "TarnCore/platform/MediaMetadata.h"
#include "TarnCore/platform/linux/LinuxFileBytes.h"

namespace tarn {

/// Reads what the files of one kind say about themselves, with a library that is too heavy to be
/// linked: each reader lives in a module of its own. Callable from any thread.
class MediaReader {
public:
    virtual ~MediaReader() = default;
    /// Adds what it finds in a file of that name to `metadata`; nothing when it cannot be
    /// understood. Never throws. Does not open it once more, which would change the time of the
    /// last access.
    virtual void read(const LinuxFileBytes& file, const std::string& name,
                      ItemMetadata& metadata) const = 0;
};

/// A module exports one function of this type and name, which returns null when it was built for
/// another version of the interface. What it returns lives as long as the process.
using MediaReaderEntry = const MediaReader*(int version);
inline constexpr int mediaReaderVersion = 3;
inline constexpr const char* mediaReaderSymbol = "tarnMediaReader";

}  // namespace tarn
