#include "TarnCore/search/SearchWalk.h"

#include <iterator>
#include <system_error>
#include <utility>

namespace tarn {
namespace {

/// Names kept before they are tested: a folder of a million matching files must neither fill the
/// memory nor hold its first results back until its end.
constexpr std::size_t mostCandidates = 256;

/// One more of those in use; strings keep their room from folder to folder.
template <class Item>
Item& another(std::vector<Item>& items, std::size_t& count) {
    if (count == items.size()) items.emplace_back();
    return items[count++];
}

}  // namespace

SearchWalk::SearchWalk(const QueryMatcher& matcher, const IndexedContent& indexed,
                       SearchResults& results, const Rules& rules, std::size_t threads,
                       CancelToken token, SearchCounts& counts)
    : matcher_(matcher),
      indexed_(indexed),
      results_(results),
      includeHidden_(rules.includeHidden),
      keys_(rules.keys),
      readsTexts_(!matcher.phrases().empty()),
      checksNames_(!readsTexts_ || !matcher.mayFindTermsInText()),
      token_(std::move(token)),
      counts_(counts),
      workers_(threads) {}

void SearchWalk::visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) {
    Worker& worker = workers_[folder.worker()];
    for (const FolderEntry& entry : entries) {
        const std::string_view name = entry.view();
        if (name[0] == '.') {
            if (name == ".hidden") worker.hasHiddenList = true;
            if (!includeHidden_) continue;
        }
        if (entry.type == FileType::directory && isToBeEntered(folder, name))
            another(worker.subfolders, worker.subfolderCount).assign(name);
        if (!matcher_.mayMatch(name, entry.type, checksNames_) || !mayHaveTerms(name)) continue;
        Candidate& candidate = another(worker.candidates, worker.candidateCount);
        candidate.name.assign(name);
        candidate.type = entry.type;
        if (worker.candidateCount >= mostCandidates) test(folder, worker);
    }
    counts_.visited.fetch_add(static_cast<std::int64_t>(entries.size()), std::memory_order_relaxed);
    results_.deliverIfDue();
}

void SearchWalk::leave(TreeWalker::Folder& folder) {
    Worker& worker = workers_[folder.worker()];
    // All names have been seen now.
    worker.mayHaveHiddenList = worker.hasHiddenList;
    test(folder, worker);
    const bool hidesNames = worker.hasHiddenList && !includeHidden_;
    for (std::size_t i = 0; i < worker.subfolderCount; ++i) {
        const std::string& name = worker.subfolders[i];
        if (!hidesNames || !resources(folder, worker).isHidden(name)) folder.enter(name);
    }
    worker.subfolderCount = 0;
    worker.hasHiddenList = false;
    worker.mayHaveHiddenList = true;
    worker.resources.reset();
    results_.deliverIfDue();
}

bool SearchWalk::isToBeEntered(const TreeWalker::Folder& folder, std::string_view name) const {
    if (folder.depth() == 0 && name == "Library") return false;
    if (ResourceReader::isPackageName(name)) return false;
    return !results_.isExcludedFolder(folder.pathOf(name));
}

const ResourceReader& SearchWalk::resources(const TreeWalker::Folder& folder, Worker& worker) {
    if (!worker.resources) worker.resources.emplace(folder.url(), worker.mayHaveHiddenList);
    return *worker.resources;
}

void SearchWalk::test(const TreeWalker::Folder& folder, Worker& worker) {
    std::vector<FileItem> found;
    for (std::size_t i = 0; i < worker.candidateCount && !token_.isCancelled(); ++i)
        if (auto item = match(folder, worker.candidates[i], worker))
            found.push_back(std::move(*item));
    worker.candidateCount = 0;
    if (!found.empty()) results_.add(std::move(found));
}

/// Nothing else is to be known before the text of a file is read where it lies.
bool SearchWalk::needsOnlyText(const TreeWalker::Folder& folder, const Candidate& candidate) const {
    return readsTexts_ && candidate.type == FileType::file && !matcher_.readsFacts() &&
           !matcher_.asksAttributes() &&
           matcher_.texts().wayOfReadable(candidate.name) == FileTexts::Way::plain &&
           !(indexed_.mayAnswer() && indexed_.mayAnswer(folder.pathOf(candidate.name)));
}

/// Of plain text, which is looked at where it lies.
bool SearchWalk::hasTextHere(const TreeWalker::Folder& folder, const std::string& name,
                             Worker& worker) const {
    FileTexts::Answer answer = FileTexts::Answer::no;
    try {
        answer = FileTexts::test(
            folder.reader().readFile(name.c_str(), FileTexts::plainBytes(), worker.bytes),
            [&](std::string_view text, bool& isUTF8) {
                return matcher_.textMatches(name, text, isUTF8);
            });
    } catch (const std::system_error&) {
        return false;
    }
    if (answer == FileTexts::Answer::tooLarge) ++counts_.tooLarge;
    return answer == FileTexts::Answer::yes;
}

std::optional<FileItem> SearchWalk::match(const TreeWalker::Folder& folder,
                                          const Candidate& candidate, Worker& worker) const {
    const std::string& name = candidate.name;
    // Most files have none of the phrases, and an item takes as long to make as a page to read.
    const bool readsTextAtOnce = needsOnlyText(folder, candidate);
    if (readsTextAtOnce && !hasTextHere(folder, name, worker)) return std::nullopt;
    const URL url = URL::fromPath(folder.pathOf(name));
    const auto attributes = folder.reader().attributes(name.c_str(), Links::keep);
    if (!attributes || !matcher_.mayMatch(*attributes)) return std::nullopt;
    const bool isPlainFile = attributes->type == FileType::file;
    if (readsTextAtOnce && !isPlainFile) return std::nullopt;
    const bool readsTextFirst =
        !readsTextAtOnce && readsTexts_ && isPlainFile && !matcher_.readsFacts();
    if (readsTextFirst && !hasText(name, url, *attributes, worker)) return std::nullopt;
    const ResourceReader& reader = resources(folder, worker);
    if (!includeHidden_ && reader.isHidden(name)) return std::nullopt;

    std::optional<bool> leadsToFolder;
    if (attributes->type == FileType::symlink)
        if (const auto target = folder.reader().attributes(name.c_str(), Links::follow))
            leadsToFolder = target->type == FileType::directory;
    FileItem item =
        FileItem::make(url, reader.values(url, name, *attributes, leadsToFolder, keys_));
    if (!matcher_.matchesFacts(item, checksNames_)) return std::nullopt;
    if (!readsTexts_ || readsTextAtOnce || readsTextFirst) return item;
    const bool matches = isPlainFile
                             ? hasText(name, url, *attributes, worker)
                             : matcher_.contentMatches(url, item.kind) && matcher_.termsMatch(item);
    return matches ? std::optional(std::move(item)) : std::nullopt;
}

/// Some terms must be in the name also where texts may have the others.
bool SearchWalk::mayHaveTerms(std::string_view name) const {
    return checksNames_ || matcher_.termsMissingFromName(name).has_value();
}

bool SearchWalk::hasText(std::string_view name, const URL& url, const FileAttributes& attributes,
                         Worker& worker) const {
    const FileTexts& texts = matcher_.texts();
    const FileTexts::Way way = texts.wayOfReadable(name);  // mayMatch() has seen to the rest.
    const bool isTooLarge = FileTexts::isTooLarge(name, way, attributes.size);
    // The index knows such a file as one without text.
    if (!isTooLarge && indexed_.answers(url.path(), attributes)) return false;
    if (way == FileTexts::Way::document && !isTooLarge) {
        worker.documents.push_back({url, attributes.size, attributes.modified});
        return false;
    }
    const auto answer = texts.test(
        url, way, attributes.size,
        [&](std::string_view text, bool& isUTF8) {
            return matcher_.textMatches(name, text, isUTF8);
        },
        token_);
    if (answer == FileTexts::Answer::tooLarge) ++counts_.tooLarge;
    return answer == FileTexts::Answer::yes;
}

std::vector<SearchWalk::Document> SearchWalk::takeDocuments() {
    std::vector<Document> documents;
    for (Worker& worker : workers_)
        std::move(worker.documents.begin(), worker.documents.end(), std::back_inserter(documents));
    return documents;
}

}  // namespace tarn
