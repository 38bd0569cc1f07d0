#pragma once

#include <optional>
#include <string>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/ContentTypes.h"
#include "TarnCore/platform/UniformTypes.h"
#include "TarnCore/platform/linux/ContentTypeCache.h"

namespace tarn {

class DesktopServices;

/// The table of declared types first, then what earlier runs learned from the shared MIME database
/// (content-types.cache in $XDG_CACHE_HOME/tarn), then the database itself, which is loaded only
/// then. Without the database the table still answers.
class LinuxContentTypes final : public ContentTypes {
public:
    using Loader = const DesktopServices* (*)();
    LinuxContentTypes();
    /// `loader` is called at most once; null stands for a machine without the database.
    LinuxContentTypes(Loader loader, const URL& cacheFile, std::string cacheKey, bool isEnglish);

    std::optional<std::string> typeForName(std::string_view name) const override;
    bool conforms(std::string_view type, std::string_view ancestor) const override;
    std::optional<std::string> description(std::string_view type) const override;
    std::optional<std::string> mimeType(std::string_view type) const override;

private:
    struct Learned {
        std::optional<ContentTypeCacheFile> file;  ///< Absent until the first question.
        ContentTypeCache cache;
        /// The lineages in the cache, ready for questions.
        StringMap<UniformTypes::Set> lineages;
    };
    Guarded<Learned>::Access learned() const;
    std::optional<std::string> ask(const std::string& lowerExtension) const;
    UniformTypes::Set dynamicLineage(const std::string& type) const;

    Loader loader_;
    URL cacheFile_;
    std::string cacheKey_;  ///< Empty for the one of the environment.
    /// The table's own descriptions are the database's English ones.
    bool isEnglish_;
    mutable Guarded<Learned> learned_;
};

}  // namespace tarn
