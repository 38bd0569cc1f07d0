#include "TarnCore/search/KindRules.h"

#include <algorithm>
#include <initializer_list>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::KindRules {
namespace {

constexpr std::string_view jpeg = "public.jpeg";
constexpr std::string_view heic = "public.heic";
constexpr std::string_view heif = "public.heif";

/// What Linux installs programs from, which the declared types do not know as installers.
constexpr std::string_view linuxInstallers[] = {"deb",     "rpm",        "appimage",
                                                "flatpak", "flatpakref", "snap"};

bool conforms(const Facts& facts, std::initializer_list<std::string_view> ancestors) {
    if (!facts.type) return false;
    const ContentTypes& types = *Platform::current().types;
    return std::any_of(ancestors.begin(), ancestors.end(), [&](std::string_view ancestor) {
        return types.conforms(*facts.type, ancestor);
    });
}

bool beginsWith(std::string_view name, std::string_view lowerPrefix) {
    return name.size() >= lowerPrefix.size() &&
           Text::lowercasedASCII(name.substr(0, lowerPrefix.size())) == lowerPrefix;
}

bool isLinuxInstaller(std::string_view name) {
    const std::string ext = Text::lowercasedASCII(pathExtension(name));
    return std::find(std::begin(linuxInstallers), std::end(linuxInstallers), ext) !=
           std::end(linuxInstallers);
}

Answer photo(const Facts& facts) {
    if (facts.kind() != FileKind::image || isScreenshotName(facts.name)) return Answer::no;
    const bool isFromCamera =
        conforms(facts, {jpeg, heic, heif, ContentType::rawImage}) ||
        FileKinds::isRawExtension(Text::lowercasedASCII(pathExtension(facts.name)));
    return isFromCamera ? Answer::yes : Answer::dependsOnPicture;
}

bool isOf(SearchKind kind, const Facts& facts) {
    switch (kind) {
        case SearchKind::pdf:
            return conforms(facts, {ContentType::pdf});
        case SearchKind::image:
            return facts.kind() == FileKind::image;
        case SearchKind::screenshot:
            return facts.kind() == FileKind::image && isScreenshotName(facts.name);
        case SearchKind::screenRecording:
            return beginsWith(facts.name, "screen recording");
        case SearchKind::video:
            return facts.kind() == FileKind::video;
        case SearchKind::audio:
            return facts.kind() == FileKind::audio;
        case SearchKind::document:
            return facts.kind() == FileKind::document ||
                   conforms(facts, {ContentType::pdf, ContentType::spreadsheet,
                                    ContentType::presentation});
        case SearchKind::spreadsheet:
            return conforms(facts, {ContentType::spreadsheet, ContentType::csv});
        case SearchKind::presentation:
            return conforms(facts, {ContentType::presentation});
        case SearchKind::archive:
            return facts.kind() == FileKind::archive || conforms(facts, {ContentType::archive});
        case SearchKind::installer:
            return conforms(facts, {ContentType::diskImage, ContentType::installerPackage}) ||
                   isLinuxInstaller(facts.name);
        case SearchKind::raw:
            return conforms(facts, {ContentType::rawImage}) ||
                   FileKinds::isRawExtension(Text::lowercasedASCII(pathExtension(facts.name)));
        case SearchKind::code:
            return facts.kind() == FileKind::code ||
                   conforms(facts, {ContentType::sourceCode, ContentType::script});
        case SearchKind::app:
            return facts.kind() == FileKind::app;
        case SearchKind::text:
            return conforms(facts, {ContentType::plainText});
        case SearchKind::font:
            return conforms(facts, {ContentType::font});
        case SearchKind::ebook:
            return conforms(facts, {ContentType::epub});
        case SearchKind::photo:
        case SearchKind::folder:
            break;
    }
    return false;
}

}  // namespace

Facts::Facts(std::string_view fileName)
    : name(fileName), type(Platform::current().types->typeForName(fileName)), isDirectory(false) {}

FileKind Facts::kind() const {
    if (!kind_) kind_ = FileKinds::classify(type, pathExtension(name), false, false);
    return *kind_;
}

Answer test(SearchKind kind, const Facts& facts) {
    if (kind == SearchKind::folder) return facts.isDirectory ? Answer::yes : Answer::no;
    if (kind == SearchKind::app) return facts.kind() == FileKind::app ? Answer::yes : Answer::no;
    if (facts.isDirectory) return Answer::no;
    if (kind == SearchKind::photo) return photo(facts);
    return isOf(kind, facts) ? Answer::yes : Answer::no;
}

bool isScreenshotName(std::string_view name) {
    return beginsWith(name, "screenshot") || beginsWith(name, "screen shot");
}

bool mayBePlainText(const std::optional<std::string>& type, FileKind kind) {
    if (kind == FileKind::code) return true;
    // A name that says nothing ("LICENSE") is most often text; the content decides.
    if (!type) return kind == FileKind::other;
    const ContentTypes& types = *Platform::current().types;
    return types.conforms(*type, ContentType::text) && !types.conforms(*type, ContentType::rtf);
}

}  // namespace tarn::KindRules
