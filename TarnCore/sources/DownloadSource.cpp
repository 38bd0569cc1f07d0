#include "TarnCore/sources/DownloadSource.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

std::vector<std::string> DownloadSource::groups() const {
    std::vector<std::string> names;
    if (!name.empty()) names.push_back(name);
    if (app && !app->empty() && *app != name) names.push_back(*app);
    return names;
}

void to_json(JSON& json, const DownloadSource& source) {
    json = JSON::object();
    json["name"] = source.name;
    json["domain"] = source.domain;
    JSONFields::write(json, "pageURL", source.pageURL);
    JSONFields::write(json, "app", source.app);
}

void from_json(const JSON& json, DownloadSource& source) {
    source = {};
    JSONFields::read(json, "name", source.name);
    JSONFields::read(json, "domain", source.domain);
    JSONFields::read(json, "pageURL", source.pageURL);
    JSONFields::read(json, "app", source.app);
}

}  // namespace tarn
