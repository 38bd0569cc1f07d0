#pragma once

#include <memory>

#include "TarnCore/base/Clock.h"
#include "TarnCore/platform/Archives.h"
#include "TarnCore/platform/ContentTypes.h"
#include "TarnCore/platform/DocumentText.h"
#include "TarnCore/platform/ExtendedAttributes.h"
#include "TarnCore/platform/FileCopy.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/FolderWatching.h"
#include "TarnCore/platform/MachineLoad.h"
#include "TarnCore/platform/MediaMetadata.h"
#include "TarnCore/platform/MetadataIndex.h"
#include "TarnCore/platform/PictureDecoding.h"
#include "TarnCore/platform/RecentFiles.h"
#include "TarnCore/platform/TextRecognition.h"
#include "TarnCore/platform/Trash.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

class Drives;

/// The services of the machine. All are present except those said to be null where missing.
struct Platform {
    std::shared_ptr<FileSystem> files;
    std::shared_ptr<ContentTypes> types;
    std::shared_ptr<ExtendedAttributes> attributes;
    std::shared_ptr<FileCopy> copying;
    std::shared_ptr<Trash> trash;
    std::shared_ptr<Archives> archives;
    std::shared_ptr<FolderWatching> watching;
    std::shared_ptr<Volumes> volumes;
    std::shared_ptr<Drives> drives;  ///< Null where volumes cannot be taken off the machine.
    std::shared_ptr<RecentFiles> recentFiles;
    std::shared_ptr<MediaMetadata> metadata;
    std::shared_ptr<PictureDecoding> pictures;     ///< Null where no library reads pictures.
    std::shared_ptr<MetadataIndex> index;          ///< Null until an index exists.
    std::shared_ptr<DocumentText> documents;       ///< Null where no library reads PDF.
    std::shared_ptr<TextRecognition> recognition;  ///< Null where no library recognises text.
    std::shared_ptr<MachineLoad> load;             ///< Null: the machine always has time.
    std::shared_ptr<Clock> clock;

    /// The services of this process. Set once in `main`, before the first thread.
    static const Platform& current();
    static void setCurrent(Platform platform);
};

}  // namespace tarn
