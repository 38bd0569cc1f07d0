#include "Tarn/model/PreviewFolderSize.h"

#include <set>
#include <utility>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/TreeWalker.h"

namespace tarn {
namespace {

class Measure final : public TreeWalker::Visitor {
public:
    explicit Measure(std::size_t threads) : sums_(threads) {}

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        PreviewFolderSize& sum = sums_[folder.worker()];
        for (const FolderEntry& entry : entries) {
            ++sum.items;
            if (entry.type == FileType::directory) folder.enter(entry.name);
            if (entry.type != FileType::file) continue;
            const auto facts = folder.reader().attributes(entry.name, Links::keep);
            if (!facts) continue;
            if (facts->links > 1 && !seen_.lock()->emplace(facts->device, facts->inode).second)
                continue;
            sum.bytes += facts->size;
        }
    }
    void unreadable(const URL&, int) override { *isWhole_.lock() = false; }

    PreviewFolderSize sum() {
        PreviewFolderSize all;
        for (const PreviewFolderSize& one : sums_) {
            all.bytes += one.bytes;
            all.items += one.items;
        }
        all.isWhole = *isWhole_.lock();
        return all;
    }

private:
    std::vector<PreviewFolderSize> sums_;  ///< One for each thread.
    Guarded<std::set<std::pair<std::uint64_t, std::uint64_t>>> seen_;
    Guarded<bool> isWhole_{true};
};

}  // namespace

PreviewFolderSize PreviewFolderSize::measure(const URL& folder, const CancelToken& token) {
    TreeWalker walker({folder});
    Measure measure(walker.threadCount());
    walker.walk(measure, token);
    return measure.sum();
}

}  // namespace tarn
