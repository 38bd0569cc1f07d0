#include "TarnCore/search/SourceMatch.h"

#include <algorithm>

#include "TarnCore/base/Text.h"
#include "TarnCore/sources/KnownServices.h"
#include "TarnCore/sources/SourceResolver.h"

namespace tarn::SourceMatch {
namespace {

bool isWordByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           (static_cast<unsigned char>(c) & 0x80) != 0;
}

bool containsWords(std::string_view text, std::string_view words) {
    for (std::size_t at = text.find(words); at != text.npos; at = text.find(words, at + 1)) {
        const std::size_t end = at + words.size();
        if ((at == 0 || !isWordByte(text[at - 1])) &&
            (end == text.size() || !isWordByte(text[end])))
            return true;
    }
    return false;
}

}  // namespace

bool matches(std::string_view wanted, const std::optional<DownloadSource>& source,
             const std::vector<std::string>& whereFroms) {
    const std::string folded = Text::folded(wanted);
    const bool isKnown = KnownServices::canonicalName(wanted).has_value();
    const auto occursIn = [&](std::string_view text) {
        const std::string foldedText = Text::folded(text);
        return isKnown ? containsWords(foldedText, folded)
                       : foldedText.find(folded) != foldedText.npos;
    };
    if (source &&
        (occursIn(source->name) || occursIn(source->domain) || occursIn(source->app.value_or(""))))
        return true;
    return !isKnown && std::any_of(whereFroms.begin(), whereFroms.end(), occursIn);
}

bool matches(std::string_view wanted, const URL& url) {
    const auto whereFroms = SourceResolver::whereFroms(url);
    return matches(wanted, SourceResolver::source(whereFroms, SourceResolver::quarantineAgent(url)),
                   whereFroms);
}

}  // namespace tarn::SourceMatch
