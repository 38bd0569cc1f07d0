#pragma once

#include <memory>

#include "TarnCore/platform/Platform.h"

namespace tarn {

class MemoryFileCopy;
class MemoryFileSystem;
class MemoryContentTypes;
class MemoryExtendedAttributes;
class MemoryFolderWatching;
class MemoryDrives;
class MemoryVolumes;
class MemoryRecentFiles;
class MemoryMachineLoad;
class MemoryMediaMetadata;
class MemoryTrash;

/// A machine made of maps, with its parts at hand for tests.
struct MemoryPlatform {
    std::shared_ptr<MemoryFileSystem> files;
    std::shared_ptr<MemoryContentTypes> types;
    std::shared_ptr<MemoryExtendedAttributes> attributes;
    std::shared_ptr<MemoryFileCopy> copying;
    std::shared_ptr<MemoryFolderWatching> watching;
    std::shared_ptr<MemoryVolumes> volumes;
    std::shared_ptr<MemoryDrives> drives;
    std::shared_ptr<MemoryRecentFiles> recentFiles;
    std::shared_ptr<MemoryMediaMetadata> metadata;
    std::shared_ptr<MemoryMachineLoad> load;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<MemoryTrash> trash;

    explicit MemoryPlatform(Date now = {});
    Platform services() const;
};

}  // namespace tarn
