#ifdef TARN_TEST_WAYLAND

#include <cstring>
#include <memory>
#include <vector>

#include <sys/eventfd.h>
#include <sys/socket.h>

#include <unistd.h>
#include <wayland-client.h>
#include <wayland-server.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/linux/LinuxActivationTokens.h"
#include "xdg-activation-v1-server-header.h"

namespace tarn {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds ample = 10s;

/// What was asked of a compositor.
struct Asked {
    std::string program;
    std::uint32_t serial = 0;
    bool hasSeat = false;
    bool hasSurface = false;
    int commits = 0;
};

/// A compositor without a screen, and a program’s connection to it.
class Compositor {
public:
    enum class Kind { plain, silent, withoutTokens };

    explicit Compositor(Kind kind) : kind_(kind) {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        wl_client_create(server_, ends[0]);
        wl_global_create(server_, &wl_compositor_interface, 1, this, bindCompositor);
        wl_global_create(server_, &wl_seat_interface, 1, this, bindSeat);
        if (kind != Kind::withoutTokens)
            wl_global_create(server_, &xdg_activation_v1_interface, 1, this, bindActivation);
        stopping_ = wl_event_loop_add_fd(
            wl_display_get_event_loop(server_), stop_, WL_EVENT_READABLE,
            [](int, std::uint32_t, void* self) {
                wl_display_terminate(static_cast<Compositor*>(self)->server_);
                return 0;
            },
            this);
        pool_->run([this] { wl_display_run(server_); });
        display = wl_display_connect_to_fd(ends[1]);
        wl_registry* const registry = wl_display_get_registry(display);
        static constexpr wl_registry_listener listener = {
            found, [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry_add_listener(registry, &listener, this);
        wl_display_roundtrip(display);
        wl_registry_destroy(registry);
    }
    ~Compositor() {
        eventfd_write(stop_, 1);
        pool_.reset();
        wl_event_source_remove(stopping_);
        wl_display_destroy_clients(server_);
        wl_display_destroy(server_);
        close(stop_);
        // The connection stays: its address must not come again in this process.
        static auto& kept = *new std::vector<wl_display*>;
        kept.push_back(display);
    }

    ActivationTokens::Origin origin(std::uint32_t serial) {
        return {display, seat, wl_compositor_create_surface(compositor), serial};
    }

    wl_display* display = nullptr;
    wl_seat* seat = nullptr;
    wl_compositor* compositor = nullptr;
    Guarded<Asked> asked;

private:
    wl_event_source* stopping_ = nullptr;
    const Kind kind_;  // In front of those who look at it.

    static void found(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t) {
        auto* const self = static_cast<Compositor*>(data);
        if (std::strcmp(interface, "wl_seat") == 0)
            self->seat =
                static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        if (std::strcmp(interface, "wl_compositor") == 0)
            self->compositor = static_cast<wl_compositor*>(
                wl_registry_bind(registry, name, &wl_compositor_interface, 1));
    }
    static void end(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }
    static Compositor* of(wl_resource* resource) {
        return static_cast<Compositor*>(wl_resource_get_user_data(resource));
    }
    static wl_resource* make(wl_client* client, const wl_interface& interface, std::uint32_t id,
                             const void* implementation, void* self) {
        wl_resource* const resource = wl_resource_create(client, &interface, 1, id);
        wl_resource_set_implementation(resource, implementation, self, nullptr);
        return resource;
    }

    static void bindSeat(wl_client* client, void* self, std::uint32_t, std::uint32_t id) {
        make(client, wl_seat_interface, id, nullptr, self);
    }
    static void bindCompositor(wl_client* client, void* self, std::uint32_t, std::uint32_t id) {
        static constexpr struct wl_compositor_interface implementation = {
            .create_surface =
                [](wl_client* of, wl_resource* resource, std::uint32_t surface) {
                    make(of, wl_surface_interface, surface, nullptr,
                         wl_resource_get_user_data(resource));
                },
            .create_region = nullptr};
        make(client, wl_compositor_interface, id, &implementation, self);
    }
    static void bindActivation(wl_client* client, void* self, std::uint32_t, std::uint32_t id) {
        static constexpr struct xdg_activation_v1_interface implementation = {
            .destroy = end,
            .get_activation_token =
                [](wl_client* of, wl_resource* resource, std::uint32_t token) {
                    make(of, xdg_activation_token_v1_interface, token, &tokenImplementation,
                         wl_resource_get_user_data(resource));
                },
            .activate = nullptr};
        make(client, xdg_activation_v1_interface, id, &implementation, self);
    }
    static constexpr struct xdg_activation_token_v1_interface tokenImplementation = {
        .set_serial =
            [](wl_client*, wl_resource* token, std::uint32_t serial, wl_resource* seat) {
                const auto asked = of(token)->asked.lock();
                asked->serial = serial;
                asked->hasSeat = seat != nullptr;
            },
        .set_app_id = [](wl_client*, wl_resource* token,
                         const char* id) { of(token)->asked.lock()->program = id; },
        .set_surface = [](wl_client*, wl_resource* token,
                          wl_resource* surface) { of(token)->asked.lock()->hasSurface = surface; },
        .commit =
            [](wl_client*, wl_resource* token) {
                const auto asked = of(token)->asked.lock();
                ++asked->commits;
                if (of(token)->kind_ != Kind::silent)
                    xdg_activation_token_v1_send_done(
                        token, ("token " + std::to_string(asked->serial)).c_str());
            },
        .destroy = end,
    };

    wl_display* const server_ = wl_display_create();
    const int stop_ = eventfd(0, EFD_CLOEXEC);
    std::unique_ptr<TaskPool> pool_ = std::make_unique<TaskPool>(1);
};

TEST(ActivationTokens, theCompositorIsToldWhoAsksForWhomAndAnswers) {
    const LinuxActivationTokens tokens;
    Compositor desktop(Compositor::Kind::plain);
    EXPECT_FALSE(tokens.ask(desktop.origin(1), "a.desktop")) << "nobody has looked yet";
    ASSERT_TRUE(tokens.prepare(desktop.display, ample));
    // Two programs at once, and the later one’s answer is taken first.
    const auto first = tokens.ask(desktop.origin(7), "org.kde.kate.desktop");
    const auto second = tokens.ask(desktop.origin(8), "vim.desktop");
    EXPECT_EQ(second->wait(ample), "token 8");
    EXPECT_EQ(first->wait(ample), "token 7");
    const auto asked = desktop.asked.lock();
    EXPECT_EQ(asked->program, "vim");
    EXPECT_TRUE(asked->hasSeat);
    EXPECT_TRUE(asked->hasSurface);
    EXPECT_EQ(asked->commits, 2);
}

TEST(ActivationTokens, thereAreNoneWhereTheCompositorGivesNone) {
    const LinuxActivationTokens tokens;
    Compositor silent(Compositor::Kind::silent);
    ASSERT_TRUE(tokens.prepare(silent.display, ample));
    EXPECT_EQ(tokens.ask(silent.origin(1), "a.desktop")->wait(20ms), "");
    Compositor without(Compositor::Kind::withoutTokens);
    EXPECT_FALSE(tokens.prepare(without.display, ample));
    EXPECT_FALSE(tokens.ask(without.origin(1), "a.desktop"));
}

}  // namespace
}  // namespace tarn

#endif
