#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tarn {

/// Where a file of a synchronised folder is. On Linux every file is `local`.
enum class CloudStatus { local, downloaded, cloudOnly, downloading, uploading, error };

inline constexpr std::array allCloudStatuses = {CloudStatus::local,     CloudStatus::downloaded,
                                                CloudStatus::cloudOnly, CloudStatus::downloading,
                                                CloudStatus::uploading, CloudStatus::error};

namespace CloudStatuses {
std::string_view rawValue(CloudStatus status);
std::optional<CloudStatus> fromRawValue(std::string_view raw);
std::string_view label(CloudStatus status);
/// Name of its badge; absent for the two states that carry none.
std::optional<std::string_view> symbol(CloudStatus status);
bool isCloud(CloudStatus status);
}  // namespace CloudStatuses

}  // namespace tarn
