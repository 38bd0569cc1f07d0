#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

#include "Tarn/model/ItemPermissions.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/platform/MediaMetadata.h"
#include "TarnCore/sources/DownloadSource.h"

namespace tarn {

/// One line about an item.
struct PreviewFact {
    QString label;
    QString value;
    bool operator==(const PreviewFact&) const = default;
};

/// What is to be said about an item beside its row in a list.
struct PreviewFacts {
    Q_DECLARE_TR_FUNCTIONS(tarn::PreviewFacts)
public:
    ItemMetadata metadata;
    std::optional<DownloadSource> source;
    std::vector<std::string> whereFroms;
    std::optional<std::string> linkTarget;
    ItemPermissions permissions;

    /// Reads the file; nothing of it on the main thread.
    static PreviewFacts read(const FileItem& item);

    /// In the order in which they are shown. `facts` is null while they are being read, and
    /// `found` what a preview found out ("1,200 × 800"), for items of that kind. The size of a
    /// folder is not among them. Main thread.
    static std::vector<PreviewFact> lines(const FileItem& item, const PreviewFacts* facts,
                                          const QString& found);
    /// The same for several items at once.
    static std::vector<PreviewFact> lines(const std::vector<FileItem>& items);
};

}  // namespace tarn
