#include "TarnCore/index/readers/WordText.h"

#include <algorithm>

#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/readers/TextBuilder.h"
#include "TarnCore/platform/Shell.h"

namespace tarn::WordText {
namespace {

constexpr const char* program = "/usr/bin/catdoc";
constexpr double patience = 20;  // seconds; a document of 10 MB takes half of one
constexpr std::string_view linkWord = "HYPERLINK";

/// Where the instruction of a link ends that begins at `at`: its word, switches ("\\l") and targets
/// in quotes. `at` itself when there is none.
std::size_t endOfLink(std::string_view text, std::size_t at) {
    std::size_t end = at + linkWord.size();
    bool hasTarget = false;
    for (;;) {
        const std::size_t next = text.find_first_not_of(' ', end);
        if (next == text.npos) break;
        if (text[next] == '\\') {
            end = next + 2;
        } else if (text[next] == '"') {
            const std::size_t close = text.find_first_of("\"\n", next + 1);
            if (close == text.npos || text[close] == '\n') break;
            end = close + 1;
            hasTarget = true;
        } else {
            break;
        }
    }
    return hasTarget ? std::min(end, text.size()) : at;
}

}  // namespace

bool isWord(std::string_view bytes) {
    return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
}

bool isAvailable() { return access(program, X_OK) == 0; }

std::string withoutLinks(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t link = std::min(text.find(linkWord, at), text.size());
        out += text.substr(at, link - at);
        if (link == text.size()) break;
        at = endOfLink(text, link);
        if (at != link) continue;
        out += linkWord;
        at += linkWord.size();
    }
    return out;
}

std::optional<std::string> read(int file) {
    // Handed over as it is open here: a process that is locked in could not open it again.
    if (lseek(file, 0, SEEK_SET) != 0) return std::nullopt;
    try {
        const auto output =
            Shell::run(URL::fromPath(program), {"-w", "-d", "utf-8"}, std::nullopt, patience, file);
        if (output.status != 0) return std::nullopt;
        TextBuilder text;
        text.addLines(withoutLinks(Text::sanitized(output.standardOutput)));
        return text.take();
    } catch (const Error&) {
        return std::nullopt;
    }
}

}  // namespace tarn::WordText
