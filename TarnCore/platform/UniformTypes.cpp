#include "TarnCore/platform/UniformTypes.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <vector>

#include "TarnCore/base/WordMap.h"

namespace tarn::UniformTypes {
namespace {

template <class Body>
void forEachWord(std::string_view list, const Body& body) {
    while (!list.empty()) {
        const std::size_t space = list.find(' ');
        body(list.substr(0, space));
        list = space == list.npos ? std::string_view{} : list.substr(space + 1);
    }
}

using Map = WordMap<std::uint16_t>;
using Words = std::string_view Declaration::*;

std::optional<std::size_t> find(const Map& map, std::string_view key) {
    const std::uint16_t* found = map.find(key);
    return found ? std::optional<std::size_t>(*found) : std::nullopt;
}

/// The first type that has each word of a column.
Map mapOf(Words column) {
    std::size_t count = 0;
    for (const Declaration& row : declarations())
        count += 1 + static_cast<std::size_t>(std::ranges::count(row.*column, ' '));
    Map map(count);
    std::uint16_t i = 0;
    for (const Declaration& row : declarations()) {
        forEachWord(row.*column, [&](std::string_view word) { map.add(word, i); });
        ++i;
    }
    return map;
}

/// The types made quick to search, and what they descend from.
class Index {
public:
    Index() : lineages(declarations().size()) {
        for (std::size_t i = 0; i < lineages.size(); ++i) resolve(i);
    }

    const Map identifiers = mapOf(&Declaration::identifier);
    std::vector<Set> lineages;

private:
    /// The table has no circles, so the depth of this is that of the deepest type.
    const Set& resolve(std::size_t i) {
        Set& set = lineages[i];
        if (set.any()) return set;
        set.set(i);
        forEachWord(declarations()[i].parents, [&](std::string_view parent) {
            const auto at = find(identifiers, parent);
            assert(at && "a parent that is not declared");
            if (at) set |= resolve(*at);
        });
        return set;
    }
};

const Index& index() {
    static const Index instance;
    return instance;
}

/// Names without an extension that everybody knows.
constexpr struct {
    std::string_view name;
    std::string_view identifier;
} namedFiles[] = {
    {"makefile", "public.make-source"},      {"gnumakefile", "public.make-source"},
    {"dockerfile", "com.docker.dockerfile"}, {"containerfile", "com.docker.dockerfile"},
    {"gemfile", "public.ruby-script"},       {"rakefile", "public.ruby-script"},
    {"vagrantfile", "public.ruby-script"},   {"readme", "public.plain-text"},
    {"license", "public.plain-text"},        {"licence", "public.plain-text"},
    {"copying", "public.plain-text"},        {"install", "public.plain-text"},
    {"authors", "public.plain-text"},        {"news", "public.plain-text"},
    {"changelog", "public.plain-text"},      {"todo", "public.plain-text"},
    {"notice", "public.plain-text"},
};

/// What generic icons and MIME types say where no declaration does. The first that fits is taken.
constexpr struct {
    std::string_view word;
    std::string_view identifier;
} iconClasses[] = {
    {"package-x-generic", "public.archive"},
    {"x-office-spreadsheet", "public.spreadsheet"},
    {"x-office-presentation", "public.presentation"},
    {"x-office-document", "public.composite-content"},
    {"text-x-script", "public.script"},
    {"application-x-executable", "public.executable"},
    {"audio-x-generic", "public.audio"},
    {"video-x-generic", "public.movie"},
    {"image-x-generic", "public.image"},
    {"font-x-generic", "public.font"},
    {"text-x-generic", "public.text"},
    {"text-html", "public.text"},
};
constexpr struct {
    std::string_view word;
    std::string_view identifier;
} mimeClasses[] = {
    {"-disk-image", "public.disk-image"},  {"-diskimage", "public.disk-image"},
    {"-cd-image", "public.disk-image"},    {"-disk", "public.disk-image"},
    {"-compressed-tar", "public.archive"}, {"-compressed", "public.archive"},
    {"-archive", "public.archive"},
};
constexpr struct {
    std::string_view media;
    std::string_view identifier;
} mediaClasses[] = {
    {"image/", "public.image"}, {"audio/", "public.audio"},      {"video/", "public.movie"},
    {"font/", "public.font"},   {"model/", "public.3d-content"}, {"message/", "public.message"},
    {"text/", "public.text"},
};

bool looksLikeSource(std::string_view mimeType) {
    return mimeType.starts_with("text/") &&
           (mimeType.ends_with("src") || mimeType.ends_with("hdr") || mimeType.ends_with("source"));
}

bool isCameraRaw(std::string_view mimeType) {
    constexpr std::string_view makers[] = {"canon", "nikon",  "sony",    "fuji",  "olympus",
                                           "kodak", "pentax", "minolta", "sigma", "panasonic"};
    constexpr std::string_view start = "image/x-";
    if (!mimeType.starts_with(start)) return false;
    const std::string_view rest = mimeType.substr(start.size());
    for (const auto maker : makers)
        if (rest.starts_with(maker)) return true;
    return rest == "dcraw";
}

}  // namespace

std::optional<std::size_t> indexOf(std::string_view identifier) {
    return find(index().identifiers, identifier);
}

std::optional<std::size_t> indexForExtension(std::string_view lowerExtension) {
    static const Map extensions = mapOf(&Declaration::extensions);
    return find(extensions, lowerExtension);
}

std::optional<std::size_t> indexForName(std::string_view lowerName) {
    for (const auto& file : namedFiles)
        if (file.name == lowerName) return indexOf(file.identifier);
    return std::nullopt;
}

std::optional<std::size_t> indexForMIMEType(std::string_view mimeType) {
    static const Map mimeTypes = mapOf(&Declaration::mimeTypes);
    return find(mimeTypes, mimeType);
}

const Set& lineage(std::size_t i) { return index().lineages[i]; }

std::string_view mimeType(std::size_t i) {
    const std::string_view all = declarations()[i].mimeTypes;
    return all.substr(0, all.find(' '));
}

Set lineageOfMIMEType(std::string_view mimeType, std::string_view genericIcon) {
    Set set;
    const auto add = [&](std::string_view identifier) {
        if (const auto at = indexOf(identifier)) set |= lineage(*at);
    };
    add("public.data");
    if (looksLikeSource(mimeType)) add("public.source-code");
    if (isCameraRaw(mimeType)) add("public.camera-raw-image");
    for (const auto& media : mediaClasses)
        if (mimeType.starts_with(media.media)) add(media.identifier);
    for (const auto& ending : mimeClasses) {
        if (!mimeType.ends_with(ending.word)) continue;
        add(ending.identifier);
        break;
    }
    for (const auto& icon : iconClasses)
        if (icon.word == genericIcon) add(icon.identifier);
    return set;
}

}  // namespace tarn::UniformTypes
