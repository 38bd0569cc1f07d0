#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// What a mount table says of the servers that are folders in gvfs.
inline constexpr std::string_view serverFileSystem = "gvfs";

/// What to call a server, from the name that gvfs gives its folder: a kind, ":", and "key=value"
/// divided by ",", with percent escapes in the values. "smb-share:server=nas,share=photos" is
/// "photos on nas", "sftp:host=example.org,user=ada" is "example.org". Absent for any other name.
std::optional<std::string> serverTitle(std::string_view folderName);

}  // namespace tarn
