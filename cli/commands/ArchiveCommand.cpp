#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/ops/FileOpError.h"
#include "TarnCore/ops/Subject.h"
#include "cli/Arguments.h"
#include "cli/Changes.h"
#include "cli/Command.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

// ---- Looking ----

void printRecords(Output& out, const std::vector<ArchiveEntry>& entries) {
    out << '[';
    for (const ArchiveEntry& entry : entries) {
        if (&entry != &entries.front()) out << ",\n";
        JSONWriter writer(out.buffer());
        writer.beginObject();
        writer.key("path");
        writer.string(entry.path);
        writer.key("isDirectory");
        writer.boolean(entry.isDirectory);
        writer.key("size");
        writer.integer(entry.size);
        if (entry.modified) {
            writer.key("modified");
            writer.date(*entry.modified);
        }
        writer.endObject();
        out.flushIfLarge();
    }
    out << "]\n";
}

void printPaths(Output& out, const std::vector<ArchiveEntry>& entries) {
    for (const ArchiveEntry& entry : entries) {
        out << entry.path << (entry.isDirectory ? "/\n" : "\n");
        out.flushIfLarge();
    }
}

void printTable(Session& session, const std::vector<ArchiveEntry>& entries) {
    session.useLocaleForFormats();
    struct Row {
        std::string size, date;
    };
    std::vector<Row> rows;
    std::size_t widestSize = std::string_view("Size").size();
    std::size_t widestDate = std::string_view("Modified").size();
    for (const ArchiveEntry& entry : entries) {
        Row row{entry.isDirectory ? "—" : Format::bytes(entry.size), Format::date(entry.modified)};
        widestSize = std::max(widestSize, Terminal::width(row.size));
        widestDate = std::max(widestDate, Terminal::width(row.date));
        rows.push_back(std::move(row));
    }
    if (rows.empty()) return;
    const Terminal& terminal = session.terminal();
    Output& out = session.out();
    const auto append = [&](const std::string& size, const std::string& date) {
        std::string line(widestSize - Terminal::width(size), ' ');
        line += size + "  " + date;
        line.append(widestDate - Terminal::width(date) + 2, ' ');
        terminal.append(out.buffer(), Terminal::Style::dim, line);
    };
    append("Size", "Modified");
    terminal.append(out.buffer(), Terminal::Style::dim, "Path");
    out << '\n';
    for (std::size_t i = 0; i < rows.size(); ++i) {
        append(rows[i].size, rows[i].date);
        terminal.append(out.buffer(),
                        entries[i].isDirectory ? Terminal::Style::folder : Terminal::Style::plain,
                        Terminal::escaped(entries[i].path));
        out << (entries[i].isDirectory ? "/\n" : "\n");
        out.flushIfLarge();
    }
}

int runList(const Arguments& arguments, Session& session) {
    // Static, so that nobody waits for it to be taken apart before the process ends.
    static std::vector<ArchiveEntry> entries;
    entries = ArchiveReader::entries(session.url(arguments.rest()[0]));
    if (arguments.has("json")) {
        printRecords(session.out(), entries);
    } else if (session.terminal().isTerminal()) {
        printTable(session, entries);
    } else {
        printPaths(session.out(), entries);
    }
    return ExitStatus::done;
}

// ---- Changing ----

/// Runs a job with progress on the terminal, and Ctrl-C as its cancel. Absent when cancelled.
template <class Job>
auto watched(Session& session, std::string_view doing, Job&& job)
    -> std::optional<decltype(job(std::declval<ArchiveReader::Watch>()))> {
    const CancelToken token;
    const Interrupt::Cancels cancels(token);
    Progress line(!session.quiet());
    ArchiveReader::Watch watch;
    watch.token = token;
    watch.progress = [&](const ArchiveReader::Progress& progress) {
        std::string text(doing);
        if (progress.totalBytes > 0) {
            const double part =
                static_cast<double>(progress.doneBytes) / static_cast<double>(progress.totalBytes);
            text += " " + std::to_string(static_cast<int>(std::clamp(part, 0.0, 1.0) * 100)) + " %";
        }
        if (!progress.currentName.empty()) text += "  " + progress.currentName;
        line.show(Terminal::escaped(text));
    };
    try {
        return job(watch);
    } catch (const ArchiveError& error) {
        if (error.reason() == ArchiveError::Reason::cancelled) return std::nullopt;
        throw;
    }
}

void record(OperationKind kind, std::string title, const std::vector<URL>& made) {
    std::vector<Step> steps;
    for (const URL& url : made) steps.push_back(Step::create(url));
    Changes::record(kind, std::move(title), std::move(steps),
                    static_cast<std::int64_t>(made.size()));
}

void printMade(Session& session, const std::vector<URL>& made) {
    const bool isForPeople = session.terminal().isTerminal();
    for (const URL& url : made)
        session.out() << (isForPeople ? Terminal::escaped(url.path()) : url.path()) << '\n';
}

int runExtract(const Arguments& arguments, Session& session) {
    const URL archive = session.url(arguments.rest()[0]);
    std::optional<URL> folder;
    if (arguments.rest().size() > 1) folder = session.url(arguments.rest()[1]);
    const auto made = watched(session, "Unpacking…", [&](const ArchiveReader::Watch& watch) {
        if (folder) return ArchiveReader::extract(archive, *folder, watch);
        return std::vector{ArchiveReader::extractAll(archive, watch)};
    });
    if (!made) return ExitStatus::cancelled;
    record(OperationKind::extract, "Extract " + Text::quoted(archive.name()), *made);
    // With folders above it that were missing too, the folder that was asked for is the answer.
    const bool isInside = folder && made->size() == 1 && folder->isInside(made->front());
    printMade(session, isInside ? std::vector{*folder} : *made);
    return ExitStatus::done;
}

int runCompress(const Arguments& arguments, Session& session) {
    std::vector<URL> urls;
    for (const std::string_view path : arguments.rest()) urls.push_back(session.url(path));
    const auto made = watched(session, "Compressing…", [&](const ArchiveReader::Watch& watch) {
        return ArchiveReader::compress(urls, watch);
    });
    if (!made) return ExitStatus::cancelled;
    record(OperationKind::compress, "Compress " + Subject::of(urls), {*made});
    printMade(session, {*made});
    return ExitStatus::done;
}

// ---- The table ----

constexpr Option listOptions[] = {CommonOptions::json};

constexpr Example listExamples[] = {
    {"tarn archive list photos.zip", "Everything in it, with sizes and dates"},
    {"tarn archive list --json backup.tar.gz", "The same as an array of records"},
};
constexpr Example extractExamples[] = {
    {"tarn archive extract photos.zip", "Unpacks next to the archive"},
    {"tarn archive extract backup.tar.gz ~/old", "Unpacks into a folder, which is made if need be"},
};
constexpr Example compressExamples[] = {
    {"tarn archive compress report.pdf", "Makes report.zip beside it"},
    {"tarn archive compress Photos Music", "Makes Archive.zip with both"},
};

constexpr Command listCommand = {
    .name = "archive list",
    .section = Section::changing,
    .summary = "Shows what is in an archive",
    .arguments = "FILE",
    .description =
        "Sizes, dates and paths on a terminal, else one path a line, byte for byte; those of "
        "folders end in “/”. Reads zip, tar (compressed or not), 7z, rar, iso, cpio and more, and "
        "single files compressed with gzip, bzip2, xz, zstd or lzip.",
    .completes = Completes::files,
    .fewest = 1,
    .most = 1,
    .options = listOptions,
    .examples = listExamples,
    .run = runList,
};
constexpr Command extractCommand = {
    .name = "archive extract",
    .section = Section::changing,
    .summary = "Unpacks an archive",
    .arguments = "FILE [DIR]",
    .description =
        "With DIR straight into it. Without it next to the archive: the one item that it holds, "
        "or a folder with the archive’s name. Prints what was made.\n"
        "Nothing is ever overwritten: names that are taken get a number. An archive that cannot "
        "be unpacked whole leaves nothing behind, nor does Ctrl-C.",
    .completes = Completes::files,
    .fewest = 1,
    .most = 2,
    .examples = extractExamples,
    .run = runExtract,
};
constexpr Command compressCommand = {
    .name = "archive compress",
    .section = Section::changing,
    .summary = "Makes a zip archive",
    .arguments = "PATH…",
    .description =
        "One item becomes an archive with its name beside it, several become “Archive.zip” beside "
        "the first. Prints where it is. Ctrl-C leaves nothing behind.",
    .completes = Completes::files,
    .fewest = 1,
    .examples = compressExamples,
    .run = runCompress,
};

constexpr const Command* commands[] = {&listCommand, &extractCommand, &compressCommand};

constexpr Example examples[] = {
    {"tarn archive extract photos.zip", "Unpacks next to the archive"},
    {"tarn archive compress Photos", "Makes Photos.zip"},
};

}  // namespace

extern const Command archiveCommand;
const Command archiveCommand = {
    .name = "archive",
    .section = Section::changing,
    .summary = "Looks into archives, unpacks and makes them",
    .description = "“archive list” changes nothing; the others can be undone.",
    .examples = examples,
    .commands = commands,
};

}  // namespace tarn::cli
