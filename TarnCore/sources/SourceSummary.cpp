#include "TarnCore/sources/SourceSummary.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <span>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/sources/SourceResolver.h"

namespace tarn::SourceSummaries {
namespace {

using Totals = std::map<std::string, SourceSummary>;

class Visitor final : public TreeWalker::Visitor {
public:
    Visitor(std::size_t maxDepth, std::size_t limit, CancelToken token)
        : maxDepth_(maxDepth), limit_(limit), token_(std::move(token)) {}

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        for (const FolderEntry& entry : entries) {
            const std::string_view name = entry.view();
            if (name.front() == '.') continue;
            if (entry.type == FileType::directory) {
                if (folder.depth() < maxDepth_ && isEntered(folder, name)) folder.enter(name);
            } else if (entry.type == FileType::file) {
                if (examined_.fetch_add(1, std::memory_order_relaxed) >= limit_) return;
                if (token_.isCancelled()) return;
                add(folder, name);
            }
        }
    }

    Totals totals() { return std::move(*totals_.lock()); }

private:
    bool isEntered(const TreeWalker::Folder& folder, std::string_view name) const {
        const URL url = URL::fromPath(folder.pathOf(name));
        return !ResourceReader::isPackageName(name) && !Paths::isAppData(url, home_) &&
               !Paths::isInTrash(url.appending("any"));
    }
    void add(TreeWalker::Folder& folder, std::string_view name) {
        const auto source = SourceResolver::source(URL::fromPath(folder.pathOf(name)));
        if (!source) return;
        const auto attributes = folder.reader().attributes(std::string(name).c_str(), Links::keep);
        const std::int64_t size = attributes ? attributes->size : 0;
        const auto totals = totals_.lock();
        for (const std::string& group : source->groups()) {
            SourceSummary& summary = (*totals)[group];
            summary.name = group;
            ++summary.count;
            summary.bytes += size;
            summary.isApp = source->domain.empty() || group != source->name;
        }
    }

    const std::size_t maxDepth_;
    const std::size_t limit_;
    const CancelToken token_;
    const URL home_ = Paths::home();
    std::atomic<std::size_t> examined_{0};
    Guarded<Totals> totals_;
};

}  // namespace

std::vector<SourceSummary> summarize(const std::vector<URL>& roots, std::size_t maxDepth,
                                     std::size_t limit, const CancelToken& token) {
    Visitor visitor(maxDepth, limit, token);
    TreeWalker(roots).walk(visitor, token);
    std::vector<SourceSummary> all;
    for (auto& [name, summary] : visitor.totals()) all.push_back(std::move(summary));
    std::ranges::stable_sort(all, [](const SourceSummary& a, const SourceSummary& b) {
        return a.count != b.count ? a.count > b.count : Collation::compare(a.name, b.name) < 0;
    });
    return all;
}

}  // namespace tarn::SourceSummaries
