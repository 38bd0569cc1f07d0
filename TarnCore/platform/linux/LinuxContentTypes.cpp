#include "TarnCore/platform/linux/LinuxContentTypes.h"

#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/linux/DesktopServices.h"
#include "TarnCore/platform/linux/XDGFolders.h"

namespace tarn {
namespace {

using UniformTypes::dynamicPrefix;

/// No extension in the MIME database is longer; whatever is, is a part of the name.
constexpr std::size_t longestExtension = 24;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The language of messages, by the rules of gettext; empty for none.
std::string messageLanguage() {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environment(name);
        if (!locale.empty()) break;
    }
    const std::string bare = locale.substr(0, locale.find('.'));
    if (bare.empty() || bare == "C" || bare == "POSIX") return {};
    const std::string list = environment("LANGUAGE");
    return list.empty() ? bare : list;
}

bool isEnglish(const std::string& language) {
    return language.empty() || language == "en" || language.starts_with("en_");
}

/// Changes when the language or the MIME database does.
std::string currentKey(const std::string& language) {
    std::string key = language;
    const std::string given = environment("XDG_DATA_DIRS");
    const std::string all = XDGFolders::dataHome().path() + ":" +
                            (given.empty() ? "/usr/local/share:/usr/share" : given);
    for (const std::string_view folder : Text::split(all, ':')) {
        if (!folder.starts_with('/')) continue;
        struct stat attributes {};
        const std::string file = std::string(folder) + "/mime/mime.cache";
        if (stat(file.c_str(), &attributes) != 0) continue;
        key += " " + file + "=" + std::to_string(attributes.st_mtim.tv_sec) + "." +
               std::to_string(attributes.st_mtim.tv_nsec);
    }
    return key;
}

/// "x" for a name that ends in ".X"; "tar.gz" stays together. Empty when there is none.
std::string_view lowerExtension(std::string_view name, std::array<char, 32>& buffer) {
    std::string_view extension = pathExtension(name);
    if (extension.empty() || extension.size() > longestExtension) return {};
    const std::string_view before = name.substr(0, name.size() - extension.size() - 1);
    if (before.size() > 4 && extension.size() <= 4) {
        const std::string_view last = before.substr(before.size() - 4);
        if (Text::lowercasedASCII(last) == ".tar")
            extension = name.substr(name.size() - extension.size() - 4);
    }
    for (std::size_t i = 0; i < extension.size(); ++i) {
        const char c = extension[i];
        buffer[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return {buffer.data(), extension.size()};
}

std::string typeForMIMEType(const std::string& mimeType) {
    if (const auto index = UniformTypes::indexForMIMEType(mimeType))
        return std::string(UniformTypes::declarations()[*index].identifier);
    return std::string(dynamicPrefix) + mimeType;
}

UniformTypes::Set setOf(const std::vector<std::string>& identifiers) {
    UniformTypes::Set set;
    for (const auto& identifier : identifiers)
        if (const auto index = UniformTypes::indexOf(identifier)) set.set(*index);
    return set;
}

std::vector<std::string> identifiersOf(const UniformTypes::Set& set) {
    std::vector<std::string> identifiers;
    const auto rows = UniformTypes::declarations();
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (set[i]) identifiers.emplace_back(rows[i].identifier);
    return identifiers;
}

/// Containers that other formats are made of: a word processor's file is a zip to the database,
/// but nobody would look for it among archives.
bool isMereContainer(std::string_view mimeType) {
    return mimeType == "application/zip" || mimeType == "application/gzip" ||
           mimeType == "application/octet-stream";
}

}  // namespace

LinuxContentTypes::LinuxContentTypes()
    : LinuxContentTypes(loadDesktopServices,
                        XDGFolders::cacheHome().appending("tarn/content-types.cache"), {},
                        isEnglish(messageLanguage())) {}

LinuxContentTypes::LinuxContentTypes(Loader loader, const URL& cacheFile, std::string cacheKey,
                                     bool isEnglish)
    : loader_(loader),
      cacheFile_(cacheFile),
      cacheKey_(std::move(cacheKey)),
      isEnglish_(isEnglish) {}

Guarded<LinuxContentTypes::Learned>::Access LinuxContentTypes::learned() const {
    auto learned = learned_.lock();
    if (learned->file) return learned;
    // Under the lock on purpose: whoever else asks meanwhile needs the same file.
    learned->file.emplace(cacheFile_,
                          cacheKey_.empty() ? currentKey(messageLanguage()) : cacheKey_);
    learned->cache = learned->file->load();
    for (const auto& [identifier, type] : learned->cache.types)
        learned->lineages.emplace(identifier, setOf(type.lineage));
    return learned;
}

std::optional<std::string> LinuxContentTypes::typeForName(std::string_view name) const {
    const auto identifier = [](std::size_t index) {
        return std::string(UniformTypes::declarations()[index].identifier);
    };
    std::array<char, 32> buffer;
    const std::string_view extension = lowerExtension(name, buffer);
    if (extension.empty()) {
        if (name.empty() || name.size() > longestExtension || !pathExtension(name).empty())
            return std::nullopt;
        const auto index = UniformTypes::indexForName(Text::lowercasedASCII(name));
        return index ? std::optional(identifier(*index)) : std::nullopt;
    }
    // The one pair of extensions that only differs in case.
    if (name.ends_with(".C")) return "public.c-plus-plus-source";
    if (const auto index = UniformTypes::indexForExtension(extension)) return identifier(*index);
    {
        const auto learned = this->learned();
        const auto found = learned->cache.extensions.find(extension);
        if (found != learned->cache.extensions.end()) return found->second;
    }
    return ask(std::string(extension));
}

std::optional<std::string> LinuxContentTypes::ask(const std::string& lowerExtension) const {
    const DesktopServices* services = loader_ ? loader_() : nullptr;
    std::optional<std::string> type;
    if (services && Text::isValidUTF8(lowerExtension)) {
        if (const auto mimeType = services->mimeTypeForName("name." + lowerExtension))
            type = typeForMIMEType(*mimeType);
    }
    const auto learned = this->learned();
    if (learned->cache.extensions.size() < ContentTypeCache::capacity &&
        learned->cache.extensions.emplace(lowerExtension, type).second && services)
        // What nobody could be asked about must not be remembered as unknown.
        learned->file->append(ContentTypeCache::line(lowerExtension, type));
    return type;
}

bool LinuxContentTypes::conforms(std::string_view type, std::string_view ancestor) const {
    if (type == ancestor) return true;
    const auto wanted = UniformTypes::indexOf(ancestor);
    if (!wanted) return false;
    if (const auto index = UniformTypes::indexOf(type))
        return UniformTypes::lineage(*index)[*wanted];
    if (!type.starts_with(dynamicPrefix)) return false;
    {
        const auto learned = this->learned();
        const auto found = learned->lineages.find(type);
        if (found != learned->lineages.end()) return found->second[*wanted];
    }
    return dynamicLineage(std::string(type))[*wanted];
}

UniformTypes::Set LinuxContentTypes::dynamicLineage(const std::string& type) const {
    const std::string mimeType = type.substr(dynamicPrefix.size());
    const DesktopServices* services = loader_ ? loader_() : nullptr;
    UniformTypes::Set set =
        UniformTypes::lineageOfMIMEType(mimeType, services ? services->genericIcon(mimeType) : "");
    if (services) {
        const auto rows = UniformTypes::declarations();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string known(UniformTypes::mimeType(i));
            if (!known.empty() && !isMereContainer(known) && services->isA(mimeType, known))
                set |= UniformTypes::lineage(i);
        }
    }
    const ContentTypeCache::Type known = {
        services ? services->description(mimeType) : std::string(), identifiersOf(set)};
    const auto learned = this->learned();
    learned->lineages.emplace(type, set);
    if (learned->cache.types.emplace(type, known).second && services)
        learned->file->append(ContentTypeCache::line(type, known));
    return set;
}

std::optional<std::string> LinuxContentTypes::description(std::string_view type) const {
    std::string english;
    std::string mimeType;
    if (const auto index = UniformTypes::indexOf(type)) {
        english = UniformTypes::declarations()[*index].description;
        mimeType = UniformTypes::mimeType(*index);
        if (isEnglish_ || mimeType.empty())
            return english.empty() ? std::nullopt : std::optional(english);
    } else if (type.starts_with(dynamicPrefix)) {
        mimeType = type.substr(dynamicPrefix.size());
    } else {
        return std::nullopt;
    }
    const auto told = [&](std::string text) -> std::optional<std::string> {
        if (text.empty()) text = english;
        return text.empty() ? std::nullopt : std::optional(std::move(text));
    };
    {
        const auto learned = this->learned();
        const auto found = learned->cache.types.find(type);
        if (found != learned->cache.types.end()) return told(found->second.description);
    }
    if (english.empty()) {
        // Learns everything about the type in one go.
        dynamicLineage(std::string(type));
        const auto learned = this->learned();
        const auto found = learned->cache.types.find(type);
        return told(found == learned->cache.types.end() ? "" : found->second.description);
    }
    const DesktopServices* services = loader_ ? loader_() : nullptr;
    const ContentTypeCache::Type known = {
        services ? services->description(mimeType) : std::string(), {}};
    const auto learned = this->learned();
    if (learned->cache.types.emplace(type, known).second && services)
        learned->file->append(ContentTypeCache::line(type, known));
    return told(known.description);
}

std::optional<std::string> LinuxContentTypes::mimeType(std::string_view type) const {
    if (type.starts_with(dynamicPrefix)) return std::string(type.substr(dynamicPrefix.size()));
    const auto index = UniformTypes::indexOf(type);
    if (!index) return std::nullopt;
    const std::string_view mimeType = UniformTypes::mimeType(*index);
    return mimeType.empty() ? std::nullopt : std::optional<std::string>(mimeType);
}

}  // namespace tarn
