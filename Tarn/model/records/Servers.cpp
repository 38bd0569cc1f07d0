#include "Tarn/model/records/Servers.h"

#include "TarnCore/base/Text.h"

namespace tarn::Servers {

void remember(std::vector<std::string>& servers, std::string_view address) {
    const std::string kept = Text::sanitized(Text::trimmed(address));
    if (kept.empty()) return;
    forget(servers, kept);
    servers.insert(servers.begin(), kept);
    if (servers.size() > mostKept) servers.resize(mostKept);
}

void forget(std::vector<std::string>& servers, std::string_view address) {
    const std::string_view unwanted = Text::trimmed(address);
    std::erase_if(servers, [&unwanted](const std::string& kept) { return kept == unwanted; });
}

}  // namespace tarn::Servers
