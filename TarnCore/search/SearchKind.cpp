#include "TarnCore/search/SearchKind.h"

#include <cstddef>

namespace tarn::SearchKinds {
namespace {

struct Names {
    std::string_view rawValue;
    std::string_view label;
};

/// In the order of the enumeration.
constexpr std::array<Names, allSearchKinds.size()> names = {{
    {"pdf", "PDFs"},
    {"image", "Images"},
    {"photo", "Photos"},
    {"screenshot", "Screenshots"},
    {"screenRecording", "Screen recordings"},
    {"video", "Videos"},
    {"audio", "Music & audio"},
    {"document", "Documents"},
    {"spreadsheet", "Spreadsheets"},
    {"presentation", "Presentations"},
    {"archive", "Archives"},
    {"installer", "Installers"},
    {"raw", "RAW photos"},
    {"code", "Code"},
    {"folder", "Folders"},
    {"app", "Apps"},
    {"text", "Text files"},
    {"font", "Fonts"},
    {"ebook", "eBooks"},
}};

}  // namespace

std::string_view rawValue(SearchKind kind) {
    return names[static_cast<std::size_t>(kind)].rawValue;
}

std::string_view label(SearchKind kind) { return names[static_cast<std::size_t>(kind)].label; }

std::optional<SearchKind> fromRawValue(std::string_view raw) {
    for (const SearchKind kind : allSearchKinds) {
        if (rawValue(kind) == raw) return kind;
    }
    return std::nullopt;
}

}  // namespace tarn::SearchKinds
