#include "TarnCore/platform/RecognitionLanguages.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace tarn::RecognitionLanguages {
namespace {

struct Name {
    std::string_view tag;
    std::string_view data;
};

/// In the order of the tags. The first of several tags for the same data is the one to show.
constexpr Name names[] = {
    {"af", "afr"},      {"am", "amh"},           {"ar", "ara"},          {"as", "asm"},
    {"az", "aze"},      {"az-Cyrl", "aze_cyrl"}, {"be", "bel"},          {"bg", "bul"},
    {"bn", "ben"},      {"bo", "bod"},           {"br", "bre"},          {"bs", "bos"},
    {"ca", "cat"},      {"ceb", "ceb"},          {"chr", "chr"},         {"co", "cos"},
    {"cs", "ces"},      {"cy", "cym"},           {"da", "dan"},          {"de", "deu"},
    {"de-Latf", "frk"}, {"dv", "div"},           {"dz", "dzo"},          {"el", "ell"},
    {"en", "eng"},      {"enm", "enm"},          {"eo", "epo"},          {"es", "spa"},
    {"et", "est"},      {"eu", "eus"},           {"fa", "fas"},          {"fi", "fin"},
    {"fil", "fil"},     {"fo", "fao"},           {"fr", "fra"},          {"frm", "frm"},
    {"fy", "fry"},      {"ga", "gle"},           {"gd", "gla"},          {"gl", "glg"},
    {"grc", "grc"},     {"gu", "guj"},           {"he", "heb"},          {"hi", "hin"},
    {"hr", "hrv"},      {"ht", "hat"},           {"hu", "hun"},          {"hy", "hye"},
    {"id", "ind"},      {"is", "isl"},           {"it", "ita"},          {"iu", "iku"},
    {"ja", "jpn"},      {"jv", "jav"},           {"ka", "kat"},          {"kk", "kaz"},
    {"km", "khm"},      {"kn", "kan"},           {"ko", "kor"},          {"ku", "kmr"},
    {"ky", "kir"},      {"la", "lat"},           {"lb", "ltz"},          {"lo", "lao"},
    {"lt", "lit"},      {"lv", "lav"},           {"mi", "mri"},          {"mk", "mkd"},
    {"ml", "mal"},      {"mn", "mon"},           {"mr", "mar"},          {"ms", "msa"},
    {"mt", "mlt"},      {"my", "mya"},           {"nb", "nor"},          {"ne", "nep"},
    {"nl", "nld"},      {"nn", "nor"},           {"no", "nor"},          {"oc", "oci"},
    {"or", "ori"},      {"pa", "pan"},           {"pl", "pol"},          {"ps", "pus"},
    {"pt", "por"},      {"qu", "que"},           {"ro", "ron"},          {"ru", "rus"},
    {"sa", "san"},      {"sd", "snd"},           {"si", "sin"},          {"sk", "slk"},
    {"sl", "slv"},      {"sq", "sqi"},           {"sr", "srp"},          {"sr-Latn", "srp_latn"},
    {"su", "sun"},      {"sv", "swe"},           {"sw", "swa"},          {"syr", "syr"},
    {"ta", "tam"},      {"te", "tel"},           {"tg", "tgk"},          {"th", "tha"},
    {"ti", "tir"},      {"tl", "fil"},           {"to", "ton"},          {"tr", "tur"},
    {"tt", "tat"},      {"ug", "uig"},           {"uk", "ukr"},          {"ur", "urd"},
    {"uz", "uzb"},      {"uz-Cyrl", "uzb_cyrl"}, {"vi", "vie"},          {"yi", "yid"},
    {"yo", "yor"},      {"zh-Hans", "chi_sim"},  {"zh-Hant", "chi_tra"},
};

constexpr const char* usualFolders[] = {"/usr/share/tesseract-ocr/5/tessdata",
                                        "/usr/share/tesseract-ocr/4.00/tessdata",
                                        "/usr/share/tessdata", "/usr/local/share/tessdata"};

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string withCase(std::string_view word, bool startsHigh) {
    std::string out(word);
    for (std::size_t i = 0; i < out.size(); ++i) {
        const bool high = startsHigh && i == 0;
        if (out[i] >= 'A' && out[i] <= 'Z' && !high) out[i] = static_cast<char>(out[i] + 32);
        if (out[i] >= 'a' && out[i] <= 'z' && high) out[i] = static_cast<char>(out[i] - 32);
    }
    return out;
}

std::string nextPart(std::string_view& rest) {
    const std::size_t end = std::min(rest.find_first_of("-_"), rest.size());
    const std::string part(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

std::string_view find(std::string_view tag) {
    const auto found = std::ranges::find(names, tag, &Name::tag);
    return found == std::end(names) ? std::string_view() : found->data;
}

}  // namespace

std::string dataName(std::string_view tag) {
    std::string_view rest = tag;
    const std::string language = withCase(nextPart(rest), false);
    if (language.size() < 2 || language.size() > 3 || !std::ranges::all_of(language, isLetter))
        return {};
    std::string script;
    while (!rest.empty()) {
        const std::string part = withCase(nextPart(rest), true);
        if (part.size() == 4) script = part;
        if (language == "zh" && script.empty() && (part == "Tw" || part == "Hk" || part == "Mo"))
            script = "Hant";
    }
    if (language == "zh" && script != "Hant") script = "Hans";
    std::string_view data = find(language + "-" + script);
    if (data.empty()) data = find(language);
    if (!data.empty()) return std::string(data);
    return language.size() == 3 ? language : std::string();
}

std::string tag(std::string_view dataName) {
    const auto found = std::ranges::find(names, dataName, &Name::data);
    return found == std::end(names) ? std::string() : std::string(found->tag);
}

std::vector<std::string> dataNames(const std::vector<std::string>& tags,
                                   const std::vector<std::string>& available) {
    std::vector<std::string> chosen;
    const auto choose = [&](const std::string& name) {
        if (!std::ranges::count(chosen, name) && std::ranges::count(available, name))
            chosen.push_back(name);
    };
    for (const std::string& one : tags) choose(dataName(one));
    if (chosen.empty()) choose("eng");
    return chosen;
}

std::string dataFolder() {
    std::vector<std::string> folders(std::begin(usualFolders), std::end(usualFolders));
    if (const char* given = std::getenv("TESSDATA_PREFIX"))
        folders.insert(folders.begin(), {given, std::string(given) + "/tessdata"});
    const auto found = std::ranges::find_if_not(
        folders, [](const std::string& folder) { return dataIn(folder).empty(); });
    return found == folders.end() ? std::string() : *found;
}

std::vector<std::string> dataIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        if (entry.path().extension() == ".traineddata") names.push_back(entry.path().stem());
    std::ranges::sort(names);
    return names;
}

}  // namespace tarn::RecognitionLanguages
