#include "TarnCore/files/ResourceReader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/files/TagAttribute.h"
#include "TarnCore/files/TagShelf.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Directories that people know as one document or one program. Those of macOS, since disks and
/// archives bring them here.
constexpr std::string_view bundleExtensions[] = {
    "action",       "app",           "appex",      "aplibrary",     "band",
    "bundle",       "component",     "docset",     "download",      "dsym",
    "fcpbundle",    "framework",     "graffle",    "imovielibrary", "kext",
    "key",          "keynote",       "logicx",     "mdimporter",    "migratedphotolibrary",
    "mpkg",         "musiclibrary",  "nib",        "numbers",       "pages",
    "photolibrary", "photoslibrary", "pkg",        "playground",    "plugin",
    "prefpane",     "qlgenerator",   "rtfd",       "saver",         "scptd",
    "screenflow",   "sparsebundle",  "textbundle", "theater",       "tvlibrary",
    "vst",          "vst3",          "wdgt",       "workflow",      "xcarchive",
    "xcodeproj",    "xcworkspace",   "xpc"};

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::optional<Date> parseAdded(std::string_view text) {
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(seconds))
        return std::nullopt;
    return Date{seconds};
}

/// Fills in what the attributes of a file hold. Throws what ExtendedAttributes throws.
void readAttributes(const URL& url, ResourceValues& values) {
    const ExtendedAttributes& attributes = *Platform::current().attributes;
    // One call for the names tells of nearly every file that there is nothing to read.
    const std::vector<std::string> names = attributes.list(url);
    if (names.empty()) return;
    const auto get = [&](std::string_view name) -> std::optional<std::string> {
        if (!contains(names, name)) return std::nullopt;
        return attributes.get(url, std::string(name));
    };
    if (const auto added = get(ResourceReader::addedAttribute))
        if (const auto date = parseAdded(*added)) values.added = date;
    values.tags =
        TagAttribute::names(get(TagAttribute::attribute), get(TagAttribute::mirrorAttribute));
}

/// The names of the tags of what cannot keep them itself.
std::vector<std::string> shelvedTags(const URL& url) {
    std::vector<std::string> tags = TagShelf::shared().tags(url);
    for (std::string& tag : tags) tag = TagAttribute::name(tag);
    return tags;
}

}  // namespace

struct ResourceReader::Hidden {
    std::unordered_set<std::string> names;
};

std::vector<std::string> parseHiddenList(std::string_view text) {
    std::vector<std::string> names;
    for (const std::string_view line : Text::split(text, '\n'))
        if (!line.empty()) names.emplace_back(line);
    return names;
}

ResourceReader::ResourceReader(const URL& folder) : ResourceReader(folder, true) {}

ResourceReader::ResourceReader(const URL& folder, bool hasHiddenList) {
    if (!hasHiddenList) return;
    const URL file = folder.appending(".hidden");
    const FileSystem& files = *Platform::current().files;
    // Nearly every folder has none, and an exception costs more than all else here.
    if (!files.attributes(file, Links::follow)) return;
    std::string list;
    try {
        list = files.readFile(file, longestHiddenList);
    } catch (const std::system_error&) {
        return;
    }
    auto hidden = std::make_shared<Hidden>();
    for (std::string& name : parseHiddenList(list)) hidden->names.insert(std::move(name));
    hidden_ = std::move(hidden);
}

ResourceReader::~ResourceReader() = default;

bool ResourceReader::isHidden(std::string_view name) const {
    if (name.starts_with('.')) return true;
    return hidden_ && hidden_->names.contains(std::string(name));
}

bool ResourceReader::isPackageName(std::string_view name) {
    const std::string_view ext = pathExtension(name);
    if (ext.empty()) return false;
    static const std::unordered_set<std::string_view> bundles(std::begin(bundleExtensions),
                                                              std::end(bundleExtensions));
    return bundles.contains(Text::lowercasedASCII(ext));
}

ResourceValues ResourceReader::values(const URL& child, std::string_view name,
                                      const FileAttributes& attributes,
                                      std::optional<bool> linkTargetIsDirectory,
                                      ResourceKeys keys) const {
    const ContentTypes& types = *Platform::current().types;
    ResourceValues values;
    values.name = std::string(name);
    values.isHidden = isHidden(name);
    values.isSymlink = attributes.type == FileType::symlink;
    values.isDirectory = attributes.type == FileType::directory;
    values.linkTargetIsDirectory = linkTargetIsDirectory;
    values.fileSize = attributes.size;
    values.modified = attributes.modified;
    values.created = attributes.created;
    values.added = attributes.created;

    // A link is what its name says it is; only whether it can be entered is asked of its target.
    const bool opensAsFolder = values.isDirectory || linkTargetIsDirectory.value_or(false);
    values.isPackage = opensAsFolder && isPackageName(name);
    if (opensAsFolder && !values.isPackage)
        values.contentType = std::string(ContentType::folder);
    else
        values.contentType = types.typeForName(name);
    if (values.isPackage && !values.contentType)
        values.contentType = std::string(ContentType::package);

    // Links have no attributes of their own, and those of the target are not theirs.
    if (!keys.tags) return values;
    bool hasNoAttributes = values.isSymlink || hasNoAttributes_.load(std::memory_order_relaxed);
    if (!hasNoAttributes) {
        try {
            readAttributes(child, values);
        } catch (const std::system_error& error) {
            hasNoAttributes = error.code().value() == ENOTSUP;
            if (hasNoAttributes) hasNoAttributes_.store(true, std::memory_order_relaxed);
        }
    }
    if (hasNoAttributes) values.tags = shelvedTags(child);
    return values;
}

std::optional<ResourceValues> ResourceReader::values(const URL& child, ResourceKeys keys) const {
    const FileSystem& files = *Platform::current().files;
    const auto attributes = files.attributes(child, Links::keep);
    if (!attributes) return std::nullopt;
    std::optional<bool> target;
    if (attributes->type == FileType::symlink)
        if (const auto followed = files.attributes(child, Links::follow))
            target = followed->type == FileType::directory;
    return values(child, child.name(), *attributes, target, keys);
}

std::optional<ResourceValues> ResourceReader::read(const URL& url, ResourceKeys keys) {
    return ResourceReader(url.parent()).values(url, keys);
}

std::vector<std::string> ResourceReader::tags(const URL& url) {
    std::vector<std::string> tags = FileTags::read(url);
    for (std::string& tag : tags) tag = TagAttribute::name(tag);
    return tags;
}

}  // namespace tarn
