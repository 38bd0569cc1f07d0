#include "TarnCore/preview/PreviewKind.h"

#include <algorithm>
#include <string_view>

#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn::PreviewKinds {
namespace {

template <std::size_t count>
bool isOneOf(std::string_view ext, const std::string_view (&all)[count]) {
    return std::ranges::find(all, ext) != std::end(all);
}

constexpr std::string_view tables[] = {"csv", "tsv", "xlsx", "xlsm", "ods"};
constexpr std::string_view fonts[] = {"ttf", "otf", "ttc", "otc", "woff", "woff2", "pfb", "pcf"};
/// Packed documents that no reader of ours opens, and bytes that only look like text.
constexpr std::string_view closed[] = {"xls",  "ppt", "pages", "numbers", "key", "epub", "mobi",
                                       "azw3", "psd", "ai",    "sqlite",  "db",  "so",   "o",
                                       "a",    "bin", "dat",   "exe",     "dll", "class"};

}  // namespace

PreviewKind of(const FileItem& item) {
    if (item.isDirectory) return PreviewKind::folder;
    if (item.isPackage) return PreviewKind::icon;
    const std::string ext = item.fileExtension();
    if (ext == "pdf") return PreviewKind::pdf;
    if (isOneOf(ext, tables)) return PreviewKind::table;
    if (isOneOf(ext, fonts)) return PreviewKind::font;
    switch (item.kind) {
        case FileKind::image:
            return PreviewKind::image;
        case FileKind::video:
        case FileKind::audio:
            return PreviewKind::media;
        case FileKind::archive:
            return item.isBrowsable() ? PreviewKind::archive : PreviewKind::icon;
        case FileKind::app:
            return ext == "desktop" ? PreviewKind::text : PreviewKind::icon;
        case FileKind::folder:
            return PreviewKind::folder;
        case FileKind::document:
        case FileKind::code:
        case FileKind::other:
            break;
    }
    if (isOneOf(ext, closed)) return PreviewKind::icon;
    const auto method = TextExtractor::method(item.name);
    // The text of a web page is what one reads; of other code it is the code.
    if (method && *method != TextExtractor::Method::plain && item.kind != FileKind::code)
        return PreviewKind::document;
    if (ext == "ipynb") return PreviewKind::document;
    if (method == TextExtractor::Method::plain && !PlainText::isPlain(item.name))
        return PreviewKind::document;  // mail
    return PreviewKind::text;
}

}  // namespace tarn::PreviewKinds
