#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QItemSelectionModel>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include "Tarn/model/ArchiveCache.h"
#include "Tarn/model/LiveList.h"
#include "Tarn/model/PaneHistory.h"
#include "Tarn/model/PaneItems.h"
#include "Tarn/model/PaneSearch.h"
#include "Tarn/model/PaneTree.h"
#include "Tarn/model/PaneWatcher.h"
#include "Tarn/model/PlaceOverview.h"
#include "Tarn/model/RowArrangement.h"
#include "Tarn/model/RowOrder.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/model/records/SmartFolder.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/search/SearchQuery.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

class AppModel;
class AwaitedWatch;
class TextReader;

/// What one pane shows: a place, its items, the search in it, and the way here.
///
/// Main thread only, every member. Listing, sorting and searching run elsewhere with copies of
/// what they need; an answer that comes after the pane has moved on is dropped.
class PaneModel final : public QObject {
    Q_OBJECT
public:
    /// Shows nothing until navigate(). `app` outlives the pane.
    PaneModel(AppModel& app, bool showsHidden, QObject* parent = nullptr);
    ~PaneModel() override;

    UUID id() const { return id_; }
    const Location& location() const { return location_; }
    /// What the place is called.
    std::string title() const;
    PaneItems& items() { return items_; }
    const PaneItems& items() const { return items_; }

    /// Goes to a place and selects what of `select` is there. Going to the place that is shown
    /// reloads it.
    void navigate(const Location& to, bool addToHistory = true, std::vector<URL> select = {});
    void goBack();
    void goForward();
    void goUp();
    bool canGoBack() const { return !history_.backStack().empty(); }
    bool canGoForward() const { return !history_.forwardStack().empty(); }
    bool canGoUp() const;
    const PaneHistory& history() const { return history_; }
    /// Counts navigations: what a view remembers of another one is stale.
    std::uint64_t navigationID() const { return navigationID_; }

    /// Enters a folder or an archive; false for anything that does not open inside the pane.
    bool browse(const FileItem& item);
    /// Where browse() goes to; absent where it does nothing.
    std::optional<Location> inside(const FileItem& item) const;
    /// Reads the place again, and searches again. What is shown stays until the answer is there.
    /// With `clearThumbnails` the pictures of files are taken from the disk again, too.
    void reload(bool clearThumbnails = false);
    /// Another one after every reload.
    const UUID& reloadToken() const { return reloadToken_; }
    /// The same, once for a burst of calls.
    void refreshSoon();
    /// Something has become of these files, as far as they are shown here.
    void lookAgain(const std::vector<URL>& urls);

    /// What is selected, shared by all views of the pane and kept by URL when rows are replaced.
    QItemSelectionModel& selection() { return selection_; }
    const QItemSelectionModel& selection() const { return selection_; }
    bool hasSelection() const { return selection_.hasSelection(); }
    std::vector<FileItem> selectedItems() const;
    void select(const std::vector<URL>& urls);
    /// Selects items that have just come into being, as soon as the pane has seen them.
    void selectWhenListed(std::vector<URL> urls);
    /// The item is on the clipboard and will go away when it is pasted.
    bool isCut(const URL& url) const;

    /// The rows are members of an archive, which have no path on the disk.
    bool showsMembers() const { return location_.isArchive() && !showsResults_; }
    /// Of the archive that is shown: what is selected, in the order of the rows.
    std::vector<std::string> selectedMembers() const;

    /// Of the item's tags, in their order, as far as they are known yet.
    std::vector<TagColor> tagColors(const FileItem& item) const;

    /// The item whose name is being edited. Meanwhile changes of the place wait.
    const std::optional<URL>& renaming() const { return renaming_; }
    /// Selects the item as well. Nothing for an item that is not shown, or is in an archive.
    void beginRename(URL item);
    void endRename();
    /// What the Return key does to the selection; otherwise it renames.
    bool returnOpens() const;
    /// Edits the name of an item that was just made here, as soon as it is listed.
    void renameWhenListed(const URL& item);

    ViewMode viewMode() const { return viewMode_; }
    void setViewMode(ViewMode mode);
    /// Shows the place so without making that the folder's own view.
    void restoreViewMode(ViewMode mode);
    double iconSize() const { return iconSize_; }
    void setIconSize(double size);
    /// The columns of lists, which all panes share.
    ListColumns& columns();
    const SortOrder& sort() const { return sort_; }
    /// Picks a field, or turns the direction of the one that is picked.
    void sortBy(SortField field);
    GroupField groupBy() const { return arrangement_.groupBy; }
    void setGroupBy(GroupField field);
    /// The headings that the rows have, results too; none when they are not grouped.
    const std::vector<RowGroup>& groups() const { return items_.rows()->groups(); }
    /// Shows the items below a heading, or the heading alone.
    void setGroupFolded(const std::string& title, bool isFolded);
    CloudFilter cloudFilter() const { return arrangement_.cloudFilter; }
    void setCloudFilter(CloudFilter filter);
    bool showsHidden() const { return showsHidden_; }
    void setShowsHidden(bool shows);

    /// Folders open in the list, with what is in them below them.
    bool showsTree() const;
    bool isUnfolded(const URL& folder) const { return tree_.isUnfolded(folder); }
    void loadChildren(const URL& folder);
    void foldChildren(const URL& folder) { tree_.fold(folder); }
    /// Null for a folder that is not unfolded, or not read yet.
    SharedRows children(const URL& folder) const { return tree_.children(folder); }
    std::map<URL, SharedRows> treeChildren() const { return tree_.treeChildren(); }

    /// Of the tags and of the sources, where the pane shows these.
    PlaceOverview& overview() { return overview_; }

    /// What the rows that are shown follow; it changes with them.
    const RowOrder& rowOrder() const { return rowOrder_; }

    bool isLoading() const { return isLoading_ || isArranging_; }
    /// The rows so far are only the first of many.
    bool isPartial() const { return isPartial_; }
    const std::optional<ListingError>& listingError() const { return listingError_; }

    const std::string& searchText() const { return searchText_; }
    /// What the text was understood as, less the chips that were removed; absent when the pane
    /// shows its place and no search.
    const std::optional<SearchQuery>& query() const { return query_; }
    SearchScopeSetting searchScope() const { return searchScope_; }
    /// The query of the search, or of the place when no search is shown, is still running.
    bool isSearching() const { return query_ ? search_.isRunning() : live_.isRunning(); }
    /// The place holds more than is shown.
    bool isCut() const { return !showsResults_ && live_.isCut(); }
    const PaneSearch& search() const { return search_; }
    /// Results were found by what files say, so that each row has a line of that to show.
    bool showsSnippets() const { return showsResults_ && search_.asksForTexts(); }
    /// Of a row, when it has such a line and it has been read; asks for it otherwise.
    const TextMatch* snippet(const FileItem& item);
    /// The rows are results, not the place itself.
    bool showsResults() const { return showsResults_; }
    /// Results come best first; false once a column was picked for them.
    bool isRanked() const { return isRanked_; }

    /// Searches once nothing was typed for 0.2 s; at once when there is nothing left to search.
    void searchTextChanged(const std::string& text);
    /// Searches at once.
    void setSearchText(const std::string& text);
    /// Back to the place itself, read afresh when `reload` is set.
    void clearSearch(bool reload);
    /// It is that of the settings until then.
    void setScope(SearchScopeSetting scope);
    /// Searches without that part of what was understood.
    void removeChip(ChipCategory category);

    /// What a view tells while results stream in: rows `first` to `last` are on the screen. See
    /// PaneSearch.
    void rowsSeen(int first, int last);
    void holdRows();

    /// Seconds between the last keystroke and the search.
    static constexpr double searchDelay = 0.2;

signals:
    void locationChanged();
    /// After reload(), before its rows.
    void reloaded(bool clearThumbnails);
    /// isLoading, listingError or isSearching has changed.
    void stateChanged();
    void searchChanged();  ///< Text, query or scope.
    void viewModeChanged();
    void sortChanged();
    /// The grouping was changed; the rows follow with rowsChanged().
    void groupsChanged();
    void cloudFilterChanged();
    /// A folder cannot be unfolded, for this reason.
    void unfoldingFailed(const QString& sentence);
    void iconSizeChanged();
    /// What isCut() answers has changed.
    void cutChanged();
    void renamingChanged();
    void tagColorsChanged();
    /// After the rows were replaced and the selection was put back.
    void rowsChanged();
    /// snippet() has more to tell.
    void snippetsChanged();

private:
    /// reload() without the search in the place.
    void reloadPlace(bool clearThumbnails);
    /// The same, the rows of the place alone.
    void relist();
    void applyPrefs();
    void savePrefs();
    void changeScope(SearchScopeSetting scope);
    /// Hands the order on to whatever is shown.
    void orderChanged();
    void load();
    /// What reads the place and posts the answer; for the pool.
    std::function<void()> listing(std::shared_ptr<AwaitedWatch> watch = nullptr);
    std::function<void()> folderListing(std::shared_ptr<AwaitedWatch> watch);
    std::function<void()> archiveListing(std::shared_ptr<AwaitedWatch> watch);
    /// The place is a folder, on the disk or in an archive; others have a screen of their own.
    bool hasListing() const { return location_.isFolder() || location_.isArchive(); }
    /// Of a place that is a query; absent for a saved search that does not exist.
    std::optional<LiveQuery> liveQuery();
    LiveQuery searchOf(SearchQuery query, SearchScopeSetting scope);
    /// A search in such a place finds only what belongs to it; a tag does not narrow it.
    SearchQuery narrowed(SearchQuery query);
    void loadLive();
    void smartFoldersChanged();
    void liveRowsChanged();
    void liveEnded();
    /// What the listing, or what a search has found, is to be shown as.
    RowArrangement wantedArrangement() const;
    /// Shows the rows as they are to be arranged now.
    void arrange();
    /// The same for the place, nothing while results are shown.
    void arrangePlace();
    void showArranged(const SharedRows& rows, const RowOrder& order);
    /// `selected`: which of the new rows are those that are selected now, from top to bottom.
    void showArranged(const SharedRows& rows, const RowOrder& order,
                      const std::vector<int>& selected);
    void settleSelection();
    void startListing();
    void watchAndList();
    /// Rows that were made on the pool, sorted and arranged as was wanted when that began.
    struct Listed {
        Listed(SharedRows rows, const SortOrder& sort, const RowArrangement& how);
        SharedRows rows;
        SortOrder sort;
        RowArrangement how;
        SharedRows arranged;
    };
    void showCached();
    void noteListing(SharedRows rows, const SortOrder& sort, bool isPartial);
    void showListing(SharedRows rows, const SortOrder& sort, bool isPartial);
    void showListing(const Listed& listed, bool isPartial);
    void listingFailed(const ListingError& error);
    void listingEnded();
    void loadDeferredTags(const SharedRows& rows);
    void resortListing();
    void showRows(const SharedRows& rows, const RowOrder& order, const std::vector<int>& selected);
    void runSearch();
    void startSearch();
    void resultsChanged();
    /// The index of file contents answers differently than before.
    void textsChanged();
    std::vector<URL> searchRoots() const;
    /// Lets a search read the documents that no index knows.
    FileTexts::ReadDocument documentReading();
    SearchQuery parsed(const std::string& text) const;
    /// Drops every answer that is under way.
    void moveOn();

    AppModel& app_;
    UUID id_ = UUID::random();
    Location location_;
    bool hasLocation_ = false;
    PaneItems items_;
    QItemSelectionModel selection_{&items_};
    PaneHistory history_;
    std::uint64_t navigationID_ = 0;
    UUID reloadToken_ = UUID::random();

    ViewMode viewMode_ = ViewMode::grid;
    SortOrder sort_;
    double iconSize_ = 96;
    RowArrangement arrangement_;  ///< Without order and tree; see wantedArrangement().
    bool showsHidden_ = false;
    bool applyingPrefs_ = false;

    SharedRows listing_;  ///< The place itself, also while results are shown.
    SortOrder listingSort_;
    RowOrder rowOrder_;
    std::vector<URL> selectWhenListed_;
    std::optional<URL> nameWhenListed_;
    std::optional<URL> renaming_;
    std::uint64_t generation_ = 0;  ///< Counts loads; the answer of an older one is dropped.
    CancelToken listToken_;
    /// No other listing follows, and this one did not begin before the items to select were there.
    bool isSettled_ = false;
    std::uint64_t arranging_ = 0;  ///< Counts arrangements; an older one is dropped.
    bool isArranging_ = false;     ///< The rows lag behind the listing.
    bool isLoading_ = false;
    bool isListing_ = false;
    bool isPartial_ = false;
    bool missedChanges_ = false;  ///< The place changed while it was being listed.
    std::optional<ListingError> listingError_;
    ArchiveCache::Entries shownEntries_;  ///< Of the archive whose rows are shown.
    QTimer refreshTimer_;
    QTimer deadlineTimer_;
    PaneWatcher watcher_;
    PaneTree tree_;
    LiveList live_;
    std::optional<SmartFolder> shownSmartFolder_;  ///< As its query was run.
    PlaceOverview overview_;

    std::string searchText_;
    std::optional<SearchQuery> query_;
    std::vector<SearchChip> removedChips_;
    std::vector<URL> searchedRoots_;
    SearchQuery searched_;
    bool searchedHidden_ = false;
    std::uint64_t searchNumber_ = 0;  ///< Counts questions, not how often one is asked.
    SearchScopeSetting searchScope_;
    bool isScopeChosen_ = false;  ///< Here; otherwise it is that of the settings.
    bool showsResults_ = false;
    bool isRanked_ = true;
    QTimer searchTimer_;
    std::shared_ptr<TextReader> documents_;  ///< Made for the first search that reads any.
    PaneSearch search_;
};

}  // namespace tarn
