#include "TarnCore/search/QueryVocabulary.h"

#include <algorithm>
#include <cstddef>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/WordMap.h"

namespace tarn {
namespace {

/// Words with one meaning, separated by single blanks.
template <class Meaning>
struct Row {
    Meaning meaning;
    std::string_view words;
};

constexpr std::size_t countWords(std::string_view words) {
    return static_cast<std::size_t>(std::count(words.begin(), words.end(), ' ')) + 1;
}

template <class Rows>
constexpr std::size_t countRowWords(const Rows& rows) {
    std::size_t count = 0;
    for (const auto& row : rows) count += countWords(row.words);
    return count;
}

constexpr Row<SearchKind> kindWords[] = {
    {SearchKind::pdf, "pdf pdfs"},
    {SearchKind::image,
     "image images picture pictures pic pics graphics img imgs wallpapers wallpaper gifs gif"},
    {SearchKind::photo, "photo photos photograph photographs selfies selfie"},
    {SearchKind::screenshot, "screenshot screenshots screengrab screengrabs screencaps screencap"},
    {SearchKind::video, "video videos movie movies clip clips film films footage"},
    {SearchKind::audio,
     "recordings recording song songs music audio tracks track podcast podcasts sound sounds "
     "memos"},
    {SearchKind::document, "doc docs document documents"},
    {SearchKind::spreadsheet, "spreadsheet spreadsheets excel sheets"},
    {SearchKind::presentation,
     "presentation presentations slides slideshow decks deck powerpoint powerpoints keynotes"},
    {SearchKind::archive, "archive archives zip zips zipped compressed"},
    {SearchKind::installer, "installer installers dmg dmgs pkg pkgs setup"},
    {SearchKind::raw, "raw raws"},
    {SearchKind::code, "code scripts script"},
    {SearchKind::folder, "folder folders directories directory"},
    {SearchKind::app, "app apps applications programs"},
    {SearchKind::font, "font fonts typefaces"},
    {SearchKind::ebook, "ebook ebooks books epub epubs"},
};
static_assert(countRowWords(kindWords) == 100);

constexpr QueryVocabulary::KindPhrase kindPhrases[] = {
    {"screen", "shots", SearchKind::screenshot},
    {"screen", "shot", SearchKind::screenshot},
    {"screen", "recordings", SearchKind::screenRecording},
    {"screen", "recording", SearchKind::screenRecording},
    {"word", "documents", SearchKind::document},
    {"word", "docs", SearchKind::document},
    {"word", "files", SearchKind::document},
    {"excel", "files", SearchKind::spreadsheet},
    {"excel", "sheets", SearchKind::spreadsheet},
    {"raw", "photos", SearchKind::raw},
    {"raw", "images", SearchKind::raw},
    {"raw", "files", SearchKind::raw},
    {"source", "code", SearchKind::code},
    {"code", "files", SearchKind::code},
    {"disk", "images", SearchKind::installer},
    {"disk", "image", SearchKind::installer},
    {"zip", "files", SearchKind::archive},
    {"text", "files", SearchKind::text},
    {"text", "documents", SearchKind::text},
    {"plain", "text", SearchKind::text},
    {"voice", "memos", SearchKind::audio},
    {"voice", "notes", SearchKind::audio},
    {"audio", "files", SearchKind::audio},
    {"music", "files", SearchKind::audio},
    {"sound", "files", SearchKind::audio},
    {"video", "files", SearchKind::video},
    {"image", "files", SearchKind::image},
    {"photo", "files", SearchKind::photo},
    {"keynote", "files", SearchKind::presentation},
    {"pages", "documents", SearchKind::document},
    {"pages", "files", SearchKind::document},
};

constexpr std::string_view safeExtensions =
    "png jpg jpeg heic heif tiff tif bmp webp svg psd mov mp4 m4v avi mkv webm mp3 wav aac flac "
    "m4a "
    "aiff ogg csv tsv txt rtf docx xlsx pptx xls ppt odt json xml yaml yml html css swift py java "
    "kotlin cpp php rb sql zip rar 7z tar gz iso epub mobi ttf otf woff ics vcf dwg stl obj blend "
    "xcf ipa apk exe msi torrent srt log markdown";
static_assert(countWords(safeExtensions) == 74);

constexpr std::string_view ambiguousExtensions =
    "key pages numbers ai md ts js sketch fig c h m r go rs ps doc pdf dmg pkg gif raw eps indd xd";
static_assert(countWords(ambiguousExtensions) == 25);

constexpr std::string_view fillers =
    "show me find search for all my the a an any every files file items item stuff things that "
    "which "
    "are were is was i please of some those these get list everything where look lookup can you "
    "and "
    "or with have has had did do got saved made kinds kind type types old older stale friend "
    "friends "
    "someone somebody colleague colleagues boss sent shared send accountant lawyer mom mum dad "
    "brother sister wife husband grabbed grab";
static_assert(countWords(fillers) == 77);

constexpr Row<std::string_view> cameraWords[] = {
    {"iPhone", "iphone iphones"},
    {"iPad", "ipad ipads"},
    {"Sony", "sony"},
    {"Canon", "canon"},
    {"Nikon", "nikon"},
    {"Fujifilm", "fujifilm fuji"},
    {"GoPro", "gopro go-pro"},
    {"DJI", "dji drone"},
    {"Olympus", "olympus"},
    {"Panasonic", "panasonic lumix"},
    {"Leica", "leica"},
    {"Pixel", "pixel"},
    {"Samsung", "samsung galaxy"},
    {"Huawei", "huawei"},
    {"Xiaomi", "xiaomi"},
    {"OnePlus", "oneplus"},
    {"Hasselblad", "hasselblad"},
    {"Ricoh", "ricoh"},
    {"Pentax", "pentax"},
    {"Insta360", "insta360"},
};
static_assert(std::size(cameraWords) == 20);

constexpr std::string_view ambiguousSources =
    "x apple google box claude zoom canva notion slack discord figma telegram icloud";
static_assert(countWords(ambiguousSources) == 13);

constexpr Row<int> monthWords[] = {
    {1, "january jan"},  {2, "february feb"},  {3, "march mar"},
    {4, "april apr"},    {5, "may"},           {6, "june jun"},
    {7, "july jul"},     {8, "august aug"},    {9, "september sep sept"},
    {10, "october oct"}, {11, "november nov"}, {12, "december dec"},
};
static_assert(countRowWords(monthWords) == 24);

constexpr Row<int> weekdayWords[] = {
    {1, "sunday sun"},         {2, "monday mon"}, {3, "tuesday tue tues"}, {4, "wednesday wed"},
    {5, "thursday thu thurs"}, {6, "friday fri"}, {7, "saturday sat"},
};
static_assert(countRowWords(weekdayWords) == 16);

constexpr Row<CalendarUnit> unitWords[] = {
    {CalendarUnit::day, "day days"},           {CalendarUnit::week, "week weeks wk wks"},
    {CalendarUnit::month, "month months"},     {CalendarUnit::year, "year years yr yrs"},
    {CalendarUnit::hour, "hour hours hr hrs"}, {CalendarUnit::minute, "minute minutes mins min"},
};

constexpr Row<int> numberWords[] = {
    {1, "one a an"}, {2, "two"},     {3, "three"},   {4, "four"},   {5, "five"},    {6, "six"},
    {7, "seven"},    {8, "eight"},   {9, "nine"},    {10, "ten"},   {11, "eleven"}, {12, "twelve"},
    {15, "fifteen"}, {20, "twenty"}, {30, "thirty"}, {2, "couple"}, {3, "few"},
};
static_assert(countRowWords(numberWords) == 19);

constexpr Row<DateField> fieldWords[] = {
    {DateField::modified, "modified edited changed updated"},
    {DateField::created, "created taken made"},
    {DateField::added, "added downloaded downloads download received saved"},
    {DateField::opened, "opened used viewed accessed"},
};

constexpr std::string_view contentIntroducers =
    "containing contains contain mentioning mentions mention saying says";
constexpr std::string_view quotationIntroducers =
    "containing contains contain text mentioning mention mentions saying says say about";
constexpr std::string_view imageWords = "images image photos photo pictures screenshots pics";
constexpr std::string_view sourceIntroducers = "from via off through";

/// No known word is longer, so that endless ones need not be hashed.
constexpr std::size_t longestWord = 16;

using Words = WordMap<QueryWord>;

/// Those that are on two lists are counted twice.
constexpr std::size_t mostWords =
    countRowWords(kindWords) + countRowWords(cameraWords) + countRowWords(monthWords) +
    countRowWords(weekdayWords) + countRowWords(unitWords) + countRowWords(numberWords) +
    countRowWords(fieldWords) + countWords(safeExtensions) + countWords(ambiguousExtensions) +
    countWords(fillers) + countWords(ambiguousSources) + countWords(contentIntroducers) +
    countWords(quotationIntroducers) + countWords(imageWords) + countWords(sourceIntroducers);

template <class Change>
void forEachWord(Words& words, std::string_view list, const Change& change) {
    while (!list.empty()) {
        const std::string_view word = list.substr(0, list.find(' '));
        change(words.add(word));
        list.remove_prefix(std::min(list.size(), word.size() + 1));
    }
}

Words buildWords() {
    Words words(mostWords);
    const auto set = [&words](const auto& rows, auto QueryWord::*field) {
        for (const auto& row : rows) {
            forEachWord(words, row.words, [&](QueryWord& word) { word.*field = row.meaning; });
        }
    };
    const auto mark = [&words](std::string_view list, bool QueryWord::*flag) {
        forEachWord(words, list, [flag](QueryWord& word) { word.*flag = true; });
    };
    set(kindWords, &QueryWord::kind);
    set(cameraWords, &QueryWord::camera);
    set(monthWords, &QueryWord::month);
    set(weekdayWords, &QueryWord::weekday);
    set(unitWords, &QueryWord::unit);
    set(numberWords, &QueryWord::number);
    set(fieldWords, &QueryWord::field);
    mark(safeExtensions, &QueryWord::isSafeExtension);
    mark(ambiguousExtensions, &QueryWord::isAmbiguousExtension);
    mark(fillers, &QueryWord::isFiller);
    mark(ambiguousSources, &QueryWord::isAmbiguousSource);
    mark(contentIntroducers, &QueryWord::introducesContent);
    mark(quotationIntroducers, &QueryWord::introducesQuotation);
    mark(imageWords, &QueryWord::isImageWord);
    mark(sourceIntroducers, &QueryWord::introducesSource);
    return words;
}

}  // namespace

const QueryWord* QueryVocabulary::find(std::string_view word) {
    static const Words words = buildWords();
    if (word.size() > longestWord) return nullptr;
    return words.find(word);
}

const QueryVocabulary::KindPhrase* QueryVocabulary::findKindPhrase(std::string_view first,
                                                                   std::string_view second) {
    for (const KindPhrase& phrase : kindPhrases) {
        if (phrase.first == first && phrase.second == second) return &phrase;
    }
    return nullptr;
}

}  // namespace tarn
