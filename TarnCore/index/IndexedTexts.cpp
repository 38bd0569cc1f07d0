#include "TarnCore/index/IndexedTexts.h"

#include <utility>

#include "TarnCore/platform/Platform.h"

namespace tarn {

IndexedTexts::IndexedTexts(std::shared_ptr<const TextIndex> index) : index_(std::move(index)) {}

std::shared_ptr<const IndexedTexts> IndexedTexts::shared() {
    return std::make_shared<const IndexedTexts>(TextIndex::shared());
}

bool IndexedTexts::filesContaining(const Request& request, const OnHits& onHits,
                                   const CancelToken& token) const {
    TextIndex::Scope scope;
    scope.under = request.roots;
    scope.imagesOnly = request.imagesOnly;
    scope.lastWordIsPrefix = request.lastWordIsPrefix;
    const auto handOn = [&](std::vector<TextIndex::Hit> found) {
        std::vector<Hit> hits;
        hits.reserve(found.size());
        for (TextIndex::Hit& hit : found)
            hits.push_back({URL::fromPath(std::move(hit.path)), hit.known});
        onHits(std::move(hits));
    };
    return index_->hits(request.phrases, scope, handOn, token);
}

std::unordered_map<std::string, TextIndex::Known> IndexedTexts::known(
    const std::vector<URL>& roots) const {
    return index_->known(roots);
}

std::optional<std::string> IndexedTexts::text(const URL& url) const {
    const auto known = index_->known(url.path());
    if (!known) return std::nullopt;
    const auto attributes = Platform::current().files->attributes(url, Links::keep);
    if (!attributes || *known != TextIndex::Known::of(*attributes)) return std::nullopt;
    return index_->text(url.path());
}

}  // namespace tarn
