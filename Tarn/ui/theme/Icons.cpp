#include "Tarn/ui/theme/Icons.h"

#include <array>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include <QtCore/QFile>
#include <QtCore/QString>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/ItemIconEngine.h"
#include "Tarn/ui/theme/PictureIconEngine.h"
#include "Tarn/ui/theme/SymbolIconEngine.h"
#include "TarnCore/files/Paths.h"

static void loadIconResources() {
    // The icons lie in a static library, where nothing else would pull them in.
    Q_INIT_RESOURCE(Icons);
}

namespace tarn::Icons {
namespace {

using namespace Qt::StringLiterals;
using Shape = ItemIconEngine::Shape;

QString resourceName(std::string_view name) {
    static const bool loaded = (loadIconResources(), true);
    Q_UNUSED(loaded);
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

/// What a document is, more finely than its kind; by extension.
enum class Paper { plain, text, pdf, sheet, slides, book, font };

Paper paper(const std::string& ext) {
    static const std::unordered_map<std::string, Paper> table = {
        {"pdf", Paper::pdf},    {"xls", Paper::sheet},     {"xlsx", Paper::sheet},
        {"ods", Paper::sheet},  {"numbers", Paper::sheet}, {"csv", Paper::sheet},
        {"tsv", Paper::sheet},  {"ppt", Paper::slides},    {"pptx", Paper::slides},
        {"odp", Paper::slides}, {"key", Paper::slides},    {"epub", Paper::book},
        {"mobi", Paper::book},  {"azw3", Paper::book},     {"ttf", Paper::font},
        {"otf", Paper::font},   {"woff", Paper::font},     {"woff2", Paper::font},
    };
    const auto found = table.find(ext);
    return found == table.end() ? Paper::plain : found->second;
}

QIcon paperIcon(Paper kind, FileKind fallback) {
    static std::map<std::pair<Paper, FileKind>, QIcon> icons;
    auto [slot, isNew] = icons.try_emplace({kind, fallback});
    if (!isNew) return slot->second;
    const Colors& colors = Colors::current();
    ItemIconEngine::Design design{Shape::page, u"text.alignleft"_s, colors.kind(fallback)};
    switch (kind) {
        case Paper::pdf:
            design = {Shape::page, u"label.pdf"_s, QColor(0xD2453D)};
            break;
        case Paper::sheet:
            design = {Shape::page, u"tablecells"_s, QColor(0x2C9A5B)};
            break;
        case Paper::slides:
            design = {Shape::page, u"chart.bar"_s, QColor(0xDB7A24)};
            break;
        case Paper::book:
            design = {Shape::page, u"book"_s, QColor(0x8A5BD0)};
            break;
        case Paper::font:
            design = {Shape::page, u"textformat"_s, QColor(0x5B636C)};
            break;
        case Paper::text:
        case Paper::plain:
            break;
    }
    slot->second = QIcon(new ItemIconEngine(design));
    return slot->second;
}

QIcon kindIcon(FileKind kind) {
    static std::array<QIcon, allFileKinds.size()> icons;
    QIcon& icon = icons[static_cast<std::size_t>(kind)];
    if (!icon.isNull()) return icon;
    const QColor color = Colors::current().kind(kind);
    ItemIconEngine::Design design{Shape::page, {}, color};
    switch (kind) {
        case FileKind::folder:
            design.shape = Shape::folder;
            break;
        case FileKind::archive:
            design.shape = Shape::box;
            break;
        case FileKind::app:
            design = {Shape::tile, u"terminal"_s, color};
            break;
        case FileKind::image:
            design.symbol = u"photo.fill"_s;
            break;
        case FileKind::video:
            design.symbol = u"film.fill"_s;
            break;
        case FileKind::audio:
            design.symbol = u"music.note"_s;
            break;
        case FileKind::code:
            design.symbol = u"chevron.left.forwardslash.chevron.right"_s;
            break;
        case FileKind::document:
        case FileKind::other:
            break;
    }
    icon = QIcon(new ItemIconEngine(design));
    return icon;
}

/// The symbol on one of the user's own folders; empty for any other.
std::string_view folderSymbol(const URL& url) {
    struct Known {
        URL url;
        std::string_view symbol;
    };
    static const std::array known = {
        Known{Paths::home(), "house"},         Known{Paths::desktop(), "menubar.dock.rectangle"},
        Known{Paths::documents(), "doc.text"}, Known{Paths::downloads(), "arrow.down"},
        Known{Paths::pictures(), "photo"},     Known{Paths::movies(), "film"},
        Known{Paths::music(), "music.note"},
    };
    for (const Known& one : known)
        if (one.url == url) return one.symbol;
    return {};
}

}  // namespace

bool hasSymbol(std::string_view name) {
    return !name.empty() && QFile::exists(u":/tarn/icons/"_s + resourceName(name) + u".svg"_s);
}

QIcon symbol(std::string_view name, Tint tint) {
    // Rows ask for theirs whenever they are drawn.
    static std::map<Tint, std::map<std::string, QIcon, std::less<>>> tints;
    auto& icons = tints[tint];
    if (const auto known = icons.find(name); known != icons.end()) return known->second;
    const QString drawn = resourceName(hasSymbol(name) ? name : std::string_view("doc"));
    return icons.emplace(name, QIcon(new SymbolIconEngine(drawn, tint))).first->second;
}

QIcon application() {
    // Not by the name of its file, for which all plugins for icons and pictures would be loaded.
    return QIcon(new PictureIconEngine(resourceName("application")));
}

QIcon folder(std::string_view symbol) {
    if (symbol.empty()) return kindIcon(FileKind::folder);
    static std::map<std::string, QIcon, std::less<>> icons;
    auto found = icons.find(symbol);
    if (found == icons.end()) {
        const ItemIconEngine::Design design{Shape::folder, resourceName(symbol), QColor(0x23639F)};
        found = icons.emplace(std::string(symbol), QIcon(new ItemIconEngine(design))).first;
    }
    return found->second;
}

QIcon forItem(const FileItem& item) {
    static const bool loaded = (loadIconResources(), true);
    Q_UNUSED(loaded);
    if (item.isDirectory) return folder(folderSymbol(item.url));
    if (item.kind == FileKind::document || item.kind == FileKind::other) {
        const Paper kind = paper(item.fileExtension());
        if (kind != Paper::plain || item.kind == FileKind::document)
            return paperIcon(kind, item.kind);
    }
    return kindIcon(item.kind);
}

}  // namespace tarn::Icons
