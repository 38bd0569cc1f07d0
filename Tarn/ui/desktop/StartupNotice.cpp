#include "Tarn/ui/desktop/StartupNotice.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <unistd.h>
#include <xcb/xcb.h>

#include "Tarn/commands/DesktopEntry.h"

namespace tarn {
namespace {

constexpr std::string_view timeMark = "_TIME";

xcb_atom_t atom(xcb_connection_t* x, std::string_view name) {
    struct Freed {
        void operator()(void* reply) const { std::free(reply); }
    };
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> reply(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// As a value of a message.
std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') out += '\\';
        out += byte;
    }
    return out + '"';
}

/// To everyone who listens to the screen, in the pieces of 20 bytes that an event holds.
void broadcast(xcb_connection_t* x, const std::string& message) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(x)).data;
    const xcb_atom_t first = atom(x, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t next = atom(x, "_NET_STARTUP_INFO");
    // Only says which pieces belong together.
    const xcb_window_t sender = xcb_generate_id(x);
    xcb_create_window(x, XCB_COPY_FROM_PARENT, sender, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    constexpr std::size_t piece = sizeof(event.data.data8);
    // The last one ends with a zero.
    for (std::size_t at = 0; at <= message.size(); at += piece) {
        event.type = at == 0 ? first : next;
        event.data = {};
        std::memcpy(event.data.data8, message.data() + at, std::min(piece, message.size() - at));
        xcb_send_event(x, 0, screen->root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
    }
    xcb_destroy_window(x, sender);
    xcb_flush(x);
}

}  // namespace

std::string StartupNotice::newID(std::uint32_t time) {
    static unsigned count = 0;
    return "tarn-" + std::to_string(getpid()) + "-" + std::to_string(++count) +
           std::string(timeMark) + std::to_string(time);
}

std::optional<std::uint32_t> StartupNotice::time(std::string_view id) {
    const std::size_t mark = id.rfind(timeMark);
    if (mark == id.npos) return std::nullopt;
    const std::string_view digits = id.substr(mark + timeMark.size());
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return value;
}

void StartupNotice::begin(xcb_connection_t* x, const std::string& id, const DesktopEntry& program) {
    if (!program.tellsWhenStarted && program.windowClass.empty()) return;
    std::string message = "new: ID=" + quoted(id) + " NAME=" + quoted(program.name) + " SCREEN=0";
    message += " APPLICATION_ID=" + quoted(program.id);
    if (!program.icon.empty()) message += " ICON=" + quoted(program.icon);
    if (!program.windowClass.empty()) message += " WMCLASS=" + quoted(program.windowClass);
    if (const auto when = time(id)) message += " TIMESTAMP=" + std::to_string(*when);
    broadcast(x, message);
}

void StartupNotice::end(xcb_connection_t* x, const std::string& id) {
    broadcast(x, "remove: ID=" + quoted(id));
}

}  // namespace tarn
