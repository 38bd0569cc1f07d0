#include "TarnCore/search/QueryPlaces.h"

#include <string>
#include <string_view>

#include "TarnCore/files/Paths.h"
#include "TarnCore/search/QueryVocabulary.h"

namespace tarn::QueryPlaces {
namespace {

using PlaceReading = std::optional<Reading<PlaceFilter>>;

struct WellKnown {
    std::string_view name;
    URL (*folder)();
};

constexpr WellKnown wellKnown[] = {
    {"desktop", Paths::desktop},   {"documents", Paths::documents}, {"downloads", Paths::downloads},
    {"pictures", Paths::pictures}, {"movies", Paths::movies},       {"music", Paths::music},
    {"home", Paths::home},         {"trash", Paths::trash},
};

bool isFolderWord(const QueryTokens& tokens, std::size_t index) {
    return tokens.isAny(index, {"folder", "directory"});
}

PlaceReading readWellKnown(const QueryTokens& tokens, std::size_t index) {
    const std::size_t folderWord = isFolderWord(tokens, index + 1) ? 1 : 0;
    for (const WellKnown& place : wellKnown) {
        if (tokens.is(index, place.name)) {
            return Reading<PlaceFilter>{PlaceFilter::folder(place.folder().path()), 1 + folderWord};
        }
    }
    // The folder for movies is called Videos on most desktops; the bare word is a kind of file.
    if (folderWord == 1 && tokens.is(index, "videos")) {
        return Reading<PlaceFilter>{PlaceFilter::folder(Paths::movies().path()), 2};
    }
    return std::nullopt;
}

PlaceReading readPath(const QueryTokens& tokens, std::size_t index) {
    if (index >= tokens.size()) return std::nullopt;
    const std::string_view path = tokens[index].original;
    if (path.starts_with('/')) {
        return Reading<PlaceFilter>{PlaceFilter::folder(URL::fromPath(path).path()), 1};
    }
    if (path == "~" || path.starts_with("~/")) {
        const URL home = Paths::home();
        const URL folder = path.size() > 2 ? URL::fromPath(path.substr(2), home) : home;
        return Reading<PlaceFilter>{PlaceFilter::folder(folder.path()), 1};
    }
    return std::nullopt;
}

PlaceReading readDrives(const QueryTokens& tokens, std::size_t index, bool isIntroduced) {
    if (!tokens.isAny(index, {"external", "usb", "removable", "portable", "thumb", "flash"})) {
        return std::nullopt;
    }
    std::size_t count = 1;
    if (tokens.isAny(index + count, {"hard", "usb"})) ++count;
    if (tokens.isAny(index + count,
                     {"drive", "drives", "disk", "disks", "disc", "discs", "stick", "sticks",
                      "volume", "volumes", "ssd", "ssds", "hdd", "hdds", "storage"})) {
        return Reading<PlaceFilter>{PlaceFilter::externalDrives(), count + 1};
    }
    if (isIntroduced && tokens.is(index, "usb")) {
        return Reading<PlaceFilter>{PlaceFilter::externalDrives(), 1};
    }
    return std::nullopt;
}

PlaceReading readMachine(const QueryTokens& tokens, std::size_t index, bool isIntroduced) {
    if (tokens.is(index, "everywhere")) return Reading<PlaceFilter>{PlaceFilter::thisMac(), 1};
    const auto isMachine = [&tokens](std::size_t at) {
        return tokens.isAny(at, {"mac", "computer", "pc", "laptop", "machine"});
    };
    if (tokens.is(index, "this") && isMachine(index + 1)) {
        return Reading<PlaceFilter>{PlaceFilter::thisMac(), 2};
    }
    if (isIntroduced && tokens.isAny(index, {"my", "the"}) && isMachine(index + 1)) {
        return Reading<PlaceFilter>{PlaceFilter::thisMac(), 2};
    }
    return std::nullopt;
}

PlaceReading readHere(const QueryTokens& tokens, std::size_t index) {
    if (tokens.is(index, "here")) return Reading<PlaceFilter>{PlaceFilter::currentFolder(), 1};
    if (tokens.isAny(index, {"this", "current"}) && isFolderWord(tokens, index + 1)) {
        return Reading<PlaceFilter>{PlaceFilter::currentFolder(), 2};
    }
    return std::nullopt;
}

/// Words that say nothing about which folder is meant.
bool canNameFolder(const QueryTokens& tokens, std::size_t index) {
    if (index >= tokens.size()) return false;
    const QueryWord& word = tokens.word(index);
    return !word.isFiller && !word.number && !word.introducesSource &&
           !isFolderWord(tokens, index) &&
           !tokens.isAny(index, {"in", "on", "at", "of", "during", "this", "current", "that",
                                 "same", "each", "new", "his", "her", "our", "their"});
}

PlaceReading readFolderName(const QueryTokens& tokens, std::size_t index, std::size_t words) {
    if (!isFolderWord(tokens, index + words)) return std::nullopt;
    std::string name;
    for (std::size_t i = index; i < index + words; ++i) {
        if (!canNameFolder(tokens, i)) return std::nullopt;
        if (!name.empty()) name += ' ';
        name += tokens[i].original;
    }
    return Reading<PlaceFilter>{PlaceFilter::named(std::move(name)), words + 1};
}

constexpr std::size_t mostWordsOfName = 3;

}  // namespace

std::optional<Reading<PlaceFilter>> matchPlace(const QueryTokens& tokens, std::size_t index,
                                               bool isIntroduced) {
    if (auto place = readHere(tokens, index)) return place;
    if (auto place = readMachine(tokens, index, isIntroduced)) return place;
    if (auto place = readDrives(tokens, index, isIntroduced)) return place;
    if (tokens.is(index, "icloud")) {
        return Reading<PlaceFilter>{PlaceFilter::iCloud(), tokens.is(index + 1, "drive") ? 2u : 1u};
    }
    if (!isIntroduced) return std::nullopt;
    if (auto place = readWellKnown(tokens, index)) return place;
    if (auto place = readPath(tokens, index)) return place;
    for (std::size_t words = 1; words <= mostWordsOfName; ++words) {
        if (auto place = readFolderName(tokens, index, words)) return place;
    }
    return std::nullopt;
}

std::optional<Reading<PlaceFilter>> matchFolderName(const QueryTokens& tokens, std::size_t index) {
    if (auto place = readWellKnown(tokens, index)) return place;
    return readFolderName(tokens, index, 1);
}

}  // namespace tarn::QueryPlaces
