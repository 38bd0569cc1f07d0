#include "TarnCore/search/SearchRanking.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"

namespace tarn::SearchRanking {
namespace {

constexpr int tierOfOthers = 3;
constexpr float worst = -std::numeric_limits<float>::infinity();

/// What a query looks like as a name: its words, and all that was typed ("report 2024.pdf" has
/// no words when the extension was understood, but may still be a name).
std::vector<std::string> queryForms(const SearchQuery& query) {
    std::vector<std::string> forms;
    for (std::string form : {normalize(Text::join(query.terms, " ")), normalize(query.raw)})
        if (!form.empty() && std::find(forms.begin(), forms.end(), form) == forms.end())
            forms.push_back(std::move(form));
    return forms;
}

bool containsEveryWord(const std::string& name, const std::string& words) {
    const auto pieces = Text::split(words, ' ');
    return std::all_of(pieces.begin(), pieces.end(),
                       [&](std::string_view word) { return name.find(word) != name.npos; });
}

int tier(std::string_view name, const std::vector<std::string>& forms) {
    if (forms.empty()) return tierOfOthers;
    const std::string_view ext = pathExtension(name);
    const std::string_view stem = ext.empty() ? name : name.substr(0, name.size() - ext.size() - 1);
    const std::string names[] = {normalize(stem), normalize(name)};
    int best = tierOfOthers;
    for (const std::string& form : forms) {
        for (const std::string& candidate : names) {
            if (candidate == form) return 0;
            if (candidate.starts_with(form))
                best = std::min(best, 1);
            else if (containsEveryWord(candidate, form))
                best = std::min(best, 2);
        }
    }
    return best;
}

}  // namespace

std::string normalize(std::string_view text) {
    const std::string folded = Text::folded(text);
    std::string out;
    out.reserve(folded.size());
    bool isBetweenWords = false;
    for (std::size_t i = 0; i < folded.size();) {
        const std::size_t start = i;
        const char32_t c = Text::nextCharacter(folded, i);
        if (c == '_' || c == '-' || Text::isSpace(c)) {
            isBetweenWords = !out.empty();
            continue;
        }
        if (isBetweenWords) out += ' ';
        isBetweenWords = false;
        out.append(folded, start, i - start);
    }
    return out;
}

int tier(std::string_view name, const SearchQuery& query) { return tier(name, queryForms(query)); }

std::vector<FileItem> rank(std::vector<FileItem> items, const SearchQuery& query,
                           const std::function<std::optional<float>(const FileItem&)>& imageScore) {
    struct Key {
        std::size_t index;
        int tier;
        float score;
    };
    const auto forms = queryForms(query);
    std::vector<Key> keys;
    keys.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const int itemTier = tier(items[i].name, forms);
        float score = 0;
        // Elsewhere the words in the name decide, and the order of arrival after them.
        if (itemTier == tierOfOthers) {
            score = (imageScore ? imageScore(items[i]) : std::nullopt).value_or(worst);
            if (std::isnan(score)) score = worst;  // Would leave the order undefined.
        }
        keys.push_back({i, itemTier, score});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.tier != b.tier ? a.tier < b.tier : a.score > b.score;
    });
    std::vector<FileItem> ranked;
    ranked.reserve(items.size());
    for (const Key& key : keys) ranked.push_back(std::move(items[key.index]));
    return ranked;
}

}  // namespace tarn::SearchRanking
