#include "TarnCore/platform/linux/LinuxPlatform.h"

#include "TarnCore/platform/linux/InotifyWatching.h"
#include "TarnCore/platform/linux/LinuxArchives.h"
#include "TarnCore/platform/linux/LinuxContentTypes.h"
#include "TarnCore/platform/linux/LinuxDocumentText.h"
#include "TarnCore/platform/linux/LinuxDrives.h"
#include "TarnCore/platform/linux/LinuxExtendedAttributes.h"
#include "TarnCore/platform/linux/LinuxFileCopy.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/LinuxMachineLoad.h"
#include "TarnCore/platform/linux/LinuxMediaMetadata.h"
#include "TarnCore/platform/linux/LinuxPictureDecoding.h"
#include "TarnCore/platform/linux/LinuxRecentFiles.h"
#include "TarnCore/platform/linux/LinuxTextRecognition.h"
#include "TarnCore/platform/linux/LinuxTrash.h"
#include "TarnCore/platform/linux/LinuxVolumes.h"
#include "TarnCore/platform/linux/SystemClock.h"

namespace tarn {

Platform makeLinuxPlatform() {
    Platform platform;
    platform.files = std::make_shared<LinuxFileSystem>();
    platform.types = std::make_shared<LinuxContentTypes>();
    platform.attributes = std::make_shared<LinuxExtendedAttributes>();
    platform.copying = std::make_shared<LinuxFileCopy>();
    platform.archives = std::make_shared<LinuxArchives>();
    platform.watching = std::make_shared<InotifyWatching>();
    platform.volumes = std::make_shared<LinuxVolumes>();
    platform.drives = std::make_shared<LinuxDrives>();
    platform.recentFiles = std::make_shared<LinuxRecentFiles>();
    platform.metadata = std::make_shared<LinuxMediaMetadata>(
        platform.files, platform.types, platform.recentFiles, platform.volumes);
    platform.pictures = std::make_shared<LinuxPictureDecoding>();
    platform.documents = std::make_shared<LinuxDocumentText>();
    platform.recognition = std::make_shared<LinuxTextRecognition>();
    platform.load = std::make_shared<LinuxMachineLoad>();
    platform.clock = std::make_shared<SystemClock>();
    platform.trash = std::make_shared<LinuxTrash>(platform.files, platform.volumes, platform.clock);
    return platform;
}

}  // namespace tarn
