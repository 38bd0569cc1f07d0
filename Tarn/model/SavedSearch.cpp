#include "Tarn/model/SavedSearch.h"

#include <algorithm>
#include <vector>

#include "Tarn/model/PaneModel.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/search/QueryParser.h"

namespace tarn {
namespace {

/// What it asks for, however it was typed.
SearchQuery meaning(SearchQuery query) {
    query.raw.clear();
    return query;
}

/// The text without the fewest words that stand together and make up a chip.
std::string without(const QueryParser& parser, const std::string& text, ChipCategory category) {
    const SearchQuery wanted = meaning(parser.parse(text).removing(category));
    std::vector<std::string> words;
    for (const std::string_view word : Text::split(text, ' ')) words.emplace_back(word);
    for (std::size_t count = 1; count <= words.size(); ++count) {
        for (std::size_t first = 0; first + count <= words.size(); ++first) {
            std::vector<std::string> left = words;
            const auto begin = left.begin() + static_cast<std::ptrdiff_t>(first);
            left.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
            std::string rest = Text::join(left, " ");
            if (meaning(parser.parse(rest)) == wanted) return rest;
        }
    }
    return text;
}

}  // namespace

SavedSearch SavedSearch::of(const PaneModel& pane) {
    SavedSearch saved{pane.searchText(), pane.searchScope()};
    const QueryParser parser = QueryParser::current();
    if (pane.query()) {
        const std::vector<SearchChip> kept = pane.query()->chips();
        for (const SearchChip& chip : parser.parse(saved.text).chips()) {
            if (std::ranges::find(kept, chip.category, &SearchChip::category) == kept.end())
                saved.text = without(parser, saved.text, chip.category);
        }
    }
    if (saved.scope != SearchScopeSetting::currentFolder) return saved;
    saved.scope = SearchScopeSetting::home;
    const Location& shown = pane.location();
    if (!shown.isFolder() || shown.url == Paths::home() || parser.parse(saved.text).place)
        return saved;
    const std::string placed = saved.text + " in \"" + Paths::abbreviate(shown.url) + '"';
    // Some paths cannot be written between quotation marks.
    const auto place = parser.parse(placed).place;
    if (place && meaning(parser.parse(placed).removing(ChipCategory::place)) ==
                     meaning(parser.parse(saved.text)))
        saved.text = placed;
    if (!shown.url.isInside(Paths::home())) saved.scope = SearchScopeSetting::thisMac;
    return saved;
}

}  // namespace tarn
