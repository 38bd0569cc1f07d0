#include "TarnCore/ops/Templates.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/MemoryFile.h"
#include "TarnCore/ops/OfficePackages.h"
#include "TarnCore/ops/ZipWriter.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::Templates {
namespace {

constexpr std::string_view couldNotCreate = "create the file";

constexpr std::string_view html =
    "<!DOCTYPE html>\n"
    "<html lang=\"en\">\n"
    "  <head>\n"
    "    <meta charset=\"utf-8\">\n"
    "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
    "    <title>Untitled</title>\n"
    "  </head>\n"
    "  <body>\n"
    "  </body>\n"
    "</html>\n";

struct TextTemplate {
    std::string_view id, content;
};
constexpr TextTemplate texts[] = {
    {"txt", ""},
    {"md", "# Untitled\n\n"},
    {"rtf",
     R"({\rtf1\ansi\ansicpg1252\cocoartf2822{\fonttbl\f0\fswiss\fcharset0 Helvetica;}\f0\fs24 })"},
    {"html", html},
    {"csv", "Name,Value\n"},
};

std::string zipped(const OfficePackages::Parts& parts) {
    MemoryFile file;
    ZipWriter writer(file);
    Deflater deflater;
    constexpr std::string_view first = "[Content_Types].xml";
    for (const bool isFirst : {true, false}) {
        for (const auto& [path, text] : parts) {
            if ((path == first) == isFirst)
                writer.add(ZipWriter::pack(deflater, path, text, ZipWriter::Facts()));
        }
    }
    writer.finish();
    return std::move(file.bytes);
}

/// Throws FileOpError for an id that is not built in.
std::string content(std::string_view id) {
    const auto text = std::ranges::find(texts, id, &TextTemplate::id);
    if (text != std::end(texts)) return std::string(text->content);
    const auto parts = OfficePackages::parts(id);
    if (parts.empty()) throw FileOpError::failed("Unknown template.");
    return zipped(parts);
}

/// Makes a file with `make` under the first free name, however many programs want one.
URL createFree(const URL& wanted, const auto& make) {
    for (;;) {
        const URL free = FileOps::uniqueURL(wanted);
        try {
            make(free);
            return free;
        } catch (const std::system_error& error) {
            if (error.code() != std::errc::file_exists) throw;
        }
    }
}

void copy(const URL& from, const URL& to) {
    int failure = 0;
    FileCopy::Watch watch;
    watch.failed = [&](const URL&, int errnum) { failure = errnum; };
    if (Platform::current().copying->copy(from, to, watch) != FileCopy::Outcome::complete)
        throw std::system_error(failure != 0 ? failure : EIO, std::generic_category(), "copy");
}

}  // namespace

const std::vector<FileTemplate>& builtIn() {
    static const std::vector<FileTemplate> templates = {
        {"txt", "Plain Text", "untitled.txt", "doc.plaintext", {}},
        {"md", "Markdown", "untitled.md", "text.badge.star", {}},
        {"rtf", "Rich Text", "untitled.rtf", "doc.richtext", {}},
        {"docx", "Word Document", "untitled.docx", "doc.text", {}},
        {"xlsx", "Excel Spreadsheet", "untitled.xlsx", "tablecells", {}},
        {"pptx", "PowerPoint Presentation", "untitled.pptx", "rectangle.on.rectangle", {}},
        {"html", "HTML Page", "untitled.html", "chevron.left.forwardslash.chevron.right", {}},
        {"csv", "CSV Table", "untitled.csv", "tablecells.badge.ellipsis", {}},
    };
    return templates;
}

std::vector<FileTemplate> user() {
    std::vector<FileTemplate> found;
    const URL folder = SupportDirectory::templates();
    try {
        const auto reader = Platform::current().files->openFolder(folder);
        for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
            for (const FolderEntry& entry : batch) {
                const std::string name(entry.view());
                const auto facts = reader->attributes(entry.name, Links::follow);
                if (name.starts_with('.') || !facts || facts->type != FileType::file) continue;
                const URL url = folder.appending(name);
                found.push_back({.id = url.path(),
                                 .title = FileOps::split(name).base,
                                 .fileName = name,
                                 .symbol = "doc",
                                 .sourceURL = url});
            }
        }
    } catch (const std::system_error&) {
        // Without the folder there are none.
    }
    std::ranges::sort(found, {}, [](const FileTemplate& file) {
        return std::pair(Text::folded(file.fileName), file.fileName);
    });
    return found;
}

std::vector<FileTemplate> all() {
    std::vector<FileTemplate> templates = builtIn();
    std::ranges::move(user(), std::back_inserter(templates));
    return templates;
}

FileChange create(const FileTemplate& file, const URL& folder) {
    const URL wanted = folder.appending(file.fileName);
    try {
        const URL made =
            file.sourceURL
                ? createFree(wanted, [&](const URL& free) { copy(*file.sourceURL, free); })
                : createFree(wanted, [&, bytes = content(file.id)](const URL& free) {
                      Platform::current().files->createFile(free, bytes);
                  });
        return {made, {Step::create(made)}};
    } catch (const std::system_error& error) {
        throw FileOpError::failed(FileOps::friendly(error, couldNotCreate));
    }
}

void write(std::string_view id, const URL& url) {
    const std::string bytes = content(id);
    try {
        Platform::current().files->createFile(url, bytes);
    } catch (const std::system_error& error) {
        throw FileOpError::failed(FileOps::friendly(error, couldNotCreate));
    }
}

void zipParts(const std::vector<std::pair<std::string, std::string>>& parts, const URL& url) {
    const std::string bytes = zipped(parts);
    try {
        Platform::current().files->createFile(url, bytes);
    } catch (const std::system_error& error) {
        throw FileOpError::failed(FileOps::friendly(error, couldNotCreate));
    }
}

}  // namespace tarn::Templates
