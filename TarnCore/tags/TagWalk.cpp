#include "TarnCore/tags/TagWalk.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/TreeWalker.h"

namespace tarn::TagWalk {
namespace {

class Visitor final : public TreeWalker::Visitor {
public:
    using Matches = std::function<bool(const std::string&)>;
    using OnFound = std::function<void(std::vector<Tagged>)>;

    Visitor(const Matches& matches, const OnFound& onFound)
        : matches_(matches), onFound_(onFound) {}

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        const URL url = folder.url();
        if (url == caches_ || entries.empty()) return;
        // The folders of a Trash are not in it themselves, but what they hold is.
        if (Paths::isInTrash(url.appending(entries.front().view()))) return;
        std::vector<Tagged> found;
        for (const FolderEntry& entry : entries) {
            if (entry.type == FileType::directory) folder.enter(entry.view());
            const bool isLink = entry.type == FileType::symlink;
            const URL child = url.appending(entry.view());
            auto stored =
                FileTags::read(child, isLink ? FileTags::Kind::link : FileTags::Kind::other);
            if (std::ranges::any_of(stored, matches_)) found.push_back({child, std::move(stored)});
        }
        if (!found.empty()) onFound_(std::move(found));
    }

private:
    const Matches& matches_;
    const OnFound& onFound_;
    const URL caches_ = Paths::cacheHome();
};

}  // namespace

void walk(const std::function<bool(const std::string& stored)>& matches,
          const std::vector<URL>& roots, const std::function<void(std::vector<Tagged>)>& onFound,
          const CancelToken& token) {
    Visitor visitor(matches, onFound);
    TreeWalker(roots).walk(visitor, token);
}

std::vector<Tagged> find(const std::function<bool(const std::string& stored)>& matches,
                         const CancelToken& token) {
    Guarded<std::vector<Tagged>> all;
    walk(
        matches, {Paths::home()},
        [&all](std::vector<Tagged> found) {
            std::ranges::move(found, std::back_inserter(*all.lock()));
        },
        token);
    return std::move(*all.lock());
}

}  // namespace tarn::TagWalk
