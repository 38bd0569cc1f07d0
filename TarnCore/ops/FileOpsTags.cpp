#include <system_error>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/TagAttribute.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOps {
namespace {

/// The stored strings of the tags that a file has now; none when they cannot be read.
std::vector<std::string> storedTags(const URL& url) {
    const ExtendedAttributes& attributes = *Platform::current().attributes;
    try {
        if (const auto value = attributes.get(url, std::string(TagAttribute::attribute)))
            if (auto tags = TagAttribute::decode(*value)) return *std::move(tags);
        if (const auto mirror = attributes.get(url, std::string(TagAttribute::mirrorAttribute)))
            return TagAttribute::mirrorNames(*mirror);
    } catch (const std::system_error&) {
        // A disk without attributes has no tags.
    }
    return {};
}

}  // namespace

Step setTags(const std::vector<std::string>& stored, const URL& url) {
    std::vector<std::string> before = storedTags(url);
    writeTags(stored, url);
    return Step::tags(url, std::move(before), stored);
}

void writeTags(const std::vector<std::string>& stored, const URL& url) {
    if (!exists(url)) throw FileOpError::missing(url.name());
    ExtendedAttributes& attributes = *Platform::current().attributes;
    const std::string key(TagAttribute::attribute);
    const std::string mirrorKey(TagAttribute::mirrorAttribute);
    try {
        if (stored.empty()) {
            attributes.remove(url, key);
            attributes.remove(url, mirrorKey);
            return;
        }
        std::vector<std::string> names;
        for (const std::string& tag : stored) names.push_back(TagAttribute::name(tag));
        attributes.set(url, key, PropertyList::encode(stored));
        attributes.set(url, mirrorKey, Text::join(names, ","));
    } catch (const std::system_error& error) {
        throw FileOpError::failed(friendly(error, "change tags on " + Text::quoted(url.name())));
    }
}

}  // namespace tarn::FileOps
