#include "bench/TreeMaker.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn::bench {
namespace {

/// Ordinary words of file names. Each stands once: a search for one finds about a file in a
/// hundred.
constexpr std::string_view vocabulary[] = {
    "account",    "agenda",       "album",     "analysis", "annual",     "application", "april",
    "archive",    "august",       "autumn",    "backup",   "balance",    "beach",       "berlin",
    "birthday",   "blue",         "board",     "book",     "budget",     "camera",      "card",
    "chapter",    "christmas",    "client",    "concert",  "contract",   "copy",        "course",
    "cover",      "data",         "december",  "design",   "diagram",    "dinner",      "draft",
    "email",      "evening",      "example",   "export",   "family",     "february",    "feedback",
    "final",      "flight",       "form",      "garden",   "green",      "guide",       "harbour",
    "holiday",    "hotel",        "house",     "import",   "index",      "insurance",   "interview",
    "invitation", "invoice",      "january",   "journal",  "july",       "june",        "kitchen",
    "lecture",    "letter",       "license",   "light",    "list",       "london",      "machine",
    "manual",     "map",          "march",     "meeting",  "menu",       "minutes",     "model",
    "morning",    "mountain",     "network",   "new",      "night",      "notes",       "november",
    "october",    "office",       "old",       "order",    "overview",   "paper",       "party",
    "passport",   "payment",      "photo",     "plan",     "planning",   "policy",      "portrait",
    "poster",     "presentation", "price",     "process",  "product",    "profile",     "project",
    "proposal",   "quarter",      "question",  "quote",    "receipt",    "recipe",      "red",
    "reference",  "registration", "release",   "rental",   "report",     "research",    "results",
    "review",     "river",        "road",      "salary",   "sample",     "scan",        "schedule",
    "school",     "script",       "september", "shopping", "signed",     "sketch",      "slides",
    "small",      "spring",       "statement", "station",  "statistics", "street",      "studio",
    "summary",    "summer",       "sunset",    "survey",   "table",      "tax",         "team",
    "template",   "test",         "thesis",    "ticket",   "timeline",   "today",       "tour",
    "train",      "translation",  "travel",    "tree",     "trip",       "university",  "update",
    "vacation",   "version",      "video",     "visit",    "water",      "wedding",     "week",
    "weekend",    "white",        "winter",    "work",     "workshop",   "year"};

/// Names that are not ASCII, and one that is not UTF-8: about 1 in 25 holds one of these.
constexpr std::string_view foreign[] = {
    "Übersicht", "café",  "résumé",  "Straße", "año",       "Zürich",  "日本",      "写真",
    "отчёт",     "naïve", "smörgås", "Ελλάδα", "facture é", "caf\xE9", "🏖 beach"};

/// Of a heavy-tailed distribution: median in bytes and the spread of its logarithm.
struct Sizes {
    std::string_view extension;
    double median;
    double spread;
};
constexpr Sizes sizes[] = {
    {"jpg", 2.4e6, 0.6}, {"heic", 1.6e6, 0.5}, {"cr2", 2.6e7, 0.2}, {"png", 2.5e5, 1.2},
    {"mp3", 5.5e6, 0.5}, {"flac", 2.8e7, 0.5}, {"m4a", 4.5e6, 0.5}, {"mp4", 6e7, 1.4},
    {"mov", 9e7, 1.2},   {"mkv", 9e8, 0.8},    {"pdf", 3.5e5, 1.5}, {"docx", 4.5e4, 1.2},
    {"xlsx", 3e4, 1.2},  {"pptx", 2e6, 1.3},   {"zip", 3e6, 2.0},   {"deb", 8e6, 1.5},
    {"iso", 1.2e9, 0.6}, {"epub", 6e5, 0.8},   {"txt", 2e3, 1.6},   {"md", 3e3, 1.2},
    {"jar", 8e5, 1.4},   {"sqlite", 4e5, 2.0}};
constexpr Sizes otherSizes{"", 4e3, 1.5};

constexpr std::int64_t lastDate = 1'767'225'600;  // 2026-01-01 00:00:00 UTC
constexpr std::int64_t day = 86'400;

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// An open folder.
class Folder {
public:
    explicit Folder(const std::string& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (descriptor_ < 0) fail(path);
    }
    ~Folder() { close(descriptor_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

void makeFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0755) != 0) fail(path);
}

}  // namespace

/// One part of a home: how many of its files are there, how they are called and how they lie.
struct TreeMaker::Area {
    std::string_view path;
    std::size_t share;           ///< Of the files of the whole tree, in thousandths.
    std::size_t filesPerFolder;  ///< On average.
    std::size_t depth;           ///< Folders below the area's own.
    enum class Names { words, camera, tracks, code, hashes } names;
    std::vector<std::string_view> extensions;
};

std::uint64_t TreeMaker::next() {  // SplitMix64, by Sebastiano Vigna (public domain)
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

std::string TreeMaker::words(std::size_t count, std::string_view separator) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) result += separator;
        std::string word(chance(4) ? pick(foreign) : pick(vocabulary));
        if (chance(40) && word[0] >= 'a' && word[0] <= 'z')
            word[0] = static_cast<char>(word[0] - 32);
        result += word;
    }
    return result;
}

std::string TreeMaker::name(const Area& area, std::size_t number, std::string_view extension) {
    char text[64];
    const auto year = static_cast<int>(2012 + below(14));
    switch (area.names) {
        case Area::Names::camera:
            std::snprintf(text, sizeof text, chance(80) ? "IMG_%04zu" : "DSC%05zu", number);
            return text;
        case Area::Names::tracks:
            std::snprintf(text, sizeof text, "%02zu ", number % 20 + 1);
            return text + words(1 + below(3), " ");
        case Area::Names::code:
            return words(1 + below(2), chance(50) ? "_" : "");
        case Area::Names::hashes:
            std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(next()));
            return text;
        case Area::Names::words:
            break;
    }
    std::string result = words(1 + below(4), chance(60) ? " " : chance(50) ? "_" : "-");
    if (chance(25)) {
        std::snprintf(text, sizeof text, " %d-%02zu", year, below(12) + 1);
        result += text;
    }
    if (chance(8)) result += " (1)";
    if (extension == "png" && chance(30)) {
        std::snprintf(text, sizeof text, "Screenshot %d-%02zu-%02zu at %02zu.%02zu.%02zu", year,
                      below(12) + 1, below(28) + 1, below(24), below(60), below(60));
        result = text;
    }
    return result;
}

std::int64_t TreeMaker::size(std::string_view extension) {
    Sizes found = otherSizes;
    for (const Sizes& row : sizes) {
        if (row.extension == extension) found = row;
    }
    // The sum of twelve uniform numbers is near enough to the normal distribution, and unlike the
    // distributions of <random> it is the same in every library.
    double normal = -6;
    for (int i = 0; i < 12; ++i) normal += static_cast<double>(next() >> 11) * 0x1p-53;
    return static_cast<std::int64_t>(found.median * std::exp(normal * found.spread));
}

void TreeMaker::makeFile(int folder, const std::string& wanted, std::string_view extension) {
    std::string name;
    int descriptor = -1;
    for (int attempt = 1; descriptor < 0; ++attempt) {
        name = attempt == 1 ? wanted : wanted + " " + std::to_string(attempt);
        if (!extension.empty()) name.append(".").append(extension);
        descriptor = openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (descriptor < 0 && errno != EEXIST) fail(name);
    }
    const std::int64_t bytes = size(extension);
    // Recent files are more frequent: the age is the smaller of two, of up to twelve years.
    const std::size_t twelveYears = 12 * 365 * day;
    const std::size_t first = below(twelveYears), second = below(twelveYears);
    timespec modified{};
    modified.tv_sec = lastDate - static_cast<std::int64_t>(first < second ? first : second);
    modified.tv_nsec = static_cast<long>(below(1'000'000'000));
    const timespec times[2] = {modified, modified};
    const bool done = ftruncate(descriptor, bytes) == 0 && futimens(descriptor, times) == 0;
    const int error = errno;
    close(descriptor);
    if (!done) throw std::system_error(error, std::generic_category(), name);
}

TreeCounts TreeMaker::plant(const std::string& root, const Area& area, std::size_t files) {
    TreeCounts counts;
    struct Node {
        std::string path;
        std::size_t depth;
    };
    std::string path = root;
    for (std::size_t start = 0; start < area.path.size();) {  // "a/b": two folders, if not there
        const std::size_t end = std::min(area.path.find('/', start), area.path.size());
        path.append("/").append(area.path.substr(start, end - start));
        if (mkdir(path.c_str(), 0755) == 0) {
            ++counts.folders;
        } else if (errno != EEXIST) {
            fail(path);
        }
        start = end + 1;
    }

    std::vector<Node> folders{{path, 0}};
    const std::size_t wanted = files / area.filesPerFolder;
    while (folders.size() < wanted) {
        // Younger folders get more children, which makes trees rather than stars.
        const std::size_t recent = std::min<std::size_t>(folders.size(), 40);
        const Node& parent =
            chance(70) ? folders[folders.size() - 1 - below(recent)] : pick(folders);
        if (parent.depth >= area.depth) continue;
        std::string child = parent.path + "/";
        if (area.names == Area::Names::hashes) {
            child += name(area, 0, "").substr(0, 2 + below(6));
        } else {
            child += words(1 + below(2), area.names == Area::Names::code ? "-" : " ");
        }
        if (chance(20)) child += " " + std::to_string(2012 + below(14));
        if (mkdir(child.c_str(), 0755) != 0) {
            if (errno == EEXIST) continue;
            fail(child);
        }
        folders.push_back({std::move(child), parent.depth + 1});
    }
    counts.folders += folders.size() - 1;

    // Every folder gets some files; what is left goes to favourites, so that a few are big.
    const std::size_t evenly = files / 2 / folders.size();
    std::vector<std::size_t> numbers(folders.size(), evenly);
    for (std::size_t left = files - evenly * folders.size(); left > 0; --left) {
        const std::size_t a = below(folders.size());
        ++numbers[chance(50) ? a : a / 8];
    }
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const Folder folder(folders[i].path);
        const std::size_t first = below(9000);
        for (std::size_t k = 0; k < numbers[i]; ++k) {
            const std::string_view extension = pick(area.extensions);
            makeFile(folder.descriptor(), name(area, first + k, extension), extension);
        }
        counts.files += numbers[i];
    }
    return counts;
}

TreeCounts TreeMaker::home(const std::string& folder, std::size_t files) {
    using Names = Area::Names;
    const Area areas[] = {
        {"Documents",
         190,
         6,
         6,
         Names::words,
         {"pdf", "pdf", "pdf", "docx", "docx", "xlsx", "pptx", "odt", "txt", "txt", "md", "csv",
          "jpg", "png", "eml", "zip"}},
        {"Pictures/Photos",
         190,
         24,
         3,
         Names::camera,
         {"JPG", "jpg", "jpg", "jpg", "HEIC", "heic", "heic", "CR2", "MOV", "png", "xmp"}},
        {"Pictures/Screenshots", 10, 400, 1, Names::words, {"png"}},
        {"Music", 110, 9, 2, Names::tracks, {"mp3", "mp3", "mp3", "flac", "m4a", "jpg"}},
        {"Videos", 8, 8, 2, Names::words, {"mp4", "mp4", "mkv", "mov", "srt"}},
        {"Projects", 390, 5, 9, Names::code, {"cpp",  "h",   "h",  "c",    "py",  "js",   "ts",
                                              "java", "rs",  "go", "json", "md",  "html", "css",
                                              "txt",  "yml", "sh", "png",  "svg", ""}},
        {"Downloads",
         35,
         12,
         3,
         Names::words,
         {"pdf", "pdf", "zip", "jpg", "png", "deb", "iso", "mp4", "tar.gz", "docx", "epub",
          "html"}},
        {"Books", 12, 10, 2, Names::words, {"epub", "pdf", "mobi"}},
        {"Desktop", 5, 10, 2, Names::words, {"pdf", "png", "txt", "docx", "desktop"}},
        {"Archive/Old Laptop",
         28,
         7,
         5,
         Names::words,
         {"doc", "xls", "ppt", "pdf", "jpg", "txt", "zip"}},
        {".cache/thumbnails", 10, 12, 2, Names::hashes, {"png"}},
        {".config", 4, 3, 3, Names::code, {"json", "conf", "ini", ""}},
        {".local/share", 8, 5, 4, Names::code, {"sqlite", "json", "desktop", "png", ""}}};
    makeFolder(folder);
    TreeCounts counts;
    for (const Area& area : areas) {
        const TreeCounts added = plant(folder, area, files * area.share / 1000);
        counts.files += added.files;
        counts.folders += added.folders;
    }
    return counts;
}

TreeCounts TreeMaker::flat(const std::string& folder, std::size_t files) {
    const Area area{"",
                    1000,
                    files,
                    0,
                    Area::Names::words,
                    {"pdf", "jpg", "png", "txt", "docx", "mp3", "zip", "cpp", "xlsx", "mp4"}};
    makeFolder(folder);
    return plant(folder, area, files);
}

}  // namespace tarn::bench
