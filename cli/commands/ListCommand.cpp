#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/JSON.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/SortOrder.h"
#include "TarnCore/sources/SourceResolver.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderNames.h"
#include "cli/Records.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "all", .letter = 'a', .help = "Shows hidden items too"},
    {.name = "sort",
     .value = "name|modified|created|added|size|kind|source|tags",
     .help = "Sorts by this instead of the name; dates begin with the newest, sizes with the "
             "largest"},
    {.name = "reverse", .letter = 'r', .help = "Turns the order round"},
    {.name = "no-folders-first", .help = "Sorts folders in among the files"},
    {.name = "group",
     .value = "kind|modified|created|added|size|tags",
     .help = "Puts the items under headings"},
    CommonOptions::json,
    CommonOptions::paths,
    CommonOptions::null,
};

constexpr Example examples[] = {
    {"tarn list", "What is in the current folder"},
    {"tarn list --sort modified ~/Downloads", "The newest files first"},
    {"tarn list --group kind --json ~/Documents", "Groups of records for a program"},
    {"tarn list -0 | xargs -0 file", "Hands every file to another program, whatever its name"},
};

SortOrder sortOrder(const Arguments& arguments) {
    SortOrder order;
    if (const auto field = arguments.value("sort")) order.field = *SortFields::fromRawValue(*field);
    order.ascending = SortFields::startsAscending(order.field) != arguments.has("reverse");
    order.foldersFirst = !arguments.has("no-folders-first");
    return order;
}

/// Whether the answer shows something that lies in attributes: tags, or the date of arrival.
bool needsAttributes(bool json, SortField sort, GroupField group) {
    return json || sort == SortField::tags || sort == SortField::added ||
           group == GroupField::tags || group == GroupField::added;
}

std::optional<std::string> sourceName(const URL& url) {
    auto source = SourceResolver::source(url);
    if (!source) return std::nullopt;
    return std::move(source->name);
}

// ---- For people ----

std::optional<Date> shownDate(const FileItem& item, SortField field) {
    if (field == SortField::created) return item.created;
    if (field == SortField::added) return item.added;
    return item.modified;
}

std::string_view dateHeading(SortField field) {
    if (field == SortField::created) return "Created";
    if (field == SortField::added) return "Added";
    return "Modified";
}

/// The three columns before the name, and how wide each must be.
class Table {
public:
    explicit Table(SortField field) : field_(field) { widen({"Size", dateHeading(field), "Kind"}); }

    void measure(const FileItem& item) { widen(cells(item)); }

    void appendHeading(const Terminal& terminal, std::string& out) const {
        std::string line;
        appendCells(line, {"Size", dateHeading(field_), "Kind"});
        terminal.append(out, Terminal::Style::dim, line + "Name");
        out += '\n';
    }

    void append(const Terminal& terminal, std::string& out, const FileItem& item) const {
        std::string line;
        appendCells(line, cells(item));
        terminal.append(out, Terminal::Style::dim, line);
        const auto style = item.isDirectory ? Terminal::Style::folder
                           : item.isSymlink ? Terminal::Style::link
                                            : Terminal::Style::plain;
        terminal.append(out, style, Terminal::escaped(item.name));
        out += item.isDirectory ? "/\n" : "\n";
    }

private:
    struct Cells {
        std::string size, date, kind;
        Cells(std::string_view s, std::string_view d, std::string_view k)
            : size(s), date(d), kind(k) {}
    };

    Cells cells(const FileItem& item) const {
        return {item.size ? Format::bytes(*item.size) : "—", Format::date(shownDate(item, field_)),
                Terminal::escaped(item.kindDescription)};
    }

    void widen(const Cells& cells) {
        size_ = std::max(size_, Terminal::width(cells.size));
        date_ = std::max(date_, Terminal::width(cells.date));
        kind_ = std::max(kind_, Terminal::width(cells.kind));
    }

    void appendCells(std::string& line, const Cells& cells) const {
        line.append(size_ - Terminal::width(cells.size), ' ');
        line += cells.size + "  " + cells.date;
        line.append(date_ - Terminal::width(cells.date) + 2, ' ');
        line += cells.kind;
        line.append(kind_ - Terminal::width(cells.kind) + 2, ' ');
    }

    SortField field_;
    std::size_t size_ = 0, date_ = 0, kind_ = 0;
};

void printTable(Session& session, const std::vector<FileGroup>& groups, SortField field) {
    session.useLocaleForFormats();
    const Terminal& terminal = session.terminal();
    Output& out = session.out();
    Table table(field);
    bool isEmpty = true;
    for (const FileGroup& group : groups) {
        for (const FileItem& item : group.items) {
            table.measure(item);
            isEmpty = false;
        }
    }
    if (isEmpty) return;
    table.appendHeading(terminal, out.buffer());
    for (const FileGroup& group : groups) {
        if (!group.title.empty()) {
            if (&group != &groups.front()) out << '\n';
            terminal.append(out.buffer(), Terminal::Style::heading, Terminal::escaped(group.title));
            out << '\n';
        }
        for (const FileItem& item : group.items) {
            table.append(terminal, out.buffer(), item);
            out.flushIfLarge();
        }
    }
}

/// Where the output is read by a program or kept in a file: one name a line, as it is on the disk.
void printNames(Session& session, const std::vector<FileGroup>& groups) {
    Output& out = session.out();
    for (const FileGroup& group : groups) {
        if (!group.title.empty()) {
            if (&group != &groups.front()) out << '\n';
            out << group.title << ":\n";
        }
        for (const FileItem& item : group.items) {
            out << item.url.name() << '\n';
            out.flushIfLarge();
        }
    }
}

// ---- For programs ----

void printGroups(Output& out, std::vector<FileGroup>& groups) {
    out << '[';
    for (FileGroup& group : groups) {
        if (&group != &groups.front()) out << ",\n";
        out << "{\"title\":";
        JSONWriter(out.buffer()).string(group.title);
        out << ",\"items\":";
        Records::writeArray(out, group.items);
        out << '}';
    }
    out << "]\n";
}

void printFast(Session& session, const URL& folder, bool includeHidden, const SortOrder& order,
               std::optional<char> pathEnd) {
    FolderNames names(folder, includeHidden);
    names.sort(order.ascending, order.foldersFirst);
    Output& out = session.out();
    std::string prefix;
    if (pathEnd) prefix = folder.isRoot() ? "/" : folder.path() + '/';
    for (std::size_t i = 0; i < names.count(); ++i) {
        out << prefix << names[i] << pathEnd.value_or('\n');
        out.flushIfLarge();
    }
}

int run(const Arguments& arguments, Session& session) {
    const bool json = arguments.has("json");
    const bool paths = arguments.has("paths") || arguments.has("null");
    if (json && paths) throw UsageError("“--json” and “--paths” exclude each other.");
    const URL folder =
        arguments.rest().empty() ? session.currentFolder() : session.url(arguments.rest()[0]);
    const bool includeHidden = arguments.has("all");
    const SortOrder order = sortOrder(arguments);
    GroupField grouping = GroupField::none;
    if (const auto field = arguments.value("group")) grouping = *FileGrouping::fromRawValue(*field);
    const bool isGrouped = grouping != GroupField::none;
    const char pathEnd = arguments.has("null") ? '\0' : '\n';

    const bool namesOnly = !json && (paths || !session.terminal().isTerminal());
    if (namesOnly && order.field == SortField::name && !isGrouped) {
        printFast(session, folder, includeHidden, order,
                  paths ? std::optional(pathEnd) : std::nullopt);
        return ExitStatus::done;
    }

    // Static, so that nobody waits for 100,000 records to be taken apart before the process ends.
    static std::vector<FileItem> items;
    static std::vector<FileGroup> groups;
    using DirectoryLister::AttributeReading;
    items = DirectoryLister::list(folder, includeHidden, {},
                                  needsAttributes(json, order.field, grouping)
                                      ? AttributeReading::always
                                      : AttributeReading::deferredWhenMany);
    const SortOrder::Source source =
        order.field == SortField::source ? sourceName : SortOrder::Source();
    if (json && !isGrouped) {
        Records::writeArray(session.out(), items, order.sortedIndexes(items, {}, source));
        session.out() << '\n';
        return ExitStatus::done;
    }
    items = order.sort(std::move(items), {}, source);
    if (isGrouped) {
        groups = FileGrouping::groups(std::move(items), grouping, session.now(), session.calendar(),
                                      session.locale());
    } else {
        groups.push_back({"", std::move(items)});
    }

    if (json) {
        printGroups(session.out(), groups);
    } else if (paths) {
        for (const FileGroup& group : groups) {
            for (const FileItem& item : group.items) {
                Records::writePath(session.out(), item, pathEnd);
                session.out().flushIfLarge();
            }
        }
    } else if (session.terminal().isTerminal()) {
        printTable(session, groups, order.field);
    } else {
        printNames(session, groups);
    }
    return ExitStatus::done;
}

}  // namespace

extern const Command listCommand;
const Command listCommand = {
    .name = "list",
    .section = Section::looking,
    .summary = "Lists a folder",
    .arguments = "[DIR]",
    .description =
        "Shows one level of DIR, or of the current folder: sizes, dates, kinds and names on a "
        "terminal, else one name a line, byte for byte.",
    .completes = Completes::folders,
    .most = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
