#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/JSONStore.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/tags/TagStore.h"
#include "cli/Arguments.h"
#include "cli/Changes.h"
#include "cli/Command.h"
#include "cli/Records.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

// ---- Names and colours ----

/// The words for colours on the command line, in the order of TagColor.
constexpr std::string_view colorWords[] = {"none", "gray",   "green", "purple",
                                           "blue", "yellow", "red",   "orange"};

std::string_view word(TagColor color) { return colorWords[static_cast<std::size_t>(color)]; }

TagColor requireColor(std::string_view text) {
    std::string wanted = Text::lowercased(text);
    if (wanted == "grey") wanted = "gray";
    const auto found = std::ranges::find(colorWords, wanted);
    if (found != std::end(colorWords)) return static_cast<TagColor>(found - colorWords);
    std::string sentence =
        "There is no colour " + Text::quoted(Terminal::escaped(text)) + " for tags.";
    if (const auto near = nearest(wanted, colorWords)) {
        sentence += " Did you mean " + Text::quoted(*near) + "?";
    } else {
        sentence += " There are red, orange, yellow, green, blue, purple, gray and none.";
    }
    throw UsageError(sentence);
}

std::string requireName(std::string_view name) {
    if (Text::trimmed(name).empty()) throw UsageError("A tag needs a name.");
    if (!Text::isValidUTF8(name) || name.find('\n') != name.npos) {
        throw UsageError("The name of a tag is one line of text.");
    }
    return std::string(name);
}

/// The colours that the user has given to tags, by name; the window has them, too.
using Colors = std::map<std::string, int>;

JSONStore<Colors>& colorStore() {
    static JSONStore<Colors> store("tag-colors.json", [] { return Colors(); });
    return store;
}

void keepColor(const FinderTag& tag) {
    colorStore().update([tag](Colors& colors) { colors[tag.name] = static_cast<int>(tag.color); });
    colorStore().flush();
}

TagColor knownColor(const std::string& name) {
    const Colors colors = colorStore().value();
    const auto found = colors.find(name);
    const bool isColor = found != colors.end() && found->second >= 0 &&
                         static_cast<std::size_t>(found->second) < std::size(colorWords);
    return isColor ? static_cast<TagColor>(found->second) : TagStore::color(name);
}

/// NAME or NAME:COLOUR.
struct NameAndColor {
    std::string name;
    std::optional<TagColor> color;
};

NameAndColor requireTag(std::string_view argument) {
    const std::size_t colon = argument.rfind(':');
    if (colon == argument.npos) return {requireName(argument), std::nullopt};
    return {requireName(argument.substr(0, colon)), requireColor(argument.substr(colon + 1))};
}

// ---- Changing ----

/// Makes one change for each file, records them as one, and says which failed.
template <class Change>
int changeAll(const std::vector<URL>& urls, const std::string& title, const Change& change) {
    std::vector<Step> steps;
    std::size_t failures = 0;
    for (const URL& url : urls) {
        try {
            if (auto step = change(url)) steps.push_back(std::move(*step));
        } catch (const FileOpError& error) {
            Session::say(error.what());
            ++failures;
        }
    }
    const auto count = static_cast<std::int64_t>(steps.size());
    Changes::record(OperationKind::tag, title, std::move(steps), count);
    if (failures == 0) return ExitStatus::done;
    return failures == urls.size() ? ExitStatus::failed : ExitStatus::partlyFailed;
}

std::vector<URL> urlsAfterFirst(const Arguments& arguments, Session& session) {
    std::vector<URL> urls;
    for (std::size_t i = 1; i < arguments.rest().size(); ++i) {
        urls.push_back(session.url(arguments.rest()[i]));
    }
    return urls;
}

int runAdd(const Arguments& arguments, Session& session) {
    const NameAndColor given = requireTag(arguments.rest()[0]);
    const FinderTag tag{given.name, given.color ? *given.color : knownColor(given.name)};
    if (given.color) keepColor(tag);
    return changeAll(urlsAfterFirst(arguments, session), "Tag “" + tag.name + "”",
                     [&](const URL& url) -> std::optional<Step> {
                         if (!FileOps::exists(url)) throw FileOpError::missing(url.name());
                         const auto tags = TagStore::tags(url);
                         const bool isThere =
                             std::ranges::find(tags, tag.name, &FinderTag::name) != tags.end();
                         // Without a colour given, the one that the file shows stays.
                         if (isThere && !given.color) return std::nullopt;
                         return TagStore::add(tag, url);
                     });
}

int runRemove(const Arguments& arguments, Session& session) {
    const NameAndColor given = requireTag(arguments.rest()[0]);
    return changeAll(urlsAfterFirst(arguments, session), "Remove tag “" + given.name + "”",
                     [&](const URL& url) {
                         if (!FileOps::exists(url)) throw FileOpError::missing(url.name());
                         return TagStore::remove(given.name, url);
                     });
}

/// Replaces a tag on every file that has it, written exactly so, by what `replacement` makes of it.
template <class Replacement>
int rewriteEverywhere(const std::string& name, const std::string& title,
                      const Replacement& replacement) {
    std::vector<URL> urls;
    std::vector<FinderTag> tags;  // As the files have it.
    for (const URL& url : TagStore::filesWithTag(name, std::string::npos)) {
        const auto all = TagStore::tags(url);
        const auto found = std::ranges::find(all, name, &FinderTag::name);
        if (found == all.end()) continue;
        urls.push_back(url);
        tags.push_back(*found);
    }
    if (urls.empty()) {
        Session::say("No file has the tag " + Text::quoted(name) + ".");
        return ExitStatus::nothingFound;
    }
    std::size_t next = 0;
    return changeAll(urls, title, [&](const URL& url) -> std::optional<Step> {
        auto steps = TagStore::rewrite(name, replacement(tags[next++]), {url});
        return steps.empty() ? std::nullopt : std::optional(std::move(steps.front()));
    });
}

int runRename(const Arguments& arguments, Session&) {
    const std::string name = requireName(arguments.rest()[0]);
    const std::string newName = requireName(arguments.rest()[1]);
    const int status = rewriteEverywhere(name, "Rename tag “" + name + "” to “" + newName + "”",
                                         [&](const FinderTag& tag) {
                                             return FinderTag{newName, tag.color};
                                         });
    if (status == ExitStatus::done) keepColor({newName, knownColor(name)});
    return status;
}

int runColour(const Arguments& arguments, Session&) {
    const FinderTag tag{requireName(arguments.rest()[0]), requireColor(arguments.rest()[1])};
    keepColor(tag);
    return rewriteEverywhere(tag.name, "Change colour of tag “" + tag.name + "”",
                             [&](const FinderTag&) { return tag; });
}

// ---- Looking ----

JSON record(const std::vector<FinderTag>& tags) {
    JSON json = JSON::array();
    for (const FinderTag& tag : tags) {
        JSON item = JSON::object();
        item["name"] = Text::sanitized(tag.name);
        item["color"] = static_cast<int>(tag.color);
        json.push_back(std::move(item));
    }
    return json;
}

/// "Work:blue"; a tag without a colour is its name.
std::string shown(const FinderTag& tag) {
    std::string text = Terminal::escaped(tag.name);
    if (tag.color != TagColor::none) text.append(":").append(word(tag.color));
    return text;
}

void listAll(Session& session, bool json) {
    const auto tags = TagStore::allTags();
    if (json) {
        session.out() << JSONText::pretty(record(tags)) << '\n';
        return;
    }
    for (const FinderTag& tag : tags) session.out() << shown(tag) << '\n';
}

int runList(const Arguments& arguments, Session& session) {
    const bool json = arguments.has("json");
    if (arguments.rest().empty()) {
        listAll(session, json);
        return ExitStatus::done;
    }
    JSON records = JSON::array();
    std::size_t failures = 0;
    for (const std::string_view path : arguments.rest()) {
        const URL url = session.url(path);
        if (!FileOps::exists(url)) {
            Session::say(FileOpError::missing(url.name()).what());
            ++failures;
            continue;
        }
        const auto tags = TagStore::tags(url);
        if (json) {
            JSON item = JSON::object();
            item["url"] = url;
            item["tags"] = record(tags);
            records.push_back(std::move(item));
            continue;
        }
        std::vector<std::string> texts;
        for (const FinderTag& tag : tags) texts.push_back(shown(tag));
        session.out() << Terminal::escaped(path) << ": "
                      << (texts.empty() ? "—" : Text::join(texts, ", ")) << '\n';
    }
    if (json) session.out() << JSONText::pretty(records) << '\n';
    if (failures == 0) return ExitStatus::done;
    return failures == arguments.rest().size() ? ExitStatus::failed : ExitStatus::partlyFailed;
}

int runFind(const Arguments& arguments, Session& session) {
    const bool json = arguments.has("json");
    const bool paths = arguments.has("paths") || arguments.has("null");
    if (json && paths) throw UsageError("“--json” and “--paths” exclude each other.");
    const auto limit = arguments.number("limit", 1);
    const std::string name = requireName(arguments.rest()[0]);
    const auto urls =
        TagStore::filesWithTag(name, limit ? static_cast<std::size_t>(*limit) : std::string::npos);
    if (json) {
        std::vector<FileItem> items;
        for (const URL& url : urls) {
            if (auto item = FileItem::load(url)) items.push_back(*std::move(item));
        }
        Records::writeArray(session.out(), items);
        session.out() << '\n';
    } else {
        const char end = arguments.has("null") ? '\0' : '\n';
        const bool isForPeople = !paths && session.terminal().isTerminal();
        for (const URL& url : urls) {
            session.out() << (isForPeople ? Terminal::escaped(url.path()) : url.path()) << end;
        }
    }
    return urls.empty() ? ExitStatus::nothingFound : ExitStatus::done;
}

// ---- The table ----

constexpr Option listOptions[] = {CommonOptions::json};
constexpr Option findOptions[] = {
    {.name = "limit", .letter = 'n', .value = "N", .help = "Shows the first N by their paths"},
    CommonOptions::json,
    CommonOptions::paths,
    CommonOptions::null,
};

constexpr Example addExamples[] = {
    {"tarn tag add Work:blue report.pdf notes.txt", "Tags two files in blue"},
    {"tarn tag add Red invoice.pdf", "The tags of the seven colours need no colour"},
};
constexpr Example removeExamples[] = {{"tarn tag remove Work *.pdf", "Takes the tag off again"}};
constexpr Example listExamples[] = {
    {"tarn tag list", "Every tag in use, and the seven of the colours"},
    {"tarn tag list report.pdf", "The tags of a file"},
};
constexpr Example findExamples[] = {
    {"tarn tag find work", "Where the files with this tag are"},
    {"tarn tag find -0 Work | xargs -0 tar -cf work.tar", "Packs all of them"},
};
constexpr Example renameExamples[] = {{"tarn tag rename Work Job", "On every file that has it"}};
constexpr Example colourExamples[] = {{"tarn tag colour Work green", "On every file that has it"}};

constexpr Command addCommand = {
    .name = "tag add",
    .section = Section::changing,
    .summary = "Tags files and folders",
    .arguments = "NAME[:COLOUR] PATH…",
    .description =
        "Colours are red, orange, yellow, green, blue, purple, gray and none. Without one the tag "
        "has the colour that it had when it was last given one. A tag that is there already stays; "
        "with a colour it gets that. A name that holds a colon needs a colour behind it.",
    .completes = Completes::files,
    .fewest = 2,
    .examples = addExamples,
    .run = runAdd,
};
constexpr Command removeCommand = {
    .name = "tag remove",
    .section = Section::changing,
    .summary = "Takes a tag off files and folders",
    .arguments = "NAME PATH…",
    .description = "What does not have the tag is left as it is.",
    .completes = Completes::files,
    .fewest = 2,
    .examples = removeExamples,
    .run = runRemove,
};
constexpr Command listCommand = {
    .name = "tag list",
    .section = Section::changing,
    .summary = "Shows the tags of files, or all tags",
    .arguments = "[PATH…]",
    .description = "Without a PATH, every tag in use below the home folder.",
    .completes = Completes::files,
    .options = listOptions,
    .examples = listExamples,
    .run = runList,
};
constexpr Command findCommand = {
    .name = "tag find",
    .section = Section::changing,
    .summary = "Finds the files with a tag",
    .arguments = "NAME",
    .description =
        "Looks below the home folder; upper and lower case are the same. What lies in "
        "the Trash does not count.",
    .fewest = 1,
    .most = 1,
    .options = findOptions,
    .examples = findExamples,
    .run = runFind,
};
constexpr Command renameCommand = {
    .name = "tag rename",
    .section = Section::changing,
    .summary = "Gives a tag another name on all files",
    .arguments = "OLD NEW",
    .description =
        "All files below the home folder that have the tag. A file that has both tags "
        "keeps one.",
    .fewest = 2,
    .most = 2,
    .examples = renameExamples,
    .run = runRename,
};
constexpr Command colourCommand = {
    .name = "tag colour",
    .section = Section::changing,
    .summary = "Gives a tag another colour on all files",
    .arguments = "NAME COLOUR",
    .description = "All files below the home folder that have the tag.",
    .fewest = 2,
    .most = 2,
    .examples = colourExamples,
    .run = runColour,
};

constexpr const Command* commands[] = {&addCommand,  &removeCommand, &listCommand,
                                       &findCommand, &renameCommand, &colourCommand};

constexpr Example examples[] = {
    {"tarn tag add Work:blue report.pdf", "Tags a file"},
    {"tarn tag find Work", "Finds it again"},
};

}  // namespace

extern const Command tagCommand;
const Command tagCommand = {
    .name = "tag",
    .section = Section::changing,
    .summary = "Adds, removes and finds tags",
    .description = "Tags are kept with the files, where other file managers see them, too.",
    .examples = examples,
    .commands = commands,
};

}  // namespace tarn::cli
