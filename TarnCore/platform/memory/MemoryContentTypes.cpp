#include "TarnCore/platform/memory/MemoryContentTypes.h"

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/UniformTypes.h"

namespace tarn {

void MemoryContentTypes::declare(const std::string& extension, const std::string& type,
                                 const std::string& parent, const std::string& description) {
    const auto declared = declared_.lock();
    declared->extensions[extension] = type;
    declared->parents[type] = parent;
    declared->descriptions[type] = description;
}

std::optional<std::string> MemoryContentTypes::typeForName(std::string_view name) const {
    const std::string extension = Text::lowercasedASCII(pathExtension(name));
    if (extension.empty()) return std::nullopt;
    {
        const auto declared = declared_.lock();
        const auto found = declared->extensions.find(extension);
        if (found != declared->extensions.end()) return found->second;
    }
    const auto index = UniformTypes::indexForExtension(extension);
    if (!index) return std::nullopt;
    return std::string(UniformTypes::declarations()[*index].identifier);
}

bool MemoryContentTypes::conforms(std::string_view type, std::string_view ancestor) const {
    if (type == ancestor) return true;
    std::string parent;
    {
        const auto declared = declared_.lock();
        const auto found = declared->parents.find(type);
        if (found != declared->parents.end()) parent = found->second;
    }
    if (!parent.empty()) return conforms(parent, ancestor);
    const auto index = UniformTypes::indexOf(type);
    const auto wanted = UniformTypes::indexOf(ancestor);
    return index && wanted && UniformTypes::lineage(*index)[*wanted];
}

std::optional<std::string> MemoryContentTypes::description(std::string_view type) const {
    {
        const auto declared = declared_.lock();
        const auto found = declared->descriptions.find(type);
        if (found != declared->descriptions.end()) return found->second;
    }
    const auto index = UniformTypes::indexOf(type);
    if (!index || UniformTypes::declarations()[*index].description.empty()) return std::nullopt;
    return std::string(UniformTypes::declarations()[*index].description);
}

std::optional<std::string> MemoryContentTypes::mimeType(std::string_view type) const {
    const auto index = UniformTypes::indexOf(type);
    if (!index || UniformTypes::mimeType(*index).empty()) return std::nullopt;
    return std::string(UniformTypes::mimeType(*index));
}

}  // namespace tarn
