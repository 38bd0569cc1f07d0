#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What people type to connect to a server.
namespace tarn::ServerAddress {

/// The URL of the server, "smb://nas/My%20Photos":
///
/// - "smb://" and "cifs://" are shares of the kind that office networks have;
/// - "dav://", "davs://", "webdav://", "webdavs://", "http://" and "https://" are WebDAV, which is
///   "dav" without and "davs" with encryption;
/// - "sftp://" and "ssh://" are a machine that one may log in to;
/// - "\\nas\photos" and "//nas/photos" are "smb", "ada@host:folder" is "sftp";
/// - a bare name, with or without a share behind it, is "smb", what most servers at hand speak.
///
/// Absent for any other scheme, and where there is no server in it. Scheme and server come out in
/// small letters, what a URL may not hold is escaped. A password in it is dropped: addresses are
/// remembered, and other programs see them.
std::optional<std::string> parse(std::string_view text);

/// What to call an address that parse() gave, as the desktop calls it once it is connected: “photos
/// on nas” for all of a share, “nas” for other servers.
std::string title(std::string_view address);

}  // namespace tarn::ServerAddress
