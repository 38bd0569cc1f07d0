#include "TarnCore/files/CloudStatus.h"

namespace tarn::CloudStatuses {
namespace {

struct Names {
    std::string_view rawValue;
    std::string_view label;
    std::string_view symbol;  // empty for none
};

constexpr std::array<Names, allCloudStatuses.size()> statusNames = {{
    {"local", "On this Mac", ""},
    {"downloaded", "Downloaded", ""},
    {"cloudOnly", "In iCloud only", "icloud.and.arrow.down"},
    {"downloading", "Downloading", "arrow.down.circle"},
    {"uploading", "Uploading", "arrow.up.circle"},
    {"error", "Sync error", "exclamationmark.icloud"},
}};

const Names& names(CloudStatus status) { return statusNames[static_cast<std::size_t>(status)]; }

}  // namespace

std::string_view rawValue(CloudStatus status) { return names(status).rawValue; }
std::string_view label(CloudStatus status) { return names(status).label; }
bool isCloud(CloudStatus status) { return status != CloudStatus::local; }

std::optional<CloudStatus> fromRawValue(std::string_view raw) {
    for (const CloudStatus status : allCloudStatuses)
        if (rawValue(status) == raw) return status;
    return std::nullopt;
}

std::optional<std::string_view> symbol(CloudStatus status) {
    const std::string_view symbol = names(status).symbol;
    if (symbol.empty()) return std::nullopt;
    return symbol;
}

}  // namespace tarn::CloudStatuses
