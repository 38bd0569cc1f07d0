#include "cli/Explanation.h"

#include "TarnCore/base/JSON.h"

namespace tarn::cli::Explanation {
namespace {

const char* title(TextMatch::Reason reason) {
    switch (reason) {
        case TextMatch::Reason::text:
            return "Text";
        case TextMatch::Reason::textInImage:
            return "Text in image";
        case TextMatch::Reason::name:
            break;
    }
    return "Name";
}

}  // namespace

void appendLine(std::string& out, const Terminal& terminal, const TextMatch& match) {
    using Style = Terminal::Style;
    const auto append = [&](Style style, std::string_view text) {
        terminal.append(out, style, Terminal::escaped(text));
    };
    std::string start = std::string("    ") + title(match.reason);
    if (!match.snippet.empty()) start += ": ";
    append(Style::dim, start);
    const std::string_view snippet = match.snippet;
    std::size_t at = 0;
    for (const TextRange& range : match.ranges) {
        if (at < range.begin) append(Style::dim, snippet.substr(at, range.begin - at));
        append(Style::bold, snippet.substr(range.begin, range.end - range.begin));
        at = range.end;
    }
    if (at < snippet.size()) append(Style::dim, snippet.substr(at));
    out += '\n';
}

void appendRecord(std::string& out, const FileItem& item, const TextMatch& match) {
    JSONWriter whole(out);
    write(whole, item);
    out.pop_back();  // The closing brace: one more key follows.
    out += ",\"match\":";
    JSONWriter json(out);
    json.beginObject();
    json.key("reason");
    json.string(TextMatch::rawValue(match.reason));
    if (!match.snippet.empty()) {
        json.key("snippet");
        json.string(match.snippet);
        json.key("ranges");
        json.beginArray();
        for (const TextRange& range : match.ranges) {
            json.beginArray();
            json.integer(static_cast<std::int64_t>(range.begin));
            json.integer(static_cast<std::int64_t>(range.end));
            json.endArray();
        }
        json.endArray();
    }
    json.endObject();
    out += '}';
}

}  // namespace tarn::cli::Explanation
