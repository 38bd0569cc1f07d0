#pragma once

#include <optional>
#include <string>

namespace tarn {

/// What only the desktop's own library (GIO) knows. It lives in a module that is loaded when it is
/// first needed, because linking GIO would double the time in which a terminal command starts.
/// Callable from any thread.
class DesktopServices {
public:
    virtual ~DesktopServices() = default;

    /// What the shared MIME database says about a file name; absent when it says nothing.
    virtual std::optional<std::string> mimeTypeForName(const std::string& name) const = 0;
    /// True when one MIME type is the other or derived from it.
    virtual bool isA(const std::string& mimeType, const std::string& ancestor) const = 0;
    /// In the language of the environment; empty when there is none.
    virtual std::string description(const std::string& mimeType) const = 0;
    /// "package-x-generic", "text-x-script", …; empty when there is none.
    virtual std::string genericIcon(const std::string& mimeType) const = 0;

    /// False where the desktop's privacy settings say that recent files are not to be kept.
    virtual bool remembersRecentFiles() const = 0;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using DesktopServicesEntry = const DesktopServices*(int version);
inline constexpr int desktopServicesVersion = 2;
inline constexpr const char* desktopServicesSymbol = "tarnDesktopServices";

/// Loads the module at the first call; null when it is not installed. Callable from any thread.
const DesktopServices* loadDesktopServices();

}  // namespace tarn
