#include <algorithm>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/sources/SourceResolver.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {CommonOptions::json};

constexpr Example examples[] = {
    {"tarn info photo.jpg", "Size, dates, camera, tags and where the picture came from"},
    {"tarn info --json *.pdf", "The same for many files, as an array of records"},
};

struct Known {
    FileItem item;
    ItemMetadata metadata;
    std::optional<DownloadSource> source;
    std::optional<std::string> linkTarget;
};

Known look(FileItem item) {
    Known known{std::move(item), {}, {}, {}};
    const Platform& platform = Platform::current();
    if (!known.item.isDirectory) known.metadata = platform.metadata->read(known.item.url);
    known.source = SourceResolver::source(known.item.url);
    if (known.item.isSymlink) {
        try {
            known.linkTarget = platform.files->linkTarget(known.item.url);
        } catch (const std::system_error&) {
            // The link was replaced meanwhile.
        }
    }
    return known;
}

/// Why an item could not be looked at, as a sentence.
std::string failure(const URL& url) {
    const std::string name(url.name());
    try {
        Platform::current().files->requireAttributes(url, Links::keep);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::no_such_file_or_directory ||
            error.code() == std::errc::not_a_directory) {
            return ListingError::notFound(name).what();
        }
        if (error.code() == std::errc::permission_denied) {
            return ListingError::permissionDenied(name).what();
        }
        return "Couldn’t look at " + Text::quoted(name) + ". " +
               systemErrorSentence(error.code().value());
    }
    return ListingError::notFound(name).what();
}

JSON record(const Known& known) {
    JSON json = known.item;
    if (known.metadata != ItemMetadata{}) json["metadata"] = known.metadata;
    if (known.source) json["source"] = *known.source;
    return json;
}

using Rows = std::vector<std::pair<std::string_view, std::string>>;

void addMetadata(Rows& rows, const ItemMetadata& metadata) {
    if (metadata.lastOpened) rows.emplace_back("Last opened", Format::date(metadata.lastOpened));
    if (metadata.pixelWidth && metadata.pixelHeight) {
        rows.emplace_back("Dimensions", std::to_string(*metadata.pixelWidth) + " × " +
                                            std::to_string(*metadata.pixelHeight));
    }
    if (metadata.duration) rows.emplace_back("Duration", Format::duration(*metadata.duration));
    if (metadata.pages) rows.emplace_back("Pages", std::to_string(*metadata.pages));
    const auto add = [&](std::string_view label, const std::optional<std::string>& text) {
        if (text && !text->empty()) rows.emplace_back(label, *text);
    };
    add("Camera", metadata.camera());
    add("Lens", metadata.lens);
    add("Title", metadata.title);
    add("Artist", metadata.artist);
    add("Album", metadata.album);
    if (!metadata.codecs.empty()) rows.emplace_back("Codecs", Text::join(metadata.codecs, ", "));
}

void print(Session& session, const Known& known) {
    const FileItem& item = known.item;
    Rows rows;
    rows.emplace_back("Where", item.url.parent().path());
    if (known.linkTarget) rows.emplace_back("Link to", *known.linkTarget);
    rows.emplace_back("Kind", item.kindDescription);
    if (item.size) {
        std::string size = Format::bytes(*item.size);
        if (*item.size >= 1000) size += " (" + Format::count(*item.size, "byte") + ")";
        rows.emplace_back("Size", std::move(size));
    }
    if (item.created) rows.emplace_back("Created", Format::date(item.created));
    if (item.modified) rows.emplace_back("Modified", Format::date(item.modified));
    if (item.added) rows.emplace_back("Added", Format::date(item.added));
    addMetadata(rows, known.metadata);
    if (!item.tags.empty()) rows.emplace_back("Tags", Text::join(item.tags, ", "));
    if (known.source) {
        std::string text = known.source->name;
        if (known.source->app && *known.source->app != text) text += ", with " + *known.source->app;
        rows.emplace_back("From", std::move(text));
        if (known.source->pageURL) rows.emplace_back("Page", *known.source->pageURL);
    }

    std::size_t widest = 0;
    for (const auto& [label, text] : rows) widest = std::max(widest, label.size());
    std::string& out = session.out().buffer();
    session.terminal().append(out,
                              item.isDirectory ? Terminal::Style::folder : Terminal::Style::bold,
                              Terminal::escaped(item.name));
    out += '\n';
    for (const auto& [label, text] : rows) {
        std::string padded = "  " + std::string(label);
        padded.resize(widest + 4, ' ');
        session.terminal().append(out, Terminal::Style::dim, padded);
        out += Terminal::escaped(text) + '\n';
    }
}

int run(const Arguments& arguments, Session& session) {
    const bool json = arguments.has("json");
    if (!json) session.useLocaleForFormats();
    JSON records = JSON::array();
    std::size_t found = 0;
    for (const std::string_view path : arguments.rest()) {
        const URL url = session.url(path);
        auto item = FileItem::load(url);
        if (!item) {
            Session::say(failure(url));
            continue;
        }
        const Known known = look(*std::move(item));
        if (json) {
            records.push_back(record(known));
        } else {
            if (found > 0) session.out() << '\n';
            print(session, known);
        }
        ++found;
    }
    if (json) session.out() << JSONText::pretty(records) << '\n';
    if (found == arguments.rest().size()) return ExitStatus::done;
    return found == 0 ? ExitStatus::failed : ExitStatus::partlyFailed;
}

}  // namespace

extern const Command infoCommand;
const Command infoCommand = {
    .name = "info",
    .section = Section::looking,
    .summary = "Shows what is known about files and folders",
    .arguments = "PATH…",
    .description =
        "Links are described themselves, not what they lead to. With “--json” the result "
        "is an array with one record for each PATH that is there.",
    .completes = Completes::files,
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
