#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextIndex.h"

namespace tarn {

/// What a search asks of an index of texts. Callable from any thread.
class TextLookup {
public:
    virtual ~TextLookup() = default;

    struct Request {
        std::vector<std::string> phrases;
        std::vector<URL> roots;         ///< Below which to look.
        bool imagesOnly = false;        ///< Without phrases: pictures with any text at all.
        bool lastWordIsPrefix = false;  ///< The last word is still being typed.
    };
    /// A file as it was when its text was read; it may have changed or gone since.
    struct Hit {
        URL url;
        TextIndex::Known state;
    };
    /// The files whose text holds every one of the phrases, as words that stand side by side: some
    /// at a time, while others are looked for. `onHits` is called on this thread, and asks nothing
    /// of the lookup. False when not all of them could be found: the index is damaged, or the token
    /// was set.
    using OnHits = std::function<void(std::vector<Hit>)>;
    virtual bool filesContaining(const Request& request, const OnHits& onHits,
                                 const CancelToken& token) const = 0;

    /// Every file below the roots that was read, by its path.
    virtual std::unordered_map<std::string, TextIndex::Known> known(
        const std::vector<URL>& roots) const = 0;

    /// The text known for a file as it is now; absent when it was not indexed or has changed.
    virtual std::optional<std::string> text(const URL& url) const = 0;

    /// Whether the index finds every place that the phrase stands at. It cannot where words are
    /// written without blanks between them, nor without a letter or a digit.
    static bool knowsWordsOf(const std::string& phrase);
};

}  // namespace tarn
