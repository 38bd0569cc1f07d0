#include "TarnCore/files/FileKind.h"

#include <cstdint>
#include <unordered_map>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/TypeFacts.h"

namespace tarn::FileKinds {
namespace {

struct Names {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
};

constexpr std::array<Names, allFileKinds.size()> kindNames = {{
    {"folder", "Folders", "folder.fill"},
    {"image", "Images", "photo.fill"},
    {"video", "Videos", "film.fill"},
    {"audio", "Music", "music.note"},
    {"document", "Documents", "doc.text.fill"},
    {"archive", "Archives", "archivebox.fill"},
    {"app", "Apps", "app.badge.fill"},
    {"code", "Code", "chevron.left.forwardslash.chevron.right"},
    {"other", "Other", "doc.fill"},
}};

const Names& names(FileKind kind) { return kindNames[static_cast<std::size_t>(kind)]; }

/// Which tables an extension stands in, one bit each.
enum Table : std::uint8_t { archives = 1, code = 2, documents = 4, raws = 8, browsables = 16 };

constexpr std::string_view archiveExtensions[] = {
    "zip",  "tar", "gz",   "tgz", "bz2", "tbz", "xz",   "txz", "7z", "rar",
    "cpio", "lz",  "lzma", "zst", "dmg", "pkg", "mpkg", "iso", "xip"};

constexpr std::string_view codeExtensions[] = {
    "swift", "m",    "mm",    "h",       "hpp",    "c",      "cc",   "cpp",   "cs",         "java",
    "kt",    "kts",  "go",    "rs",      "rb",     "py",     "pyw",  "php",   "js",         "mjs",
    "cjs",   "jsx",  "ts",    "tsx",     "vue",    "svelte", "html", "htm",   "css",        "scss",
    "sass",  "less", "json",  "yml",     "yaml",   "toml",   "xml",  "plist", "sh",         "bash",
    "zsh",   "fish", "sql",   "graphql", "lua",    "pl",     "r",    "dart",  "scala",      "ex",
    "exs",   "erl",  "hs",    "clj",     "gradle", "cmake",  "make", "mk",    "dockerfile", "ini",
    "conf",  "env",  "ipynb", "zig",     "nim",    "jl",     "proto"};

constexpr std::string_view documentExtensions[] = {
    "pdf", "txt",   "rtf", "rtfd", "md",   "markdown", "doc", "docx",
    "odt", "pages", "xls", "xlsx", "ods",  "numbers",  "csv", "tsv",
    "ppt", "pptx",  "odp", "key",  "epub", "tex",      "log"};

constexpr std::string_view rawExtensions[] = {"cr2", "cr3", "nef", "arw", "raf",
                                              "orf", "rw2", "dng", "pef", "srw",
                                              "x3f", "3fr", "iiq", "nrw", "raw"};

/// What the archive reader lists. A single compressed file shows the one member that it holds,
/// since its extension is also that of a compressed tar.
constexpr std::string_view browsableExtensions[] = {"zip",  "tar", "gz",   "tgz", "bz2",
                                                    "tbz",  "xz",  "txz",  "7z",  "rar",
                                                    "cpio", "lz",  "lzma", "zst", "iso"};

using ExtensionTables = std::unordered_map<std::string_view, std::uint8_t>;

ExtensionTables makeTables() {
    ExtensionTables tables;
    for (const auto ext : archiveExtensions) tables[ext] |= Table::archives;
    for (const auto ext : codeExtensions) tables[ext] |= Table::code;
    for (const auto ext : documentExtensions) tables[ext] |= Table::documents;
    for (const auto ext : rawExtensions) tables[ext] |= Table::raws;
    for (const auto ext : browsableExtensions) tables[ext] |= Table::browsables;
    return tables;
}

std::uint8_t tablesOf(std::string_view lowerExt) {
    static const ExtensionTables tables = makeTables();
    const auto found = tables.find(lowerExt);
    return found == tables.end() ? std::uint8_t{0} : found->second;
}

}  // namespace

std::string_view rawValue(FileKind kind) { return names(kind).rawValue; }
std::string_view title(FileKind kind) { return names(kind).title; }
std::string_view symbol(FileKind kind) { return names(kind).symbol; }

std::optional<FileKind> fromRawValue(std::string_view raw) {
    for (const FileKind kind : allFileKinds)
        if (rawValue(kind) == raw) return kind;
    return std::nullopt;
}

FileKind classify(std::optional<std::string_view> type, std::string_view ext, bool isDirectory,
                  bool isPackage) {
    return classify(type ? typeFacts(*type) : TypeFacts{}, ext, isDirectory, isPackage);
}

FileKind classify(const TypeFacts& facts, std::string_view ext, bool isDirectory, bool isPackage) {
    if (facts.isApplication) return FileKind::app;
    const std::string lower = Text::lowercased(ext);
    if (lower == "app") return FileKind::app;
    if (isDirectory && !isPackage) return FileKind::folder;
    const std::uint8_t tables = tablesOf(lower);
    if (tables & Table::archives) return FileKind::archive;
    if (tables & Table::code) return FileKind::code;
    if (tables & Table::documents) return FileKind::document;
    if (tables & Table::raws) return FileKind::image;
    return facts.kind;
}

FileKind classify(const URL& url) {
    const auto values = ResourceReader::read(url, {});
    if (!values) return FileKind::other;
    const bool isDirectory = values->linkTargetIsDirectory.value_or(values->isDirectory);
    return classify(values->contentType, url.pathExtension(), isDirectory && !values->isPackage,
                    values->isPackage);
}

bool isArchiveExtension(std::string_view ext) { return tablesOf(ext) & Table::archives; }
bool isCodeExtension(std::string_view ext) { return tablesOf(ext) & Table::code; }
bool isDocumentExtension(std::string_view ext) { return tablesOf(ext) & Table::documents; }
bool isRawExtension(std::string_view ext) { return tablesOf(ext) & Table::raws; }
bool isBrowsableArchiveExtension(std::string_view ext) { return tablesOf(ext) & Table::browsables; }

}  // namespace tarn::FileKinds
