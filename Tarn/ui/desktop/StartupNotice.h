#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace tarn {

struct DesktopEntry;

/// How programs under X11 tell each other that one starts another (freedesktop.org Startup
/// Notification Protocol 0.1): docks show it, and its window comes to the front when nothing was
/// done elsewhere meanwhile. Main thread only.
namespace StartupNotice {

/// An id that nobody else has, for the environment of a program that is started by what the person
/// did at `time`, in the milliseconds of the X server.
std::string newID(std::uint32_t time);
/// The time that an id carries.
std::optional<std::uint32_t> time(std::string_view id);

/// That the program is being started, unless it is one that does not tell when it has.
void begin(xcb_connection_t* x, const std::string& id, const DesktopEntry& program);
/// That its window is there, or that there will be none.
void end(xcb_connection_t* x, const std::string& id);

}  // namespace StartupNotice

}  // namespace tarn
