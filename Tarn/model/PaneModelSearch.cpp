// The search in a pane: from typed text to rows.
#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/index/IndexedTexts.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/ops/TrashContents.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/QueryParser.h"

namespace tarn {
void PaneModel::searchTextChanged(const std::string& text) {
    if (text == searchText_) return;
    searchText_ = text;
    searchTimer_.stop();
    if (Text::trimmed(text).empty())
        clearSearch(false);
    else
        searchTimer_.start();
}

void PaneModel::setSearchText(const std::string& text) {
    searchText_ = text;
    searchTimer_.stop();
    runSearch();
}

void PaneModel::clearSearch(bool reload) {
    searchTimer_.stop();
    const bool hadText = !searchText_.empty() || query_;
    searchText_.clear();
    removedChips_.clear();
    query_.reset();
    search_.cancel();
    if (showsResults_) {
        showsResults_ = false;
        arrange();
    }
    if (hadText) {
        emit searchChanged();
        emit stateChanged();
    }
    if (reload) this->reload();
}

SearchQuery PaneModel::parsed(const std::string& text) const {
    const Locale locale = Locale::current();
    const QueryParser parser(Platform::current().clock->now(), Calendar::current(locale), locale);
    return parser.parse(text);
}

void PaneModel::runSearch() {
    if (Text::trimmed(searchText_).empty()) {
        clearSearch(false);
        return;
    }
    SearchQuery query = parsed(searchText_);
    // What was removed stays removed while the text around it grows, until its words change.
    const std::vector<SearchChip> chips = query.chips();
    std::erase_if(removedChips_, [&chips](const SearchChip& removed) {
        return std::find(chips.begin(), chips.end(), removed) == chips.end();
    });
    for (const SearchChip& removed : removedChips_) query = query.removing(removed.category);
    query_ = std::move(query);
    isRanked_ = true;
    startSearch();
}

void PaneModel::removeChip(ChipCategory category) {
    if (!query_) return;
    for (const SearchChip& chip : query_->chips()) {
        if (chip.category == category) removedChips_.push_back(chip);
    }
    query_ = query_->removing(category);
    startSearch();
}

void PaneModel::setScope(SearchScopeSetting scope) {
    isScopeChosen_ = true;
    changeScope(scope);
}

void PaneModel::changeScope(SearchScopeSetting scope) {
    if (scope == searchScope_) return;
    searchScope_ = scope;
    emit searchChanged();
    if (query_) startSearch();
}

std::vector<URL> PaneModel::searchRoots() const {
    switch (searchScope_) {
        case SearchScopeSetting::currentFolder:
            if (!location_.isFolder()) return {Paths::home()};
            if (location_.url == Paths::trash()) return TrashContents::possibleFolders();
            return {location_.url};
        case SearchScopeSetting::home:
            return {Paths::home()};
        case SearchScopeSetting::thisMac:
            return {URL()};
    }
    return {};
}

void PaneModel::startSearch() {
    if (query_->isEmpty()) {
        // Nothing but fillers, or every chip is gone: there is nothing to look for.
        search_.cancel();
        if (showsResults_) {
            showsResults_ = false;
            arrange();
        }
    } else {
        SearchOptions options;
        options.query = narrowed(*query_);
        options.roots = searchRoots();
        options.includeHidden = showsHidden_;
        options.hidesTrash = !Paths::isInTrash(options.roots.front());
        if (location_.isFolder()) options.currentFolder = location_.url;
        options.textIndex = IndexedTexts::shared();
        if (!options.query.containing.empty()) options.readDocument = documentReading();
        if (!query_->containing.empty()) {
            // Neither a blank nor a closing quotation mark has ended the phrase.
            options.lastWordIsPrefix = searchText_.ends_with(query_->containing.back());
        }
        const bool isSame = showsResults_ && options.query == searched_ &&
                            options.roots == searchedRoots_ &&
                            options.includeHidden == searchedHidden_;
        if (!isSame) ++searchNumber_;
        searched_ = options.query;
        searchedRoots_ = options.roots;
        searchedHidden_ = options.includeHidden;
        search_.start(std::move(options), sort_, isRanked_, isSame);
    }
    emit searchChanged();
    emit stateChanged();
}

FileTexts::ReadDocument PaneModel::documentReading() {
    if (!documents_) documents_ = std::make_shared<TextReader>(TextReader::Options());
    return FileTexts::reading(documents_);
}

void PaneModel::textsChanged() {
    const bool asksForText = query_ && (!query_->containing.empty() || query_->textInImages);
    // Whoever works with the rows keeps them.
    if (asksForText && !search_.isRunning() && !hasSelection()) startSearch();
}

void PaneModel::resultsChanged() {
    // Rows must not move under a name that is being edited.
    if (renaming_ && showsResults_) {
        missedChanges_ = true;
        return;
    }
    const bool isFirst = !std::exchange(showsResults_, true);
    if (isFirst) selection_.clear();
    arrange();
    if (isFirst) emit stateChanged();
}

const TextMatch* PaneModel::snippet(const FileItem& item) {
    return showsSnippets() ? search_.snippets().match(item) : nullptr;
}

void PaneModel::rowsSeen(int first, int last) {
    if (!showsResults_ && !location_.isQuery()) return;
    const SharedRows& found = showsResults_ ? search_.rows() : live_.rows();
    int count = last + 1;
    if (items_.rows() != found) {
        // Groups have taken them out of the order in which they were found.
        count = 0;
        for (int row = first; row <= last; ++row)
            if (const auto place = found->row(items_.item(row).url))
                count = std::max(count, static_cast<int>(*place) + 1);
    }
    if (showsResults_)
        search_.rowsSeen(count);
    else
        live_.rowsSeen(count);
}

void PaneModel::holdRows() {
    if (showsResults_)
        search_.holdRows();
    else
        live_.holdRows();
}

}  // namespace tarn
