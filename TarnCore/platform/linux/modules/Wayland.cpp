#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include <poll.h>
#include <wayland-client.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/linux/LinuxActivationTokens.h"
#include "xdg-activation-v1-client-header.h"

namespace tarn {
namespace {

using Clock = std::chrono::steady_clock;

template <class Object, void (*end)(Object*)>
struct Ended {
    void operator()(Object* object) const { end(object); }
};
template <class Object, void (*end)(Object*)>
using Owned = std::unique_ptr<Object, Ended<Object, end>>;

using Queue = Owned<wl_event_queue, wl_event_queue_destroy>;
using Wrapper = Owned<void, wl_proxy_wrapper_destroy>;
using Token = Owned<xdg_activation_token_v1, xdg_activation_token_v1_destroy>;

/// The same object for the compositor; what comes into being through this one talks to `queue`.
template <class Object>
std::pair<Wrapper, Object*> onQueue(Object* object, const Queue& queue) {
    Wrapper wrapper(wl_proxy_create_wrapper(object));
    if (wrapper) wl_proxy_set_queue(static_cast<wl_proxy*>(wrapper.get()), queue.get());
    auto* const same = static_cast<Object*>(wrapper.get());
    return {std::move(wrapper), same};
}

/// Handles what comes for `queue` until `isDone` or the time is up. The toolkit’s thread reads the
/// same connection meanwhile: whoever reads sorts the events of both into their queues.
template <class IsDone>
bool handle(wl_display* display, const Queue& queue, Clock::time_point until,
            const IsDone& isDone) {
    while (!isDone()) {
        if (wl_display_prepare_read_queue(display, queue.get()) != 0) {
            if (wl_display_dispatch_queue_pending(display, queue.get()) < 0) return false;
            continue;
        }
        wl_display_flush(display);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
        pollfd connection{wl_display_get_fd(display), POLLIN, 0};
        const int ready =
            left.count() > 0 ? poll(&connection, 1, static_cast<int>(left.count())) : 0;
        if (ready <= 0) {
            wl_display_cancel_read(display);
            if (ready < 0 && errno == EINTR) continue;
            // Somebody else may have read the answer.
            return wl_display_dispatch_queue_pending(display, queue.get()) >= 0 && isDone();
        }
        if (wl_display_read_events(display) < 0 ||
            wl_display_dispatch_queue_pending(display, queue.get()) < 0)
            return false;
    }
    return true;
}

/// What the compositor says that it has.
struct Globals {
    xdg_activation_v1* activation = nullptr;
    bool areComplete = false;

    static void added(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t) {
        auto* const globals = static_cast<Globals*>(data);
        if (globals->activation || std::strcmp(interface, xdg_activation_v1_interface.name) != 0)
            return;
        globals->activation = static_cast<xdg_activation_v1*>(
            wl_registry_bind(registry, name, &xdg_activation_v1_interface, 1));
    }
    static void removed(void*, wl_registry*, std::uint32_t) {}
    static void completed(void* data, wl_callback*, std::uint32_t) {
        static_cast<Globals*>(data)->areComplete = true;
    }
};

class TokenRequest final : public ActivationTokens::Request {
public:
    TokenRequest(xdg_activation_v1* activation, const ActivationTokens::Origin& origin,
                 const std::string& desktopEntry)
        : display_(origin.display), queue_(wl_display_create_queue(display_)) {
        const auto [wrapper, own] = onQueue(activation, queue_);
        if (!own) return;
        token_.reset(xdg_activation_v1_get_activation_token(own));
        if (!token_) return;
        static constexpr xdg_activation_token_v1_listener listener = {
            .done = [](void* data, xdg_activation_token_v1*, const char* text) {
                static_cast<TokenRequest*>(data)->answer(text);
            }};
        xdg_activation_token_v1_add_listener(token_.get(), &listener, this);
        // A desktop entry and its program’s windows have one name.
        std::string id = desktopEntry;
        if (id.ends_with(".desktop")) id.resize(id.size() - std::strlen(".desktop"));
        xdg_activation_token_v1_set_app_id(token_.get(), id.c_str());
        if (origin.seat)
            xdg_activation_token_v1_set_serial(token_.get(), origin.serial, origin.seat);
        if (origin.surface) xdg_activation_token_v1_set_surface(token_.get(), origin.surface);
        xdg_activation_token_v1_commit(token_.get());
        wl_display_flush(display_);
    }

    std::string wait(std::chrono::milliseconds patience) override {
        if (token_) handle(display_, queue_, Clock::now() + patience, [this] { return isDone_; });
        return text_;
    }

private:
    void answer(const char* text) {
        text_ = text;
        isDone_ = true;
    }

    wl_display* display_;
    Queue queue_;
    Token token_;  ///< Goes before its queue.
    std::string text_;
    bool isDone_ = false;
};

class WaylandTokens final : public ActivationTokens {
public:
    bool prepare(wl_display* display, std::chrono::milliseconds patience) const override {
        const auto connections = connections_.lock();
        if (const auto known = connections->find(display); known != connections->end())
            return known->second != nullptr;
        const Queue queue(wl_display_create_queue(display));
        const auto [wrapper, own] = onQueue(display, queue);
        if (!own) return false;
        Globals globals;
        static constexpr wl_registry_listener registryListener = {Globals::added, Globals::removed};
        static constexpr wl_callback_listener syncListener = {Globals::completed};
        const Owned<wl_registry, wl_registry_destroy> registry(wl_display_get_registry(own));
        wl_registry_add_listener(registry.get(), &registryListener, &globals);
        const Owned<wl_callback, wl_callback_destroy> sync(wl_display_sync(own));
        wl_callback_add_listener(sync.get(), &syncListener, &globals);
        const bool isKnown = handle(display, queue, Clock::now() + patience,
                                    [&globals] { return globals.areComplete; });
        if (globals.activation) {
            // It says nothing, but outlives the queue.
            wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(globals.activation), nullptr);
            if (!isKnown) xdg_activation_v1_destroy(globals.activation);
        }
        if (isKnown) connections->emplace(display, globals.activation);
        return isKnown && globals.activation;
    }

    std::unique_ptr<Request> ask(const Origin& origin,
                                 const std::string& desktopEntry) const override {
        xdg_activation_v1* activation = nullptr;
        {
            const auto connections = connections_.lock();
            if (const auto known = connections->find(origin.display); known != connections->end())
                activation = known->second;
        }
        if (!activation) return nullptr;
        return std::make_unique<TokenRequest>(activation, origin, desktopEntry);
    }

private:
    /// A program has one connection for as long as it runs.
    mutable Guarded<std::map<wl_display*, xdg_activation_v1*>> connections_;
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::ActivationTokens*
tarnActivationTokens(int version) {
    static const tarn::WaylandTokens tokens;
    return version == tarn::activationTokensVersion ? &tokens : nullptr;
}
