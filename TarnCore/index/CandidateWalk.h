#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/index/ChangedPaths.h"
#include "TarnCore/index/ContentIndexer.h"
#include "TarnCore/index/TextIndex.h"

namespace tarn {

/// The walk that looks for what a ContentIndexer has to read. Called by a TreeWalker.
class CandidateWalk final : public TreeWalker::Visitor {
public:
    using Files = std::unordered_map<std::string, TextIndex::Known>;

    /// `known` is what need not be read again; `only`, when given, limits the walk.
    CandidateWalk(std::vector<URL> roots, const ContentIndexer::Options& options,
                  const Files& known, const ChangedPaths* only, std::size_t threads);

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override;
    void leave(TreeWalker::Folder& folder) override;

    /// In no order.
    std::vector<ContentIndexer::Candidate> found();

private:
    /// What a thread keeps of the folder that it reads.
    struct Worker {
        struct File {
            std::string name;
            TextExtractor::Method method;
        };
        std::vector<File> files;
        std::vector<std::string> folders;
        bool hasHiddenList = false;
        bool isLeftOut = false;
        std::vector<ContentIndexer::Candidate> found;
    };
    bool isToBeEntered(const TreeWalker::Folder& folder, std::string_view name) const;
    void look(const TreeWalker::Folder& folder, const Worker::File& file, Worker& worker) const;

    const std::vector<URL> roots_;
    const ContentIndexer::Options& options_;
    const Files& known_;
    const ChangedPaths* const only_;
    const URL home_;
    std::vector<Worker> workers_;
};

}  // namespace tarn
