#include "TarnCore/files/FileItem.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/TypeFacts.h"

namespace tarn {
namespace {

CloudStatus cloudStatus(const ResourceValues& values) {
    if (!values.isUbiquitous) return CloudStatus::local;
    if (values.hasUploadingError || values.hasDownloadingError) return CloudStatus::error;
    if (values.isDownloading) return CloudStatus::downloading;
    if (values.isUploading) return CloudStatus::uploading;
    return values.isNotDownloaded ? CloudStatus::cloudOnly : CloudStatus::downloaded;
}

void writeDate(JSONWriter& json, std::string_view key, const std::optional<Date>& date) {
    if (!date) return;
    json.key(key);
    json.date(*date);
}

void writeBoolean(JSONWriter& json, std::string_view key, bool value) {
    json.key(key);
    json.boolean(value);
}

void writeString(JSONWriter& json, std::string_view key, std::string_view value) {
    json.key(key);
    json.string(value);
}

/// The value of an enumeration stored by name; a name that this version does not know counts as
/// `fallback`, so that a newer record can still be read.
template <class Value>
Value named(const JSON& json, const char* key, std::optional<Value> (*parse)(std::string_view),
            Value fallback) {
    std::string raw;
    JSONFields::read(json, key, raw);
    return parse(raw).value_or(fallback);
}

}  // namespace

std::string FileItem::fileExtension() const { return Text::lowercased(url.pathExtension()); }

bool FileItem::isBrowsable() const { return isDirectory || isArchiveBrowsable(url); }

bool FileItem::isArchiveBrowsable(const URL& url) {
    return FileKinds::isBrowsableArchiveExtension(Text::lowercased(url.pathExtension()));
}

bool FileItem::isCloudPath(const URL& url) {
    return url.path().find("/Library/Mobile Documents") != std::string::npos ||
           url.path().find("/Library/CloudStorage") != std::string::npos;
}

std::string FileItem::kindName(const std::optional<std::string>& type) {
    return type ? typeFacts(*type).kindName : TypeFacts{}.kindName;
}

FileItem FileItem::make(URL url, ResourceValues values) {
    FileItem item;
    item.url = std::move(url);
    const bool opensAsFolder = values.isSymlink
                                   ? values.linkTargetIsDirectory.value_or(values.isDirectory)
                                   : values.isDirectory;
    item.isPackage = values.isPackage;
    item.isDirectory = opensAsFolder && !values.isPackage;
    item.isSymlink = values.isSymlink;
    item.cloud = cloudStatus(values);
    item.name = values.name ? std::move(*values.name) : std::string(item.url.name());
    item.isHidden = values.isHidden.value_or(item.name.starts_with('.'));
    if (!item.isDirectory) item.size = values.fileSize.value_or(0);
    item.modified = values.modified;
    item.created = values.created;
    item.added = values.added;
    item.typeIdentifier = std::move(values.contentType);
    TypeFacts facts = item.typeIdentifier ? typeFacts(*item.typeIdentifier) : TypeFacts{};
    item.kind =
        FileKinds::classify(facts, item.url.pathExtension(), item.isDirectory, item.isPackage);
    item.kindDescription = item.isDirectory ? "Folder" : std::move(facts.kindName);
    item.tags = std::move(values.tags);
    return item;
}

std::optional<FileItem> FileItem::load(const URL& url) {
    auto values = ResourceReader::read(url, {.tags = true, .cloud = true});
    if (!values) return std::nullopt;
    return make(url, std::move(*values));
}

void write(JSONWriter& json, const FileItem& item) {
    json.beginObject();
    json.key("url");
    json.url(item.url);
    writeString(json, "name", item.name);
    writeBoolean(json, "isDirectory", item.isDirectory);
    writeBoolean(json, "isPackage", item.isPackage);
    writeBoolean(json, "isHidden", item.isHidden);
    writeBoolean(json, "isSymlink", item.isSymlink);
    if (item.size) {
        json.key("size");
        json.integer(*item.size);
    }
    writeDate(json, "modified", item.modified);
    writeDate(json, "created", item.created);
    writeDate(json, "added", item.added);
    if (item.typeIdentifier) writeString(json, "typeIdentifier", *item.typeIdentifier);
    writeString(json, "kindDescription", item.kindDescription);
    json.key("tags");
    json.beginArray();
    for (const std::string& tag : item.tags) json.string(tag);
    json.endArray();
    writeString(json, "kind", FileKinds::rawValue(item.kind));
    writeString(json, "cloud", CloudStatuses::rawValue(item.cloud));
    if (item.volumeID) writeString(json, "volumeID", *item.volumeID);
    json.endObject();
}

void to_json(JSON& json, const FileItem& item) {
    json = JSON{{"url", item.url},
                {"name", Text::sanitized(item.name)},
                {"isDirectory", item.isDirectory},
                {"isPackage", item.isPackage},
                {"isHidden", item.isHidden},
                {"isSymlink", item.isSymlink},
                {"kindDescription", item.kindDescription},
                {"tags", item.tags},
                {"kind", FileKinds::rawValue(item.kind)},
                {"cloud", CloudStatuses::rawValue(item.cloud)}};
    JSONFields::write(json, "size", item.size);
    JSONFields::write(json, "modified", item.modified);
    JSONFields::write(json, "created", item.created);
    JSONFields::write(json, "added", item.added);
    JSONFields::write(json, "typeIdentifier", item.typeIdentifier);
    JSONFields::write(json, "volumeID", item.volumeID);
}

void from_json(const JSON& json, FileItem& item) {
    FileItem read;
    JSONFields::read(json, "url", read.url);
    // The name is that of the URL, which alone keeps bytes that are not UTF-8.
    JSONFields::read(json, "name", read.name);
    if (read.name == Text::sanitized(read.url.name())) read.name = read.url.name();
    JSONFields::read(json, "isDirectory", read.isDirectory);
    JSONFields::read(json, "isPackage", read.isPackage);
    JSONFields::read(json, "isHidden", read.isHidden);
    JSONFields::read(json, "isSymlink", read.isSymlink);
    JSONFields::read(json, "size", read.size);
    JSONFields::read(json, "modified", read.modified);
    JSONFields::read(json, "created", read.created);
    JSONFields::read(json, "added", read.added);
    JSONFields::read(json, "typeIdentifier", read.typeIdentifier);
    JSONFields::read(json, "kindDescription", read.kindDescription);
    JSONFields::read(json, "tags", read.tags);
    read.kind = named(json, "kind", FileKinds::fromRawValue, FileKind::other);
    read.cloud = named(json, "cloud", CloudStatuses::fromRawValue, CloudStatus::local);
    JSONFields::read(json, "volumeID", read.volumeID);
    item = std::move(read);
}

}  // namespace tarn
