#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/CloudStatus.h"
#include "TarnCore/files/FileKind.h"

namespace tarn {

/// What the platform tells about one item, as far as it was asked; the raw material of FileItem.
struct ResourceValues {
    std::optional<std::string> name{};
    bool isDirectory = false;
    bool isPackage = false;
    std::optional<bool> isHidden{};
    bool isSymlink = false;
    std::optional<std::int64_t> fileSize{};
    std::optional<Date> modified{};
    std::optional<Date> created{};
    std::optional<Date> added{};  ///< When it came into its folder.
    std::optional<std::string> contentType{};
    std::vector<std::string> tags{};
    bool isUbiquitous = false;
    bool isDownloading = false;
    bool isUploading = false;
    bool hasUploadingError = false;
    bool hasDownloadingError = false;
    bool isNotDownloaded = false;
    /// For a link: whether its target exists and is a folder; absent when the target is missing.
    std::optional<bool> linkTargetIsDirectory{};
};

/// A snapshot of one item of the disk, taken when it was listed. Identified by its URL.
struct FileItem {
    URL url;
    std::string name;          ///< Any bytes; Text::sanitized before showing.
    bool isDirectory = false;  ///< A folder to enter: a directory, or a link to one, no package.
    bool isPackage = false;
    bool isHidden = false;
    bool isSymlink = false;
    std::optional<std::int64_t> size;  ///< Bytes; absent for folders.
    std::optional<Date> modified;
    std::optional<Date> created;
    std::optional<Date> added;
    std::optional<std::string> typeIdentifier;
    std::string kindDescription;
    std::vector<std::string> tags;
    FileKind kind = FileKind::other;
    CloudStatus cloud = CloudStatus::local;
    std::optional<std::string> volumeID;

    const std::string& path() const { return url.path(); }
    /// Lower case, without the dot.
    std::string fileExtension() const;
    /// Opens inside the pane: a folder, or an archive that can be listed.
    bool isBrowsable() const;

    static bool isArchiveBrowsable(const URL& url);
    static bool isCloudPath(const URL& url);
    /// "Document" without a type or without a description.
    static std::string kindName(const std::optional<std::string>& type);

    static FileItem make(URL url, ResourceValues values);
    /// Everything about one path, tags included. Absent when it cannot be looked at.
    static std::optional<FileItem> load(const URL& url);

    bool operator==(const FileItem&) const = default;
};

/// Keys are the field names; absent values are left out.
void write(JSONWriter& json, const FileItem& item);
void to_json(JSON& json, const FileItem& item);
void from_json(const JSON& json, FileItem& item);

}  // namespace tarn

template <>
struct std::hash<tarn::FileItem> {
    std::size_t operator()(const tarn::FileItem& item) const noexcept {
        return std::hash<tarn::URL>{}(item.url);
    }
};
