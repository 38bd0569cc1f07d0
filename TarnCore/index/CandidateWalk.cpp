#include "TarnCore/index/CandidateWalk.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Says that everything beside and below it can be made again (https://bford.info/cachedir/).
constexpr std::string_view cacheTag = "CACHEDIR.TAG";
constexpr std::string_view cacheSignature = "Signature: 8a477f597d28d172789f06886806bc55";

bool isCacheTag(const URL& file) {
    try {
        return Platform::current().files->readFile(file, cacheSignature.size()) == cacheSignature;
    } catch (const std::system_error&) {
        return false;
    }
}

/// Says that nothing here is for collections. Cards of cameras and telephones write it in any case.
bool isNoMedia(std::string_view name) { return Text::lowercasedASCII(name) == ".nomedia"; }

}  // namespace

CandidateWalk::CandidateWalk(std::vector<URL> roots, const ContentIndexer::Options& options,
                             const Files& known, const ChangedPaths* only, std::size_t threads)
    : roots_(std::move(roots)),
      options_(options),
      known_(known),
      only_(only),
      home_(Paths::home()),
      workers_(threads) {}

bool CandidateWalk::isToBeEntered(const TreeWalker::Folder& folder, std::string_view name) const {
    const URL url = URL::fromPath(folder.pathOf(name));
    if (only_ && !only_->lieBelow(url.path()) && !only_->hold(url.path())) return false;
    if (Paths::isAppDataFolder(url, /*includingPackages=*/true)) return false;
    // Who names such a folder as a root means it.
    if (Paths::isAppData(url, home_) && !Paths::isAppData(roots_[folder.root()], home_))
        return false;
    if (Paths::isInTrash(url) && !Paths::isInTrash(roots_[folder.root()])) return false;
    return std::ranges::find(options_.excluded, url) == options_.excluded.end();
}

void CandidateWalk::visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) {
    Worker& worker = workers_[folder.worker()];
    for (const FolderEntry& entry : entries) {
        const std::string_view name = entry.view();
        if (name[0] == '.') {
            if (name == ".hidden") worker.hasHiddenList = true;
            if (isNoMedia(name)) worker.isLeftOut = true;
            continue;
        }
        const bool isFile = entry.type == FileType::file;
        if (isFile && name == cacheTag && isCacheTag(URL::fromPath(folder.pathOf(name))))
            worker.isLeftOut = true;
        if (worker.isLeftOut || (!isFile && entry.type != FileType::directory)) continue;
        const auto method = TextExtractor::method(name);
        const bool isDocument = method && (isFile || (*method == TextExtractor::Method::rich &&
                                                      ResourceReader::isPackageName(name)));
        if (isDocument && (options_.ocr || *method != TextExtractor::Method::image))
            worker.files.push_back({std::string(name), *method});
        else if (!isFile && isToBeEntered(folder, name))
            worker.folders.emplace_back(name);
    }
}

void CandidateWalk::leave(TreeWalker::Folder& folder) {
    Worker& worker = workers_[folder.worker()];
    if (!worker.isLeftOut) {
        std::optional<ResourceReader> hidden;
        if (worker.hasHiddenList) hidden.emplace(folder.url(), true);
        const auto isShown = [&](const std::string& name) {
            return !hidden || !hidden->isHidden(name);
        };
        for (const Worker::File& file : worker.files)
            if (isShown(file.name)) look(folder, file, worker);
        for (const std::string& name : worker.folders)
            if (isShown(name)) folder.enter(name);
    }
    worker.files.clear();
    worker.folders.clear();
    worker.hasHiddenList = false;
    worker.isLeftOut = false;
}

void CandidateWalk::look(const TreeWalker::Folder& folder, const Worker::File& file,
                         Worker& worker) const {
    const std::string path = folder.pathOf(file.name);
    if (!Text::isValidUTF8(path) || (only_ && !only_->hold(path))) return;
    const auto attributes = folder.reader().attributes(file.name.c_str(), Links::keep);
    if (!attributes) return;
    const TextIndex::Known now = TextIndex::Known::of(*attributes);
    const auto known = known_.find(path);
    if (known != known_.end() && known->second == now) return;
    worker.found.push_back({URL::fromPath(path), now.mtime, now.size, file.method});
}

std::vector<ContentIndexer::Candidate> CandidateWalk::found() {
    std::vector<ContentIndexer::Candidate> all;
    for (Worker& worker : workers_) std::ranges::move(worker.found, std::back_inserter(all));
    return all;
}

}  // namespace tarn
