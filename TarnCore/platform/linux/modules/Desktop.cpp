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
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::DesktopServices* tarnDesktopServices(
    int version) {
    static const tarn::GIODesktopServices services;
    return version == tarn::desktopServicesVersion ? &services : nullptr;
}
