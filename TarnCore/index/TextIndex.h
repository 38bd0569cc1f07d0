#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The text inside files, searchable. Callable from any thread.
class TextIndex {
public:
    virtual ~TextIndex() = default;
    /// The files whose text holds every one of the phrases.
    virtual std::vector<URL> filesContaining(const std::vector<std::string>& phrases,
                                             const CancelToken& token) const = 0;
    /// The text known for a file as it is now; absent when it was not indexed or has changed.
    virtual std::optional<std::string> text(const URL& url) const = 0;
};

}  // namespace tarn
