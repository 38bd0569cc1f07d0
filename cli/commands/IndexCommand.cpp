#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/IndexSettings.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/JSONStore.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/index/ContentIndexer.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/platform/Platform.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "text", .help = "Reads the texts of new and changed files below each DIR"},
    {.name = "status", .help = "Shows what is indexed, and how large the index is"},
    {.name = "clear", .help = "Empties the index"},
    {.name = "forget", .help = "Takes what is below each DIR out of the index"},
    {.name = "ocr", .help = "Reads the text in pictures and scanned pages too"},
    {.name = "no-ocr", .help = "Leaves pictures and scanned pages out"},
    {.name = "languages",
     .value = "LIST",
     .help = "Recognises text in these languages: “en-US,de”"},
    CommonOptions::json,
};

constexpr Example examples[] = {
    {"tarn index --text", "Brings the index up to date, in the folders of the settings"},
    {"tarn index --text ~/Documents --ocr --languages en,sv", "Reads scanned pages too"},
    {"tarn index --status", "Says how much is indexed"},
    {"tarn index --forget ~/Private", "Keeps nothing of what these files say"},
};

IndexSettings settings() {
    return IndexSettings::of(
        JSONStore<AppSettings>("settings.json", [] { return AppSettings(); }).value());
}

/// Throws for one that is not there.
std::vector<URL> folders(const Arguments& arguments, Session& session) {
    std::vector<URL> folders;
    for (const std::string_view argument : arguments.rest()) {
        const URL url = session.url(argument);
        const auto attributes = Platform::current().files->attributes(url, Links::follow);
        if (!attributes) throw ListingError::notFound(std::string(url.name()));
        if (attributes->type != FileType::directory)
            throw ListingError::notAFolder(std::string(url.name()));
        folders.push_back(url);
    }
    return folders;
}

/// The index, with the right to fill it.
struct Claimed {
    std::shared_ptr<TextIndex> index = TextIndex::shared();
    std::shared_ptr<const TextIndex::Claim> claim = index->claim();

    Claimed() {
        if (!claim) throw Error(index->problem().value_or("The index of texts can’t be written."));
    }
};

// ---- What is there ----

int showStatus(const Arguments& arguments, Session& session) {
    const TextIndex::Status status = TextIndex::shared()->status();
    std::optional<Date> lastIndexed;
    if (status.lastIndexed)
        lastIndexed = Date{*status.lastIndexed - static_cast<double>(Date::unixOffset)};
    Output& out = session.out();
    if (arguments.has("json")) {
        JSON text = {{"files", status.files},
                     {"withText", status.withText},
                     {"images", status.images},
                     {"characters", status.characters},
                     {"bytesOnDisk", status.bytesOnDisk}};
        if (lastIndexed) text["lastIndexed"] = lastIndexed->seconds;
        out << JSON{{"text", std::move(text)}}.dump() << '\n';
        return ExitStatus::done;
    }
    session.useLocaleForFormats();
    const auto line = [&](std::string_view name, std::string_view value) {
        out << name << std::string(16 - name.size(), ' ') << value << '\n';
    };
    line("Texts of", Format::count(status.files, "file"));
    if (status.files == 0) return ExitStatus::done;
    line("With text", Format::count(status.withText, "file"));
    line("In pictures", Format::count(status.images, "file"));
    line("Length", Format::count(status.characters, "character"));
    line("On disk", Format::bytes(status.bytesOnDisk));
    line("Last indexed", Format::date(lastIndexed));
    return ExitStatus::done;
}

// ---- Filling it ----

ContentIndexer::Options indexingOptions(const Arguments& arguments, const IndexSettings& settings) {
    ContentIndexer::Options indexing;
    indexing.ocr = arguments.has("ocr") || (settings.ocr && !arguments.has("no-ocr"));
    indexing.languages = settings.languages;
    if (const auto languages = arguments.value("languages")) {
        indexing.languages.clear();
        for (const std::string_view language : Text::split(*languages, ','))
            if (const auto tag = Text::trimmed(language); !tag.empty())
                indexing.languages.emplace_back(tag);
    }
    indexing.excluded = settings.excluded;
    indexing.mostBytesOnDisk = settings.mostBytesOnDisk;
    return indexing;
}

/// Says what went wrong, if anything.
int statusOf(const ContentIndexer::Outcome& outcome, const TextIndex& index) {
    const bool didSomething = outcome.indexed + outcome.withoutText > 0;
    const int worse = didSomething ? ExitStatus::partlyFailed : ExitStatus::failed;
    if (outcome.couldNotWrite) {
        Session::say(index.problem().value_or("The index of texts can’t be written."));
        return worse;
    }
    if (outcome.reachedBudget)
        Session::say(
            "The index is as large as the settings allow, so that not all texts are in it.");
    if (!outcome.problem.empty()) Session::say(outcome.problem);
    return outcome.reachedBudget || !outcome.problem.empty() ? worse : ExitStatus::done;
}

int indexTexts(const Arguments& arguments, Session& session) {
    const IndexSettings settings = cli::settings();
    std::vector<URL> below = folders(arguments, session);
    if (below.empty()) below = settings.folders;
    const Claimed claimed;
    TextIndex& index = *claimed.index;
    session.useLocaleForFormats();

    const CancelToken token;
    const Interrupt::Cancels cancels(token);
    Progress progress(!session.quiet());
    ContentIndexer indexer(claimed.index, indexingOptions(arguments, settings));
    std::int64_t forgotten = indexer.forgetExcluded();
    const auto candidates = indexer.candidates(below, token);
    for (const URL& folder : below) forgotten += index.pruneMissing(folder, token);
    const auto outcome = indexer.run(
        candidates, token, nullptr,
        [&](std::int64_t done, std::int64_t total, const std::string& name) {
            if (!progress.isDue()) return;
            progress.show("Read " + std::to_string(done) + " of " + Format::count(total, "file") +
                          "  " + Terminal::escaped(name));
        });
    progress.clear();
    if (forgotten + outcome.indexed + outcome.withoutText > 0 || token.isCancelled())
        index.announceChange();
    if (token.isCancelled()) return ExitStatus::cancelled;

    if (arguments.has("json")) {
        session.out() << JSON{{"indexed", outcome.indexed},
                              {"withoutText", outcome.withoutText},
                              {"forgotten", forgotten}}
                             .dump()
                      << '\n';
    } else {
        std::string sentence = "Indexed " + Format::count(outcome.indexed, "file");
        if (outcome.withoutText > 0)
            sentence += ", " + Format::count(outcome.withoutText, "without text", "without text");
        if (forgotten > 0) sentence += ", " + Format::count(forgotten, "forgotten", "forgotten");
        session.out() << sentence << ".\n";
    }
    return statusOf(outcome, index);
}

// ---- Emptying it ----

int clear(Session&) {
    const Claimed claimed;
    if (!claimed.index->clear())
        throw Error(claimed.index->problem().value_or("The index of texts can’t be written."));
    claimed.index->announceChange();
    return ExitStatus::done;
}

int forget(const Arguments& arguments, Session& session) {
    if (arguments.rest().empty()) throw UsageError("“--forget” needs a folder.");
    const Claimed claimed;
    std::int64_t forgotten = 0;
    // A folder that is gone can be forgotten too.
    for (const std::string_view argument : arguments.rest())
        forgotten += claimed.index->forget(session.url(argument));
    if (const auto problem = claimed.index->problem()) throw Error(*problem);
    if (forgotten > 0) claimed.index->announceChange();
    session.useLocaleForFormats();
    session.out() << "Forgot " << Format::count(forgotten, "file") << ".\n";
    return forgotten > 0 ? ExitStatus::done : ExitStatus::nothingFound;
}

int run(const Arguments& arguments, Session& session) {
    constexpr std::string_view jobs[] = {"text", "status", "clear", "forget"};
    const auto count =
        std::ranges::count_if(jobs, [&](std::string_view job) { return arguments.has(job); });
    if (count != 1)
        throw UsageError("Say what to do: “--text”, “--status”, “--clear” or “--forget”.");
    if (arguments.has("ocr") && arguments.has("no-ocr"))
        throw UsageError("“--ocr” and “--no-ocr” exclude each other.");
    if (arguments.has("text")) return indexTexts(arguments, session);
    if (arguments.has("forget")) return forget(arguments, session);
    if (!arguments.rest().empty()) throw UsageError("Folders go with “--text” and “--forget”.");
    return arguments.has("clear") ? clear(session) : showStatus(arguments, session);
}

}  // namespace

extern const Command indexCommand;
const Command indexCommand = {
    .name = "index",
    .section = Section::looking,
    .summary = "Reads what files say, so that searches find it at once",
    .arguments = "[DIR…]",
    .description =
        "“--text” reads the texts of documents below each DIR, or below the folders of the "
        "settings "
        "without one: only of files that are new or have changed since. Files that are gone are "
        "forgotten. Hidden items, data of programs, folders with “.nomedia” or a cache tag and the "
        "folders that the settings leave out are not read. It may be ended at any time; what was "
        "read stays.\n"
        "Whether text in pictures is read, in which languages, and how large the index may become "
        "is in the settings of the window.",
    .completes = Completes::folders,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
