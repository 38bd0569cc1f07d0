#include "TarnCore/ops/TransferMeasure.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

using Measure = TransferJob::Measure;

/// A walk looks at each pair of its roots.
constexpr std::size_t mostRoots = 64;

class Summing final : public TreeWalker::Visitor {
public:
    Summing(std::size_t roots, std::size_t threads) : sums_(threads, std::vector<Measure>(roots)) {}

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        Measure& sum = sums_[folder.worker()][folder.root()];
        for (const FolderEntry& entry : entries) {
            if (entry.type == FileType::directory) {
                folder.enter(entry.view());
                continue;
            }
            const auto facts = folder.reader().attributes(entry.name, Links::keep);
            if (!facts) continue;
            sum.bytes += facts->size;
            ++sum.items;
        }
    }

    Measure total(std::size_t root) const {
        Measure total;
        for (const auto& thread : sums_) {
            total.bytes += thread[root].bytes;
            total.items += thread[root].items;
        }
        return total;
    }

private:
    std::vector<std::vector<Measure>> sums_;  ///< By thread, then by root.
};

void walk(const std::vector<URL>& roots, std::span<Measure* const> results,
          const CancelToken& token) {
    TreeWalker walker(roots);
    // What is copied is measured, whatever disk it is on.
    walker.setEntersMount([](const Mount& mount) { return !mount.isPseudo; });
    Summing sums(roots.size(), walker.threadCount());
    walker.walk(sums, token);
    for (std::size_t i = 0; i < roots.size(); ++i) *results[i] = sums.total(i);
}

/// A walk reads a folder once, also when it is below two roots.
bool anyInsideAnother(std::vector<URL> urls) {
    // With the slash at its end, everything inside a folder comes right behind it.
    std::ranges::sort(urls, {}, [](const URL& url) { return url.path() + '/'; });
    return std::ranges::adjacent_find(
               urls, [](const URL& a, const URL& b) { return b.isInside(a); }) != urls.end();
}

}  // namespace

std::vector<Measure> measureSources(const std::vector<URL>& sources, const CancelToken& token) {
    std::vector<Measure> measures(sources.size());
    std::vector<URL> folders;
    std::vector<Measure*> results;
    for (std::size_t i = 0; i < sources.size() && !token.isCancelled(); ++i) {
        const auto facts = Platform::current().files->attributes(sources[i], Links::keep);
        if (!facts) continue;
        if (facts->type == FileType::directory) {
            folders.push_back(sources[i]);
            results.push_back(&measures[i]);
        } else {
            measures[i] = {facts->size, 1};
        }
    }
    const std::size_t together = anyInsideAnother(folders) ? 1 : mostRoots;
    for (std::size_t i = 0; i < folders.size() && !token.isCancelled(); i += together) {
        const std::size_t count = std::min(together, folders.size() - i);
        const auto first = folders.begin() + static_cast<std::ptrdiff_t>(i);
        walk({first, first + static_cast<std::ptrdiff_t>(count)},
             std::span(results).subspan(i, count), token);
    }
    return measures;
}

TransferJob::Measure TransferJob::measure(const URL& url) { return measureSources({url}, {})[0]; }

}  // namespace tarn
