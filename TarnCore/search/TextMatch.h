#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/search/PhraseFinder.h"

namespace tarn {

/// Why a search found a file, and the place in its text that says so.
struct TextMatch {
    enum class Reason { name, text, textInImage };

    Reason reason = Reason::name;
    /// About a line of the text around the first place, valid UTF-8 without line breaks and with
    /// single blanks, “…” where it was cut; empty when there is nothing to show.
    std::string snippet;
    std::vector<TextRange> ranges;  ///< What matched in the snippet: bytes, in order, apart.

    bool operator==(const TextMatch&) const = default;

    /// "name", "text", "textInImage".
    static std::string_view rawValue(Reason reason);
};

/// The line of a text that shows where phrases are in it.
namespace Snippet {

inline constexpr std::size_t length = 120;  ///< Characters, unless a phrase is longer.

/// Around the first place of any of the phrases, with every place in it marked. Without phrases,
/// the beginning of the text; empty when they are nowhere.
TextMatch of(std::string_view text, std::span<const PhraseFinder> phrases);

}  // namespace Snippet

}  // namespace tarn
