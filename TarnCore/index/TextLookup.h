#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// What a search asks of an index of texts. Callable from any thread.
class TextLookup {
public:
    virtual ~TextLookup() = default;
    /// The files below `roots` whose text holds every one of the phrases; with `imagesOnly` the
    /// pictures among them, where no phrases stand for any text at all.
    virtual std::vector<URL> filesContaining(const std::vector<std::string>& phrases,
                                             const std::vector<URL>& roots, bool imagesOnly,
                                             const CancelToken& token) const = 0;
    /// The text known for a file as it is now; absent when it was not indexed or has changed.
    virtual std::optional<std::string> text(const URL& url) const = 0;
};

}  // namespace tarn
