#include "TarnCore/search/SpotlightQuery.h"

#include <span>
#include <vector>

#include "TarnCore/base/Text.h"

namespace tarn::SpotlightQuery {
namespace {

using Predicates = std::span<const std::string_view>;

constexpr std::string_view pdf[] = {R"(kMDItemContentTypeTree == "com.adobe.pdf")"};
constexpr std::string_view image[] = {R"(kMDItemContentTypeTree == "public.image")"};
constexpr std::string_view screenshot[] = {"kMDItemIsScreenCapture == 1",
                                           R"(kMDItemFSName == "Screenshot*"c)",
                                           R"(kMDItemFSName == "Screen Shot*"c)"};
constexpr std::string_view screenRecording[] = {R"(kMDItemFSName == "Screen Recording*"c)"};
constexpr std::string_view video[] = {R"(kMDItemContentTypeTree == "public.movie")"};
constexpr std::string_view audio[] = {R"(kMDItemContentTypeTree == "public.audio")"};
constexpr std::string_view document[] = {R"(kMDItemContentTypeTree == "public.content")"};
constexpr std::string_view spreadsheet[] = {
    R"(kMDItemContentTypeTree == "public.spreadsheet")",
    R"(kMDItemContentTypeTree == "public.comma-separated-values-text")"};
constexpr std::string_view presentation[] = {R"(kMDItemContentTypeTree == "public.presentation")"};
constexpr std::string_view archive[] = {R"(kMDItemContentTypeTree == "public.archive")"};
constexpr std::string_view installer[] = {
    R"(kMDItemContentTypeTree == "public.disk-image")",
    R"(kMDItemContentTypeTree == "com.apple.installer-package-archive")"};
constexpr std::string_view raw[] = {R"(kMDItemContentTypeTree == "public.camera-raw-image")"};
constexpr std::string_view code[] = {R"(kMDItemContentTypeTree == "public.source-code")",
                                     R"(kMDItemContentTypeTree == "public.script")"};
constexpr std::string_view folder[] = {R"(kMDItemContentTypeTree == "public.folder")"};
constexpr std::string_view app[] = {R"(kMDItemContentTypeTree == "com.apple.application")"};
constexpr std::string_view text_[] = {R"(kMDItemContentTypeTree == "public.plain-text")"};
constexpr std::string_view font[] = {R"(kMDItemContentTypeTree == "public.font")"};
constexpr std::string_view ebook[] = {R"(kMDItemContentTypeTree == "org.idpf.epub-container")"};

Predicates predicates(SearchKind kind) {
    switch (kind) {
        case SearchKind::pdf:
            return pdf;
        case SearchKind::image:
            return image;
        case SearchKind::photo:
            return image;  // The local test tells photos from other images.
        case SearchKind::screenshot:
            return screenshot;
        case SearchKind::screenRecording:
            return screenRecording;
        case SearchKind::video:
            return video;
        case SearchKind::audio:
            return audio;
        case SearchKind::document:
            return document;
        case SearchKind::spreadsheet:
            return spreadsheet;
        case SearchKind::presentation:
            return presentation;
        case SearchKind::archive:
            return archive;
        case SearchKind::installer:
            return installer;
        case SearchKind::raw:
            return raw;
        case SearchKind::code:
            return code;
        case SearchKind::folder:
            return folder;
        case SearchKind::app:
            return app;
        case SearchKind::text:
            return text_;
        case SearchKind::font:
            return font;
        case SearchKind::ebook:
            return ebook;
    }
    return {};
}

std::string_view attribute(DateField field) {
    switch (field) {
        case DateField::modified:
            return "kMDItemFSContentChangeDate";
        case DateField::created:
            return "kMDItemFSCreationDate";
        case DateField::added:
            return "kMDItemDateAdded";
        case DateField::opened:
            return "kMDItemLastUsedDate";
    }
    return {};
}

std::string escaped(std::string_view value) {
    return Text::replacing(Text::replacing(value, "\\", "\\\\"), "\"", "\\\"");
}

/// `name == "*value*"flags`
std::string holds(std::string_view name, std::string_view value, std::string_view flags) {
    return std::string(name) + " == \"*" + escaped(value) + "*\"" + std::string(flags);
}

std::string contentHolds(std::string_view value) {
    return "kMDItemTextContent == \"" + escaped(value) + "*\"cdw";
}

std::string alternatives(const std::vector<std::string>& predicates) {
    const std::string all = Text::join(predicates, " || ");
    return predicates.size() > 1 ? "(" + all + ")" : all;
}

std::string cameraClause(std::string_view camera) {
    const std::string word = cameraWord(camera);
    const std::string model = holds("kMDItemAcquisitionModel", word, "cd");
    if (isModelOnly(word)) return model;
    return alternatives({holds("kMDItemAcquisitionMake", word, "cd"), model});
}

}  // namespace

std::string cameraWord(std::string_view camera) {
    std::string lower = Text::lowercased(camera);
    return lower == "fujifilm" ? "fuji" : lower;
}

bool isModelOnly(std::string_view cameraWord) { return cameraWord == "pixel"; }

std::optional<std::string> text(const SearchQuery& query) {
    std::vector<std::string> clauses;
    for (const std::string& term : query.terms)
        clauses.push_back(alternatives({holds("kMDItemFSName", term, "cd"), contentHolds(term)}));
    for (const std::string& phrase : query.containing) clauses.push_back(contentHolds(phrase));
    if (query.textInImages)
        clauses.push_back(
            R"((kMDItemContentTypeTree == "public.image" && kMDItemTextContent == "*"))");

    std::vector<std::string> types;
    for (const SearchKind kind : query.kinds)
        for (const std::string_view predicate : predicates(kind)) types.emplace_back(predicate);
    for (const std::string& ext : query.extensions)
        types.push_back("kMDItemFSName == \"*." + escaped(ext) + "\"c");
    if (!types.empty()) clauses.push_back(alternatives(types));

    if (query.date) {
        const std::string date(attribute(query.date->field));
        if (query.date->start)
            clauses.push_back(date + " >= $time.iso(" + query.date->start->iso8601() + ")");
        if (query.date->end)
            clauses.push_back(date + " < $time.iso(" + query.date->end->iso8601() + ")");
    }
    if (query.size) {
        if (query.size->min)
            clauses.push_back("kMDItemFSSize >= " + std::to_string(*query.size->min));
        if (query.size->max)
            clauses.push_back("kMDItemFSSize <= " + std::to_string(*query.size->max));
    }
    if (query.source) clauses.push_back(holds("kMDItemWhereFroms", *query.source, "cd"));
    if (query.camera) clauses.push_back(cameraClause(*query.camera));

    if (clauses.empty()) return std::nullopt;
    return Text::join(clauses, " && ");
}

}  // namespace tarn::SpotlightQuery
