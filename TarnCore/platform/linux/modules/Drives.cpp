// The system's disk service (udisks2), asked over D-Bus; the module tarn-drives.
#include <climits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>

#include "TarnCore/platform/linux/DiskService.h"

namespace tarn {
namespace {

constexpr const char* service = "org.freedesktop.UDisks2";
constexpr const char* root = "/org/freedesktop/UDisks2";
constexpr const char* block = "org.freedesktop.UDisks2.Block";
constexpr const char* fileSystem = "org.freedesktop.UDisks2.Filesystem";
constexpr const char* encrypted = "org.freedesktop.UDisks2.Encrypted";
constexpr const char* loop = "org.freedesktop.UDisks2.Loop";
constexpr const char* drive = "org.freedesktop.UDisks2.Drive";
/// Milliseconds for a look at what there is. Unmounting writes gigabytes to slow sticks and may
/// wait for the user's password, so it takes its time.
constexpr int shortWait = 25'000;
constexpr int anyWait = INT_MAX;

struct Unref {
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GDBusConnection* bus) const { g_object_unref(bus); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(char* text) const { g_free(text); }
};
using Value = std::unique_ptr<GVariant, Unref>;
using Bus = std::unique_ptr<GDBusConnection, Unref>;
using Failure = std::unique_ptr<GError, Unref>;
using Chars = std::unique_ptr<char, Unref>;

/// One connection for each use: drives are ejected once a day, and nothing is left open.
Bus systemBus() {
    const Chars address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (!address) return nullptr;
    return Bus(g_dbus_connection_new_for_address_sync(
        address.get(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
}

/// The properties of an interface of an object; they live as long as the answer they are from.
class Properties {
public:
    explicit Properties(GVariant* all) : all_(all) {}
    std::string text(const char* name) const {
        const Value value(g_variant_lookup_value(all_, name, nullptr));
        if (!value) return {};
        if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH) ||
            g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
            return g_variant_get_string(value.get(), nullptr);
        return {};
    }
    bool flag(const char* name) const {
        gboolean value = FALSE;
        g_variant_lookup(all_, name, "b", &value);
        return value != FALSE;
    }
    /// Paths, which are byte strings that end in a NUL.
    std::vector<std::string> paths(const char* name) const {
        std::vector<std::string> found;
        const Value value(g_variant_lookup_value(all_, name, G_VARIANT_TYPE_BYTESTRING_ARRAY));
        if (!value) return found;
        for (gsize i = 0; i < g_variant_n_children(value.get()); ++i) {
            const Value one(g_variant_get_child_value(value.get(), i));
            found.emplace_back(g_variant_get_bytestring(one.get()));
        }
        return found;
    }

private:
    GVariant* all_;
};

/// Everything that the service knows: objects by their path, each with its interfaces.
class Objects {
public:
    explicit Objects(Value answer) : answer_(std::move(answer)) {
        const Value all(g_variant_get_child_value(answer_.get(), 0));
        for (gsize i = 0; i < g_variant_n_children(all.get()); ++i) {
            const Value object(g_variant_get_child_value(all.get(), i));
            const Value path(g_variant_get_child_value(object.get(), 0));
            const Value interfaces(g_variant_get_child_value(object.get(), 1));
            auto& kept = objects_[g_variant_get_string(path.get(), nullptr)];
            for (gsize j = 0; j < g_variant_n_children(interfaces.get()); ++j) {
                const Value one(g_variant_get_child_value(interfaces.get(), j));
                const Value name(g_variant_get_child_value(one.get(), 0));
                kept[g_variant_get_string(name.get(), nullptr)] =
                    Value(g_variant_get_child_value(one.get(), 1));
            }
        }
    }
    std::optional<Properties> find(const std::string& path, const char* interface) const {
        const auto object = objects_.find(path);
        if (object == objects_.end()) return std::nullopt;
        const auto found = object->second.find(interface);
        if (found == object->second.end()) return std::nullopt;
        return Properties(found->second.get());
    }
    /// The block device that is mounted there and nowhere else, for “Unmount” does not say which
    /// of several mounts it means; empty when there is none.
    std::string mountedAt(const std::string& mountPoint) const {
        for (const auto& [path, interfaces] : objects_) {
            const auto mounted = find(path, fileSystem);
            if (mounted && mounted->paths("MountPoints") == std::vector{mountPoint}) return path;
        }
        return {};
    }
    /// What holds the block device, encrypted; empty for one that is not.
    std::string backing(const std::string& device) const {
        const auto found = find(device, block);
        const std::string path = found ? found->text("CryptoBackingDevice") : std::string();
        return path == "/" ? std::string() : path;
    }
    /// Of what is encrypted, the drive is that of what holds it.
    std::string driveOf(const std::string& device) const {
        const std::string holder = backing(device);
        const auto found = find(holder.empty() ? device : holder, block);
        const std::string path = found ? found->text("Drive") : std::string();
        return path == "/" ? std::string() : path;
    }
    bool hasOtherMounts(const std::string& ofDrive, const std::string& than) const {
        for (const auto& [path, interfaces] : objects_) {
            if (path == than || driveOf(path) != ofDrive) continue;
            const auto mounted = find(path, fileSystem);
            if (mounted && !mounted->paths("MountPoints").empty()) return true;
        }
        return false;
    }

private:
    Value answer_;
    std::map<std::string, std::map<std::string, Value>> objects_;
};

/// The error of a call; empty when it was done.
DiskService::Answer call(GDBusConnection* bus, const std::string& object, const char* interface,
                         const char* method, bool force = false) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    if (force) g_variant_builder_add(&options, "{sv}", "force", g_variant_new_boolean(TRUE));
    GError* raw = nullptr;
    const Value reply(g_dbus_connection_call_sync(
        bus, service, object.c_str(), interface, method, g_variant_new("(a{sv})", &options),
        nullptr, G_DBUS_CALL_FLAGS_ALLOW_INTERACTIVE_AUTHORIZATION, anyWait, nullptr, &raw));
    DiskService::Answer answer;
    answer.isKnown = true;
    if (reply) return answer;
    const Failure failure(raw);
    const Chars name(g_dbus_error_get_remote_error(failure.get()));
    g_dbus_error_strip_remote_error(failure.get());
    answer.error = name ? name.get() : "org.freedesktop.DBus.Error.Failed";
    answer.message = failure->message;
    return answer;
}

class UDisks final : public DiskService {
public:
    Answer eject(const std::string& mountPoint, bool force) const override {
        const Bus bus = systemBus();
        if (!bus) return {};
        Value all(g_dbus_connection_call_sync(
            bus.get(), service, root, "org.freedesktop.DBus.ObjectManager", "GetManagedObjects",
            nullptr, G_VARIANT_TYPE("(a{oa{sa{sv}}})"), G_DBUS_CALL_FLAGS_NONE, shortWait, nullptr,
            nullptr));
        if (!all) return {};
        const Objects objects(std::move(all));
        const std::string device = objects.mountedAt(mountPoint);
        if (device.empty()) return {};
        Answer unmounted = call(bus.get(), device, fileSystem, "Unmount", force);
        if (unmounted.error == "org.freedesktop.UDisks2.Error.NotMounted") unmounted.error.clear();
        // Whoever was forced off may still be writing.
        if (unmounted.error.empty() && !force) letGo(bus.get(), objects, device);
        return unmounted;
    }

private:
    static void letGo(GDBusConnection* bus, const Objects& objects, const std::string& device) {
        const std::string holder = objects.backing(device);
        if (!holder.empty()) call(bus, holder, encrypted, "Lock");
        const std::string path = objects.driveOf(device);
        if (path.empty()) {
            if (objects.find(device, loop)) call(bus, device, loop, "Delete");
            return;
        }
        const auto facts = objects.find(path, drive);
        if (!facts || objects.hasOtherMounts(path, device)) return;
        // A reader of cards or discs stays on for the next one.
        if (facts->flag("MediaRemovable") && facts->flag("Ejectable"))
            call(bus, path, drive, "Eject");
        else if (facts->flag("CanPowerOff"))
            call(bus, path, drive, "PowerOff");
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::DiskService* tarnDiskService(
    int version) {
    static const tarn::UDisks service;
    return version == tarn::diskServiceVersion ? &service : nullptr;
}
