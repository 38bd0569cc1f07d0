#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// Answers metadata query strings ("kMDItemFSName == \"*tax*\"cd") from an index of the user's
/// files. Callable from any thread.
class MetadataIndex {
public:
    virtual ~MetadataIndex() = default;
    /// Hands the files below `roots` that satisfy `query` to `onPaths`, in batches, from the
    /// calling thread; returns when there are no more or `token` is set. Throws tarn::Error.
    virtual void find(const std::string& query, const std::vector<URL>& roots,
                      const CancelToken& token,
                      const std::function<void(const std::vector<URL>&)>& onPaths) const = 0;
};

}  // namespace tarn
