#pragma once

#include <memory>

#include "TarnCore/index/TextLookup.h"

namespace tarn {

/// A TextIndex as searches ask it. Callable from any thread.
class IndexedTexts final : public TextLookup {
public:
    explicit IndexedTexts(std::shared_ptr<const TextIndex> index);
    /// Of the index of the user. Makes no file: without one, it knows nothing.
    static std::shared_ptr<const IndexedTexts> shared();

    bool filesContaining(const Request& request, const OnHits& onHits,
                         const CancelToken& token) const override;
    std::unordered_map<std::string, TextIndex::Known> known(
        const std::vector<URL>& roots) const override;
    std::optional<std::string> text(const URL& url) const override;

private:
    std::shared_ptr<const TextIndex> index_;
};

}  // namespace tarn
