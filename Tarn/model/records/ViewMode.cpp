#include "Tarn/model/records/ViewMode.h"

#include <string>

#include <nlohmann/json.hpp>

namespace tarn {

std::string_view ViewModes::rawValue(ViewMode mode) {
    return mode == ViewMode::grid ? "grid" : "list";
}

std::optional<ViewMode> ViewModes::fromRawValue(std::string_view raw) {
    if (raw == "grid") return ViewMode::grid;
    if (raw == "list") return ViewMode::list;
    return std::nullopt;
}

std::string_view SearchScopes::rawValue(SearchScopeSetting scope) {
    switch (scope) {
        case SearchScopeSetting::currentFolder:
            return "currentFolder";
        case SearchScopeSetting::home:
            return "home";
        case SearchScopeSetting::thisMac:
            return "thisMac";
    }
    return {};
}

std::optional<SearchScopeSetting> SearchScopes::fromRawValue(std::string_view raw) {
    for (const auto scope : {SearchScopeSetting::currentFolder, SearchScopeSetting::home,
                             SearchScopeSetting::thisMac}) {
        if (rawValue(scope) == raw) return scope;
    }
    return std::nullopt;
}

void to_json(JSON& json, const ViewMode& mode) { json = std::string(ViewModes::rawValue(mode)); }

void from_json(const JSON& json, ViewMode& mode) {
    mode = ViewModes::fromRawValue(json.get<std::string>()).value_or(mode);
}

void to_json(JSON& json, const SearchScopeSetting& scope) {
    json = std::string(SearchScopes::rawValue(scope));
}

void from_json(const JSON& json, SearchScopeSetting& scope) {
    scope = SearchScopes::fromRawValue(json.get<std::string>()).value_or(scope);
}

}  // namespace tarn
