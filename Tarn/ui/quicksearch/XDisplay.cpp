#include "Tarn/ui/quicksearch/XDisplay.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <QtGui/QGuiApplication>
#include <xcb/xcb.h>

namespace tarn::XDisplay {

xcb_connection_t* connection() {
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return x11->connection();
    return nullptr;
}

bool isComposited() {
    xcb_connection_t* x = connection();
    if (!x) return true;
    // Who puts the windows together owns this selection; the number is that of the screen.
    constexpr std::string_view name = "_NET_WM_CM_S0";
    struct Freed {
        void operator()(void* reply) const { std::free(reply); }
    };
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> atom(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 1, name.size(), name.data()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Freed> owner(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace tarn::XDisplay
