#pragma once

struct xcb_connection_t;

/// The X server that shows this program's windows. Main thread only.
namespace tarn::XDisplay {

/// Null where they are not on an X server.
xcb_connection_t* connection();

/// Windows can let through what is below them. True where they are not on an X server.
bool isComposited();

}  // namespace tarn::XDisplay
