#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/SmartFolders.h"
#include "Tarn/model/records/UserStores.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/index/IndexedTexts.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/QueryParser.h"
#include "TarnCore/search/SearchRanking.h"
#include "TarnCore/search/SearchTask.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Explanation.h"
#include "cli/Progress.h"
#include "cli/Records.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "in",
     .letter = 'i',
     .value = "DIR",
     .help = "Searches below DIR instead of the current folder",
     .completes = Completes::folders,
     .isRepeatable = true},
    {.name = "home", .help = "Searches the home folder"},
    {.name = "everywhere", .help = "Searches the whole computer"},
    {.name = "smart-folder",
     .value = "NAME",
     .help = "Searches for what the smart folder of this name or id does, where it does; QUERY "
             "narrows that down"},
    {.name = "all", .letter = 'a', .help = "Looks at hidden items too"},
    {.name = "limit", .letter = 'n', .value = "N", .help = "Stops after N results"},
    {.name = "explain", .help = "Says for each result why it was found, and shows the text"},
    {.name = "no-index", .help = "Looks at the disk alone, not at the indexes of names and texts"},
    {.name = "index-only", .help = "Asks the indexes alone and looks into no folder"},
    {.name = "trash", .help = "Looks in the Trash too"},
    CommonOptions::json,
    CommonOptions::paths,
    CommonOptions::null,
};

constexpr Example examples[] = {
    {"tarn search pdfs from last week over 5 mb", "By type, date and size, below this folder"},
    {"tarn search --home screenshots from yesterday", "In the home folder"},
    {"tarn search --in ~/Music --in /media/usb flac -n 20", "The first 20 found in two places"},
    {"tarn search --explain 'invoice containing “total due”'", "By what files say, and where"},
    {"tarn search --smart-folder Screenshots", "What a smart folder shows"},
    {"tarn search -0 large videos | xargs -0 du -ch", "Hands the files to another program"},
};

enum class Form { lines, paths, json };

/// What is asked for: the words, and a smart folder that they are about.
struct Request {
    std::string text;
    std::optional<SearchScopeSetting> scope;  ///< Of the smart folder.
};

Request request(const Arguments& arguments) {
    const auto name = arguments.value("smart-folder");
    if (!name) {
        if (arguments.rest().empty()) {
            throw UsageError(
                "Something is missing after “tarn search”: it is used as “tarn search QUERY…”.");
        }
        return {arguments.text(), std::nullopt};
    }
    const auto store = UserStores::smartFolders();
    const SmartFolder folder =
        SmartFolders::require(SmartFolders::merged(store.value().records), *name);
    const std::string more = arguments.text();
    return {more.empty() ? folder.query : folder.query + " " + more, folder.scope};
}

/// Where a search begins that names no folder.
URL scopeRoot(const Request& request, Session& session) {
    if (request.scope == SearchScopeSetting::home) return Paths::home();
    if (request.scope == SearchScopeSetting::thisMac) return URL();
    return session.currentFolder();
}

/// The folders to search: those named; else the place that the query names, when it is somewhere
/// else; else that of a smart folder; else the current folder. Throws for a folder that is not
/// there.
std::vector<URL> roots(const Arguments& arguments, const Request& request, Session& session,
                       const SearchQuery& query) {
    std::vector<URL> roots;
    for (const std::string_view folder : arguments.values("in"))
        roots.push_back(session.requireFolder(folder));
    if (arguments.has("home")) roots.push_back(Paths::home());
    if (arguments.has("everywhere")) roots.push_back(URL());
    if (!roots.empty()) return roots;

    const URL current = scopeRoot(request, session);
    if (query.place) {
        switch (query.place->which) {
            case PlaceFilter::Case::folder: {
                const URL folder = URL::fromPath(query.place->text);
                if (!current.isInside(folder)) return {folder};
                break;
            }
            case PlaceFilter::Case::thisMac:
                return {URL()};
            case PlaceFilter::Case::externalDrives:
                for (const Mount& mount : Platform::current().volumes->mounts()) {
                    if (mount.isRemovable) roots.push_back(mount.mountPoint);
                }
                return roots;
            case PlaceFilter::Case::iCloud:
                return {Paths::iCloudDrive()};
            case PlaceFilter::Case::named:
            case PlaceFilter::Case::currentFolder:
                break;
        }
    }
    return {current};
}

SearchOptions searchOptions(const Arguments& arguments, Session& session) {
    const Request request = cli::request(arguments);
    SearchOptions search;
    search.query =
        QueryParser(session.now(), session.calendar(), session.locale()).parse(request.text);
    search.roots = roots(arguments, request, session, search.query);
    search.includeHidden = arguments.has("all");
    search.useSpotlight = !arguments.has("no-index");
    search.indexesOnly = arguments.has("index-only");
    if (!arguments.has("no-index")) search.textIndex = IndexedTexts::shared();
    if (!search.query.containing.empty() && !search.indexesOnly)
        search.readDocument =
            FileTexts::reading(std::make_shared<TextReader>(TextReader::Options()));
    search.tags = arguments.has("json");
    search.limit = arguments.number("limit", 1).value_or(std::numeric_limits<std::int64_t>::max());
    search.currentFolder = session.currentFolder();

    const auto& place = search.query.place;
    const bool asksForTrash = place && place->which == PlaceFilter::Case::folder &&
                              Paths::isInTrash(URL::fromPath(place->text));
    search.hidesTrash = !arguments.has("trash") && !asksForTrash;
    if (arguments.has("trash")) search.roots.push_back(Paths::trash());
    return search;
}

/// Prints results as they come. Its members are called one at a time.
class Printer {
public:
    /// With `task`, it is explained why it found each of them.
    Printer(Session& session, Form form, char end, const SearchTask* task)
        : out_(session.out()),
          terminal_(session.terminal()),
          form_(form == Form::lines && !terminal_.isTerminal() ? Form::paths : form),
          end_(end),
          task_(task),
          progress_(!session.quiet()) {
        if (form_ == Form::lines) currentFolder_ = session.currentFolder();
    }

    /// Sets `failure` when the output cannot be written; what comes later is dropped.
    void add(std::vector<FileItem> items) {
        if (!failure.empty()) return;
        count_ += items.size();
        if (form_ == Form::json) {
            std::move(items.begin(), items.end(), std::back_inserter(kept_));
            return;
        }
        if (items.empty()) return;
        if (form_ == Form::lines) progress_.clear();
        for (const FileItem& item : items) {
            if (form_ == Form::lines) {
                appendLine(item);
            } else {
                Records::writePath(out_, item, end_);
            }
            if (task_) Explanation::appendLine(out_.buffer(), terminal_, task_->match(item));
        }
        try {
            out_.flush();
        } catch (const Error& error) {
            failure = error.what();
        }
    }

    void showProgress(std::int64_t visited) {
        progress_.show("Searched " + Format::count(visited, "item") + "…");
    }

    /// In the order in which the window shows them; files found at the same time by two threads
    /// come in no order of their own, so the paths decide among equals.
    void finish(const SearchTask& task, const SearchQuery& query) {
        progress_.clear();
        if (form_ != Form::json) return;
        std::ranges::sort(kept_, {}, [](const FileItem& item) { return item.path(); });
        kept_ = SearchRanking::rank(std::move(kept_), query, [&](const FileItem& item) {
            return task.imageScore(item.url);
        });
        if (task_)
            writeExplained();
        else
            Records::writeArray(out_, kept_);
        out_ << '\n';
    }

    std::size_t count() const { return count_; }
    bool isDone = false;
    std::string failure;

private:
    /// Relative to the current folder where that says it; the name stands out.
    void appendLine(const FileItem& item) {
        const URL parent = item.url.parent();
        std::string folder;
        if (parent != currentFolder_) {
            const bool isBelow = parent.isInside(currentFolder_);
            const std::size_t skipped =
                currentFolder_.isRoot() ? 1 : currentFolder_.path().size() + 1;
            folder = isBelow ? parent.path().substr(skipped) : Paths::abbreviate(parent);
            if (!folder.ends_with('/')) folder += '/';
        }
        terminal_.append(out_.buffer(), Terminal::Style::dim, Terminal::escaped(folder));
        terminal_.append(out_.buffer(),
                         item.isDirectory ? Terminal::Style::folder
                         : item.isSymlink ? Terminal::Style::link
                                          : Terminal::Style::plain,
                         Terminal::escaped(item.url.name()));
        out_ << (item.isDirectory ? "/\n" : "\n");
    }

    void writeExplained() {
        out_ << (kept_.empty() ? "[" : "[\n");
        for (const FileItem& item : kept_) {
            if (&item != &kept_.front()) out_ << ",\n";
            Explanation::appendRecord(out_.buffer(), item, task_->match(item));
            out_.flushIfLarge();
        }
        out_ << (kept_.empty() ? "]" : "\n]");
    }

    Output& out_;
    const Terminal& terminal_;
    Form form_;
    char end_;
    const SearchTask* task_;
    Progress progress_;
    URL currentFolder_;
    std::vector<FileItem> kept_;
    std::size_t count_ = 0;
};

int finish(Printer& printer, const SearchTask& task, const SearchQuery& query, bool isQuiet) {
    if (!printer.failure.empty()) throw Error(printer.failure);
    printer.finish(task, query);
    if (const std::int64_t count = task.tooLargeCount(); count > 0 && !isQuiet)
        Session::say(Format::count(count, "file is", "files are") + " too large to be read.");
    return printer.count() > 0 ? ExitStatus::done : ExitStatus::nothingFound;
}

int run(const Arguments& arguments, Session& session) {
    const bool paths = arguments.has("paths") || arguments.has("null");
    if (arguments.has("json") && paths) {
        throw UsageError("“--json” and “--paths” exclude each other.");
    }
    if (arguments.has("explain") && paths) {
        throw UsageError("“--explain” and “--paths” exclude each other.");
    }
    if (arguments.has("no-index") && arguments.has("index-only")) {
        throw UsageError("“--no-index” and “--index-only” exclude each other.");
    }
    const Form form = arguments.has("json") ? Form::json : paths ? Form::paths : Form::lines;
    const SearchOptions search = searchOptions(arguments, session);

    // The task goes first, and waits for its threads, which use the others.
    std::condition_variable changed;
    const Guarded<std::unique_ptr<Printer>> shared;
    SearchTask task(search);
    *shared.lock() = std::make_unique<Printer>(session, form, arguments.has("null") ? '\0' : '\n',
                                               arguments.has("explain") ? &task : nullptr);
    // An index answers before threads have begun.
    if (search.indexesOnly) {
        task.run([&](std::vector<FileItem> batch) {
            const auto printer = shared.lock();
            (*printer)->add(std::move(batch));
            if (!(*printer)->failure.empty()) task.cancel();
        });
        return finish(**shared.lock(), task, search.query, session.quiet());
    }
    task.start(
        [&](std::vector<FileItem> batch) {
            const auto printer = shared.lock();
            (*printer)->add(std::move(batch));
            if (!(*printer)->failure.empty()) changed.notify_all();
        },
        [&] {
            (*shared.lock())->isDone = true;
            changed.notify_all();
        });

    auto printer = shared.lock();
    while (!(*printer)->isDone && (*printer)->failure.empty()) {
        changed.wait_for(printer.mutex(), std::chrono::milliseconds(100));
        (*printer)->showProgress(task.visitedCount());
    }
    return finish(**printer, task, search.query, session.quiet());
}

}  // namespace

extern const Command searchCommand;
const Command searchCommand = {
    .name = "search",
    .section = Section::looking,
    .summary = "Finds files by name, type, date, size, place, source or content",
    .arguments = "QUERY…",
    .description =
        "QUERY is what one would say: “pdfs from last week over 5 mb”, “screenshots from "
        "yesterday”, “invoice from slack”. Its words may be one argument or several; “tarn parse” "
        "shows how they are understood. A place that the query names (“in downloads”, “on this "
        "mac”) is searched wherever one stands.\n"
        "Results are printed as they are found, relative to the current folder on a terminal, else "
        "as absolute paths; with “--json” they are an array in order of rank.\n"
        "“containing” asks for words in the text of files. What the index of texts knows (“tarn "
        "index”) is found at once, by whole words; other files are read, the plain ones first. "
        "Text "
        "in pictures is found by the index alone.",
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
