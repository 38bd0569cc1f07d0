#include "TarnCore/files/FileTags.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "TarnCore/files/TagAttribute.h"
#include "TarnCore/files/TagShelf.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileTags {
namespace {

struct Stored {
    std::vector<std::string> tags;
    std::optional<std::string> mirror;
};

/// Throws what ExtendedAttributes throws.
Stored readAttributes(const URL& url) {
    const ExtendedAttributes& attributes = *Platform::current().attributes;
    Stored stored;
    // One call for the names tells of nearly every file that there is nothing to read.
    const std::vector<std::string> names = attributes.list(url);
    const auto get = [&](std::string_view name) -> std::optional<std::string> {
        if (std::ranges::find(names, name) == names.end()) return std::nullopt;
        return attributes.get(url, std::string(name));
    };
    const auto value = get(TagAttribute::attribute);
    stored.mirror = get(TagAttribute::mirrorAttribute);
    auto decoded = value ? TagAttribute::decode(*value) : std::nullopt;
    if (decoded) {
        stored.tags = std::move(*decoded);
    } else if (stored.mirror) {
        stored.tags = TagAttribute::mirrorNames(*stored.mirror);
    }
    return stored;
}

bool keepsNoAttributes(const std::system_error& error) {
    return error.code().value() == ENOTSUP || error.code().value() == EOPNOTSUPP;
}

void writeMirror(const std::vector<std::string>& tags, const Stored& before, const URL& url) {
    ExtendedAttributes& attributes = *Platform::current().attributes;
    const std::string name(TagAttribute::mirrorAttribute);
    const std::string mirror =
        TagAttribute::mirror(tags, before.tags, before.mirror.value_or(std::string()));
    try {
        if (!mirror.empty()) {
            attributes.set(url, name, mirror);
        } else if (before.mirror) {
            attributes.remove(url, name);
        }
    } catch (const std::system_error&) {
        // The tags themselves are safe; only other programs will not see the change.
    }
}

}  // namespace

std::vector<std::string> read(const URL& url) {
    const auto attributes = Platform::current().files->attributes(url, Links::keep);
    if (!attributes) return {};
    return read(url, attributes->type == FileType::symlink ? Kind::link : Kind::other);
}

std::vector<std::string> read(const URL& url, Kind kind) {
    if (kind == Kind::link) return TagShelf::shared().tags(url);
    try {
        return readAttributes(url).tags;
    } catch (const std::system_error& error) {
        if (keepsNoAttributes(error)) return TagShelf::shared().tags(url);
        return {};
    }
}

void write(const std::vector<std::string>& stored, const URL& url) {
    const Platform& platform = Platform::current();
    if (platform.files->requireAttributes(url, Links::keep).type == FileType::symlink) {
        return TagShelf::shared().set(url, stored);
    }
    const std::string name(TagAttribute::attribute);
    try {
        const Stored before = readAttributes(url);
        if (stored.empty()) {
            platform.attributes->remove(url, name);
        } else {
            platform.attributes->set(url, name, TagAttribute::encode(stored));
        }
        writeMirror(stored, before, url);
    } catch (const std::system_error& error) {
        if (!keepsNoAttributes(error)) throw;
        TagShelf::shared().set(url, stored);
    }
}

void moved(const URL& from, const URL& to) {
    try {
        TagShelf::shared().moved(from, to);
    } catch (const std::system_error&) {
        // The list cannot be written: the tags are found by the inode until the disk goes.
    }
}

void copied(const URL& from, const URL& to) {
    for (const auto& [below, tags] : TagShelf::shared().tagsInside(from)) {
        try {
            write(tags, below.empty() ? to : to.appending(below));
        } catch (const std::system_error&) {
            // Not copied, or it cannot be written: the original has its tags.
        }
    }
}

}  // namespace tarn::FileTags
