#include "TarnCore/tags/TagWalk.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "TarnCore/files/FileTags.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/TreeWalker.h"

namespace tarn::TagWalk {
namespace {

class Visitor final : public TreeWalker::Visitor {
public:
    Visitor(const std::function<bool(const std::string&)>& matches, std::size_t threadCount)
        : matches_(matches), found_(threadCount) {}

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        const URL url = folder.url();
        if (url == caches_ || entries.empty()) return;
        // The folders of a Trash are not in it themselves, but what they hold is.
        if (Paths::isInTrash(url.appending(entries.front().view()))) return;
        for (const FolderEntry& entry : entries) {
            if (entry.type == FileType::directory) folder.enter(entry.view());
            const bool isLink = entry.type == FileType::symlink;
            const URL child = url.appending(entry.view());
            auto stored =
                FileTags::read(child, isLink ? FileTags::Kind::link : FileTags::Kind::other);
            if (std::ranges::any_of(stored, matches_)) {
                found_[folder.worker()].push_back({child, std::move(stored)});
            }
        }
    }

    std::vector<Tagged> found() {
        std::vector<Tagged> all;
        for (auto& part : found_) std::ranges::move(part, std::back_inserter(all));
        return all;
    }

private:
    const std::function<bool(const std::string&)>& matches_;
    const URL caches_ = Paths::cacheHome();
    std::vector<std::vector<Tagged>> found_;  ///< By worker.
};

}  // namespace

std::vector<Tagged> find(const std::function<bool(const std::string& stored)>& matches,
                         const CancelToken& token) {
    TreeWalker walker({Paths::home()});
    Visitor visitor(matches, walker.threadCount());
    walker.walk(visitor, token);
    return visitor.found();
}

}  // namespace tarn::TagWalk
