#include "Tarn/ui/desktop/WindowSystem.h"

#include <cstring>

#include <QtCore/QByteArray>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#if __has_include(<qpa/qplatformnativeinterface.h>)
#include <qpa/qplatformnativeinterface.h>
#define TARN_KNOWS_WINDOW_SYSTEM
#endif

namespace tarn {
namespace {

#ifdef TARN_KNOWS_WINDOW_SYSTEM
/// Null on another window system than the one of this name.
QPlatformNativeInterface* nativeInterface(const char* platform) {
    if (!QGuiApplication::platformName().startsWith(QLatin1StringView(platform)) ||
        std::strcmp(qVersion(), QT_VERSION_STR) != 0)
        return nullptr;
    return QGuiApplication::platformNativeInterface();
}

void* resource(QPlatformNativeInterface& native, const char* name) {
    return native.nativeResourceForIntegration(QByteArray(name));
}

void setTime(QPlatformNativeInterface& native, const char* function, std::uint32_t time) {
    using SetTime = void (*)(QScreen*, std::uint32_t);
    if (auto* set = native.nativeResourceFunctionForScreen(QByteArray(function)))
        reinterpret_cast<SetTime>(reinterpret_cast<QFunctionPointer>(set))(
            QGuiApplication::primaryScreen(), time);
}
#endif

}  // namespace

#ifdef TARN_KNOWS_WINDOW_SYSTEM

wl_display* WindowSystem::waylandDisplay() {
    auto* native = nativeInterface("wayland");
    return native ? static_cast<wl_display*>(resource(*native, "wl_display")) : nullptr;
}

ActivationTokens::Origin WindowSystem::waylandOrigin() {
    auto* native = nativeInterface("wayland");
    if (!native) return {};
    ActivationTokens::Origin origin;
    origin.display = waylandDisplay();
    origin.seat = static_cast<wl_seat*>(resource(*native, "wl_seat"));
    origin.serial =
        static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(resource(*native, "serial")));
    if (QWindow* window = QGuiApplication::focusWindow())
        origin.surface = static_cast<wl_surface*>(
            native->nativeResourceForWindow(QByteArrayLiteral("surface"), window));
    return origin;
}

std::uint32_t WindowSystem::inputTime() {
    auto* native = nativeInterface("xcb");
    if (!native) return 0;
    void* const time = native->nativeResourceForScreen(QByteArrayLiteral("appusertime"),
                                                       QGuiApplication::primaryScreen());
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(time));
}

void WindowSystem::noteInputTime(std::uint32_t time) {
    if (auto* native = nativeInterface("xcb")) {
        setTime(*native, "setapptime", time);
        setTime(*native, "setappusertime", time);
    }
}

#else  // Started programs may stay behind other windows, where the desktop is strict.

wl_display* WindowSystem::waylandDisplay() { return nullptr; }
ActivationTokens::Origin WindowSystem::waylandOrigin() { return {}; }
std::uint32_t WindowSystem::inputTime() { return 0; }
void WindowSystem::noteInputTime(std::uint32_t) {}

#endif

}  // namespace tarn
