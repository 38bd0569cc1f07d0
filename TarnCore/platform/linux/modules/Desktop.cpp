#include <gio/gio.h>

#include "TarnCore/platform/linux/DesktopServices.h"

namespace tarn {
namespace {

std::string taken(char* text) {
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

/// The shared MIME database through GIO.
class GIODesktopServices final : public DesktopServices {
public:
    std::optional<std::string> mimeTypeForName(const std::string& name) const override {
        const std::string type = taken(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
        if (type.empty() || g_content_type_is_unknown(type.c_str())) return std::nullopt;
        return taken(g_content_type_get_mime_type(type.c_str()));
    }
    bool isA(const std::string& mimeType, const std::string& ancestor) const override {
        return g_content_type_is_a(mimeType.c_str(), ancestor.c_str());
    }
    std::string description(const std::string& mimeType) const override {
        std::string text = taken(g_content_type_get_description(mimeType.c_str()));
        // Where the database says nothing, GIO makes up “application/zip type”.
        if (text.find(mimeType) != text.npos) text.clear();
        return text;
    }
    std::string genericIcon(const std::string& mimeType) const override {
        return taken(g_content_type_get_generic_icon_name(mimeType.c_str()));
    }
    bool remembersRecentFiles() const override {
        // Asking for settings that are not installed would end the program.
        GSettingsSchemaSource* installed = g_settings_schema_source_get_default();
        if (!installed) return true;
        GSettingsSchema* schema =
            g_settings_schema_source_lookup(installed, "org.gnome.desktop.privacy", TRUE);
        if (!schema) return true;
        bool remembers = true;
        if (g_settings_schema_has_key(schema, "remember-recent-files")) {
            GSettings* privacy = g_settings_new_full(schema, nullptr, nullptr);
            remembers = g_settings_get_boolean(privacy, "remember-recent-files");
            g_object_unref(privacy);
        }
        g_settings_schema_unref(schema);
        return remembers;
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::DesktopServices* tarnDesktopServices(
    int version) {
    static const tarn::GIODesktopServices services;
    return version == tarn::desktopServicesVersion ? &services : nullptr;
}
