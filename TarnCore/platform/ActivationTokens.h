#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

struct wl_display;
struct wl_seat;
struct wl_surface;

namespace tarn {

/// Tokens of a Wayland compositor: a program that is started with one may bring its window to the
/// front (xdg-activation, staging version 1). The connection is that of the toolkit, so that the
/// compositor knows whose key or click it was.
class ActivationTokens {
public:
    virtual ~ActivationTokens() = default;

    /// By what the compositor judges; null where it is not known.
    struct Origin {
        wl_display* display = nullptr;
        wl_seat* seat = nullptr;
        wl_surface* surface = nullptr;  ///< Of the window that the person used.
        std::uint32_t serial = 0;       ///< Of their last key or click.
    };

    /// A token that was asked for. It must go before the connection does.
    class Request {
    public:
        virtual ~Request() = default;
        /// Waits for the answer; empty when none has come after `patience`. Not on the main
        /// thread, and once.
        virtual std::string wait(std::chrono::milliseconds patience) = 0;
    };

    /// Whether the compositor hands out tokens. Waits for what it says of itself the first time
    /// that it is asked about this connection; not on the main thread.
    virtual bool prepare(wl_display* display, std::chrono::milliseconds patience) const = 0;
    /// Asks for the window of the program with this desktop entry ("org.kde.kate.desktop"), and
    /// does not wait. Main thread only, where the surface cannot go meanwhile. Null when prepare()
    /// has not said yes.
    virtual std::unique_ptr<Request> ask(const Origin& origin,
                                         const std::string& desktopEntry) const = 0;

    /// Of this process; null where there are none. Set once in `main`, before the first thread.
    static const ActivationTokens* current();
    static void setCurrent(std::shared_ptr<const ActivationTokens> tokens);
};

}  // namespace tarn
