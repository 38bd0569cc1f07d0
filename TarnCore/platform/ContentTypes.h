#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// What kind of content a file name promises. Types are uniform type identifiers
/// ("public.jpeg", "com.adobe.pdf"); MIME types without a declared identifier get a dynamic one,
/// "dyn.mime." followed by the MIME type ("dyn.mime.application/x-foo"). Callable from any thread.
class ContentTypes {
public:
    virtual ~ContentTypes() = default;

    /// The type of a plain file by its name, extension first. Content is never read. Absent when
    /// nothing is known about the name. Costs well under a microsecond once an extension was seen.
    virtual std::optional<std::string> typeForName(std::string_view name) const = 0;

    /// True when `type` is `ancestor` or a descendant of it ("public.jpeg" is a "public.image").
    virtual bool conforms(std::string_view type, std::string_view ancestor) const = 0;

    /// What the type is called in the user's language ("PDF document"); absent when nothing is
    /// known.
    virtual std::optional<std::string> description(std::string_view type) const = 0;

    /// The MIME type; absent for types that have none ("public.folder" is "inode/directory").
    virtual std::optional<std::string> mimeType(std::string_view type) const = 0;
};

/// The identifiers that the code itself asks about.
namespace ContentType {
inline constexpr std::string_view item = "public.item";
inline constexpr std::string_view content = "public.content";
inline constexpr std::string_view data = "public.data";
inline constexpr std::string_view folder = "public.folder";
inline constexpr std::string_view symlink = "public.symlink";
inline constexpr std::string_view package = "com.apple.package";
inline constexpr std::string_view application = "com.apple.application";
inline constexpr std::string_view applicationBundle = "com.apple.application-bundle";
inline constexpr std::string_view image = "public.image";
inline constexpr std::string_view rawImage = "public.camera-raw-image";
inline constexpr std::string_view movie = "public.movie";
inline constexpr std::string_view video = "public.video";
inline constexpr std::string_view audio = "public.audio";
inline constexpr std::string_view archive = "public.archive";
inline constexpr std::string_view diskImage = "public.disk-image";
inline constexpr std::string_view installerPackage = "com.apple.installer-package-archive";
inline constexpr std::string_view sourceCode = "public.source-code";
inline constexpr std::string_view script = "public.script";
inline constexpr std::string_view pdf = "com.adobe.pdf";
inline constexpr std::string_view text = "public.text";
inline constexpr std::string_view plainText = "public.plain-text";
inline constexpr std::string_view rtf = "public.rtf";
inline constexpr std::string_view presentation = "public.presentation";
inline constexpr std::string_view spreadsheet = "public.spreadsheet";
inline constexpr std::string_view csv = "public.comma-separated-values-text";
inline constexpr std::string_view font = "public.font";
inline constexpr std::string_view epub = "org.idpf.epub-container";
}  // namespace ContentType

}  // namespace tarn
