#include "Tarn/ui/quicksearch/XKeyGrab.h"

#include <cstdlib>
#include <memory>
#include <utility>

#include <QtGui/QGuiApplication>
#include <xcb/xcb.h>

namespace tarn {
namespace {

// Of the X keyboard extension, whose header is not worth a library: kinds of its one event.
constexpr std::uint8_t newKeyboard = 0;
constexpr std::uint8_t keyboardMap = 1;

constexpr std::uint32_t keysymNumLock = 0xff7f;
constexpr std::uint32_t keysymScrollLock = 0xff14;
constexpr std::uint32_t keysymAlt = 0xffe9;
constexpr std::uint32_t keysymMeta = 0xffe7;
constexpr std::uint32_t keysymSuper = 0xffeb;

struct Freed {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using Owned = std::unique_ptr<Reply, Freed>;

template <class Visit>
void eachRoot(xcb_connection_t* connection, const Visit& visit) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0; xcb_screen_next(&screens)) visit(screens.data->root);
}

/// Every set of some of these bits, the empty one first.
template <class Visit>
void eachSubset(std::uint16_t bits, const Visit& visit) {
    std::uint16_t subset = 0;
    do {
        visit(subset);
        subset = static_cast<std::uint16_t>((subset - bits) & bits);
    } while (subset != 0);
}

}  // namespace

/// What is on the keys at present. Read from the server.
struct XKeyGrab::Keyboard {
    explicit Keyboard(xcb_connection_t* connection) {
        const xcb_setup_t* setup = xcb_get_setup(connection);
        first = setup->min_keycode;
        const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
        const auto asked = xcb_get_keyboard_mapping(connection, first, count);
        const auto askedModifiers = xcb_get_modifier_mapping(connection);
        keys.reset(xcb_get_keyboard_mapping_reply(connection, asked, nullptr));
        modifiers.reset(xcb_get_modifier_mapping_reply(connection, askedModifiers, nullptr));
    }

    /// The keys that have this, those where it needs no Shift before others.
    std::vector<std::uint8_t> keycodes(std::uint32_t keysym) const {
        std::vector<std::uint8_t> found;
        if (!keys) return found;
        const std::size_t columns = keys->keysyms_per_keycode;
        const xcb_keysym_t* labels = xcb_get_keyboard_mapping_keysyms(keys.get());
        const auto count =
            static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(keys.get()));
        for (std::size_t column = 0; column < columns && found.empty(); ++column)
            for (std::size_t at = column; at < count; at += columns)
                if (labels[at] == keysym)
                    found.push_back(static_cast<std::uint8_t>(first + at / columns));
        return found;
    }

    /// The bit that a modifier key sets; 0 for one that is not on the keyboard.
    std::uint16_t modifier(std::uint32_t keysym) const {
        if (!modifiers) return 0;
        const std::size_t each = modifiers->keycodes_per_modifier;
        const xcb_keycode_t* all = xcb_get_modifier_mapping_keycodes(modifiers.get());
        for (const std::uint8_t wanted : keycodes(keysym))
            for (std::size_t at = 0; at < 8 * each; ++at)
                if (all[at] == wanted) return static_cast<std::uint16_t>(1U << (at / each));
        return 0;
    }

    std::uint8_t first = 0;
    Owned<xcb_get_keyboard_mapping_reply_t> keys;
    Owned<xcb_get_modifier_mapping_reply_t> modifiers;
};

XKeyGrab::XKeyGrab(xcb_connection_t* connection, QObject* parent)
    : QObject(parent), connection_(connection) {
    constexpr std::string_view name = "XKEYBOARD";
    const Owned<xcb_query_extension_reply_t> extension(xcb_query_extension_reply(
        connection_, xcb_query_extension(connection_, name.size(), name.data()), nullptr));
    if (extension && extension->present) keyboardEvents_ = extension->first_event;
    qGuiApp->installNativeEventFilter(this);
}

XKeyGrab::~XKeyGrab() {
    qGuiApp->removeNativeEventFilter(this);
    release();
}

XKeyGrab::Outcome XKeyGrab::grab(const HotKey& key) {
    release();
    wanted_ = key;
    const Keyboard keyboard(connection_);
    keycodes_ = keyboard.keycodes(key.keysym());
    const std::uint16_t super = keyboard.modifier(keysymSuper);
    std::uint16_t alt = keyboard.modifier(keysymAlt);
    if (!alt) alt = keyboard.modifier(keysymMeta);
    const bool lacksModifier =
        (key.modifiers & HotKey::alt && !alt) || (key.modifiers & HotKey::super && !super);
    if (!key.isUsable() || keycodes_.empty() || lacksModifier) {
        keycodes_.clear();
        return Outcome::noSuchKey;
    }
    modifiers_ = 0;
    if (key.modifiers & HotKey::shift) modifiers_ |= XCB_MOD_MASK_SHIFT;
    if (key.modifiers & HotKey::control) modifiers_ |= XCB_MOD_MASK_CONTROL;
    if (key.modifiers & HotKey::alt) modifiers_ |= alt;
    if (key.modifiers & HotKey::super) modifiers_ |= super;
    locks_ = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | keyboard.modifier(keysymNumLock) |
                                        keyboard.modifier(keysymScrollLock));
    locks_ &= static_cast<std::uint16_t>(~modifiers_);
    std::vector<xcb_void_cookie_t> asked;
    eachRoot(connection_, [&](xcb_window_t root) {
        for (const std::uint8_t keycode : keycodes_)
            eachSubset(locks_, [&](std::uint16_t locks) {
                asked.push_back(xcb_grab_key_checked(
                    connection_, 0, root, static_cast<std::uint16_t>(modifiers_ | locks), keycode,
                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
            });
    });
    bool isTaken = false;
    for (const xcb_void_cookie_t& one : asked)
        if (const Owned<xcb_generic_error_t> error(xcb_request_check(connection_, one)); error)
            isTaken = true;
    if (!isTaken) return Outcome::grabbed;
    // Half of it would work with Num Lock and not without.
    const HotKey kept = key;
    release();
    wanted_ = kept;
    return Outcome::taken;
}

void XKeyGrab::release() {
    wanted_.reset();
    eachRoot(connection_, [this](xcb_window_t root) {
        for (const std::uint8_t keycode : keycodes_)
            eachSubset(locks_, [&](std::uint16_t locks) {
                xcb_ungrab_key(connection_, keycode, root,
                               static_cast<std::uint16_t>(modifiers_ | locks));
            });
    });
    keycodes_.clear();
    xcb_flush(connection_);
}

bool XKeyGrab::isForKeyboards(const void* event) const {
    const auto* generic = static_cast<const xcb_generic_event_t*>(event);
    const auto type = static_cast<std::uint8_t>(generic->response_type & 0x7f);
    // Whoever listens to the keyboard extension, as Qt does, is told of new labels by it alone.
    if (keyboardEvents_ && type == *keyboardEvents_)
        return generic->pad0 == newKeyboard || generic->pad0 == keyboardMap;
    return type == XCB_MAPPING_NOTIFY &&
           static_cast<const xcb_mapping_notify_event_t*>(event)->request != XCB_MAPPING_POINTER;
}

bool XKeyGrab::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" || !wanted_) return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if (isForKeyboards(event)) {
        // They come in bursts, one for every device.
        if (!std::exchange(isChanging_, true))
            QMetaObject::invokeMethod(this, &XKeyGrab::keyboardChanged, Qt::QueuedConnection);
        return false;
    }
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS) return false;
    const auto* key = static_cast<const xcb_key_press_event_t*>(message);
    bool isRoot = false;
    eachRoot(connection_, [&](xcb_window_t root) { isRoot = isRoot || root == key->event; });
    if (!isRoot) return false;
    constexpr std::uint16_t held = 0xff;  // Above are the buttons and the group of the keyboard.
    if ((key->state & held & ~locks_) != modifiers_) return false;
    for (const std::uint8_t keycode : keycodes_)
        if (keycode == key->detail) {
            // Not from inside of the events; and Qt still takes the time of the key from it, by
            // which a window manager knows that the window was asked for.
            QMetaObject::invokeMethod(this, &XKeyGrab::pressed, Qt::QueuedConnection);
            break;
        }
    return false;
}

void XKeyGrab::keyboardChanged() {
    isChanging_ = false;
    if (wanted_) emit outcomeChanged(grab(HotKey(*wanted_)));
}

}  // namespace tarn
