#pragma once

#include <string>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Drives.h"

namespace tarn {

/// Servers by way of the desktop's own mounts (gvfs), through its tool `gio`. What a server asks is
/// answered on the tool's standard input, where no other program sees it. Waits for the server.
namespace GioMount {

/// Connects, and returns the folder that shows the address. Throws tarn::Error with a finished
/// sentence.
URL mount(const std::string& address, const Drives::Ask& ask, const CancelToken& token);

/// Takes away the mount that a folder of gvfs or of FUSE is in.
EjectResult unmount(const URL& folder, const std::string& name, bool force);

/// The tool is installed.
bool isThere();

}  // namespace GioMount

}  // namespace tarn
