#include "TarnCore/index/TextExtractor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileItem.h"

namespace tarn::TextExtractor {
namespace {

constexpr std::int64_t MB = 1'000'000;

struct Facts {
    Method method;
    std::string_view name;
    std::int64_t sizeLimit;
};

constexpr std::array<Facts, 6> methods = {{
    {Method::plain, "plain", 32 * MB},
    {Method::html, "html", 32 * MB},
    {Method::office, "office", 128 * MB},
    {Method::rich, "rich", 64 * MB},
    {Method::pdf, "pdf", 256 * MB},
    {Method::image, "image", 64 * MB},
}};

constexpr std::pair<std::string_view, Method> extensions[] = {
    {"txt", Method::plain},      {"text", Method::plain},  {"md", Method::plain},
    {"markdown", Method::plain}, {"csv", Method::plain},   {"tsv", Method::plain},
    {"log", Method::plain},      {"eml", Method::plain},   {"emlx", Method::plain},
    {"srt", Method::plain},      {"vtt", Method::plain},   {"tex", Method::plain},
    {"bib", Method::plain},      {"rst", Method::plain},   {"org", Method::plain},
    {"adoc", Method::plain},     {"ics", Method::plain},   {"vcf", Method::plain},
    {"html", Method::html},      {"htm", Method::html},    {"xhtml", Method::html},
    {"ipynb", Method::html},     {"docx", Method::office}, {"xlsx", Method::office},
    {"pptx", Method::office},    {"odt", Method::office},  {"ods", Method::office},
    {"odp", Method::office},     {"docm", Method::office}, {"xlsm", Method::office},
    {"pptm", Method::office},    {"rtf", Method::rich},    {"rtfd", Method::rich},
    {"doc", Method::rich},       {"wordml", Method::rich}, {"webarchive", Method::rich},
    {"pdf", Method::pdf},        {"png", Method::image},   {"jpg", Method::image},
    {"jpeg", Method::image},     {"heic", Method::image},  {"heif", Method::image},
    {"tif", Method::image},      {"tiff", Method::image},  {"gif", Method::image},
    {"bmp", Method::image},      {"webp", Method::image},
};

const Facts& facts(Method method) { return methods[static_cast<std::size_t>(method)]; }

}  // namespace

std::string_view name(Method method) { return facts(method).name; }

std::optional<Method> methodNamed(std::string_view name) {
    const auto found = std::ranges::find(methods, name, &Facts::name);
    return found == methods.end() ? std::nullopt : std::optional(found->method);
}

std::optional<Method> method(std::string_view fileName) {
    const std::string ext = Text::lowercasedASCII(pathExtension(fileName));
    const auto found = std::ranges::find(extensions, std::string_view(ext),
                                         &std::pair<std::string_view, Method>::first);
    return found == std::end(extensions) ? std::nullopt : std::optional(found->second);
}

std::optional<Method> method(const URL& url) { return method(url.name()); }

std::int64_t sizeLimit(Method method) { return facts(method).sizeLimit; }

}  // namespace tarn::TextExtractor
