#pragma once

#include <map>
#include <string>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/ContentTypes.h"

namespace tarn {

/// The table of declared types and nothing else, plus what a test declares. Descriptions are
/// English.
class MemoryContentTypes final : public ContentTypes {
public:
    /// From now on names with this lower-case extension have the type, which descends from
    /// `parent` when it is not one of the table.
    void declare(const std::string& extension, const std::string& type, const std::string& parent,
                 const std::string& description);

    std::optional<std::string> typeForName(std::string_view name) const override;
    bool conforms(std::string_view type, std::string_view ancestor) const override;
    std::optional<std::string> description(std::string_view type) const override;
    std::optional<std::string> mimeType(std::string_view type) const override;

private:
    struct Declared {
        std::map<std::string, std::string, std::less<>> extensions;
        std::map<std::string, std::string, std::less<>> parents;
        std::map<std::string, std::string, std::less<>> descriptions;
    };
    Guarded<Declared> declared_;
};

}  // namespace tarn
