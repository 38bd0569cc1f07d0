#include "TarnCore/platform/memory/MemoryPlatform.h"

#include "TarnCore/platform/memory/MemoryContentTypes.h"
#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryFileCopy.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryFolderWatching.h"
#include "TarnCore/platform/memory/MemoryMachineLoad.h"
#include "TarnCore/platform/memory/MemoryMediaMetadata.h"
#include "TarnCore/platform/memory/MemoryRecentFiles.h"
#include "TarnCore/platform/memory/MemoryTrash.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"

namespace tarn {

MemoryPlatform::MemoryPlatform(Date now)
    : files(std::make_shared<MemoryFileSystem>()),
      types(std::make_shared<MemoryContentTypes>()),
      attributes(std::make_shared<MemoryExtendedAttributes>(files)),
      copying(std::make_shared<MemoryFileCopy>(files)),
      watching(std::make_shared<MemoryFolderWatching>()),
      volumes(std::make_shared<MemoryVolumes>()),
      drives(std::make_shared<MemoryDrives>(volumes)),
      recentFiles(std::make_shared<MemoryRecentFiles>()),
      metadata(std::make_shared<MemoryMediaMetadata>()),
      load(std::make_shared<MemoryMachineLoad>()),
      clock(std::make_shared<FixedClock>(now)),
      trash(std::make_shared<MemoryTrash>(files, clock)) {
    files->onMove(
        [weak = std::weak_ptr(attributes)](const URL& from, const std::optional<URL>& to) {
            if (const auto kept = weak.lock()) kept->moved(from, to);
        });
}

Platform MemoryPlatform::services() const {
    Platform platform;
    platform.files = files;
    platform.types = types;
    platform.attributes = attributes;
    platform.copying = copying;
    platform.watching = watching;
    platform.volumes = volumes;
    platform.drives = drives;
    platform.recentFiles = recentFiles;
    platform.metadata = metadata;
    platform.load = load;
    platform.clock = clock;
    platform.trash = trash;
    return platform;
}

}  // namespace tarn
