#include <ctime>
#include <random>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/search/QueryParser.h"
#include "tests/search/QueryTestSupport.h"

namespace tarn {
namespace {

using Kind = SearchKind;
using Strings = std::vector<std::string>;

/// What a query says apart from `raw`, in one line.
std::string summary(const SearchQuery& query) {
    std::string text;
    const auto add = [&text](const char* name, const std::string& value) {
        if (!text.empty()) text += "; ";
        text += std::string(name) + " " + value;
    };
    if (!query.terms.empty()) add("terms", Text::join(query.terms, "|"));
    if (!query.kinds.empty()) {
        Strings kinds;
        for (const Kind kind : query.kinds) kinds.emplace_back(SearchKinds::rawValue(kind));
        add("kinds", Text::join(kinds, "|"));
    }
    if (!query.extensions.empty()) add("ext", Text::join(query.extensions, "|"));
    if (query.date) add("date", query.date->chipLabel());
    if (query.size) add("size", query.size->label);
    if (query.source) add("source", *query.source);
    if (query.place) {
        const bool isFolder = query.place->which == PlaceFilter::Case::folder;
        add("place", isFolder ? query.place->text : query.place->label());
    }
    if (query.camera) add("camera", *query.camera);
    if (!query.containing.empty()) add("containing", Text::join(query.containing, "|"));
    if (query.textInImages) add("in", "images");
    return text;
}

struct Row {
    std::string text;
    std::string summary;
};

void expectQueries(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const SearchQuery query = berlin().parse(row.text);
        EXPECT_EQ(summary(query), row.summary);
        EXPECT_EQ(query.raw, row.text);
    }
}

TEST(QueryParser, whatPeopleType) {
    expectQueries({
        {"", ""},
        {"  \t ", ""},
        {"pdfs from last week over 5 mb", "kinds pdf; date Last week; size Over 5 MB"},
        {"pdfs from slack last week", "kinds pdf; date Downloaded last week; source Slack"},
        {"photos taken with my iphone in march", "kinds photo; date Created March; camera iPhone"},
        {"invoice containing “total due”", "terms invoice; containing total due"},
        {"large videos on external drives",
         "kinds video; size Large (over 100 MB); place On external drives"},
        {"screenshots from whatsapp in march",
         "kinds screenshot; date Downloaded March; source WhatsApp"},
        {"invoices from gmail", "terms invoices; source Gmail"},
        {"show me all the files I got from my boss last month", "terms from; date Last month"},
        {"letter from alice", "terms letter|from|alice"},
        {"tax return 2023.pdf", "terms tax|return|2023.pdf"},
        {"budget .xlsx or csv", "terms budget; ext xlsx|csv"},
        {"over 1 gb", "size Over 1 GB"},
        {"Screenshots", "kinds screenshot"},
        {"Installers", "kinds installer"},
        {"old installers in downloads older than 3 months",
         "kinds installer; date Older than 3 months; place " + Paths::downloads().path()},
        {"songs downloaded yesterday", "kinds audio; date Downloaded yesterday"},
        {"find my resume", "terms resume"},
        {"Résumé", "terms Résumé"},
        {"raw photos from canon", "kinds raw; camera Canon"},
        {"drone footage this year bigger than 2 gb",
         "kinds video; date This year; size Over 2 GB; camera DJI"},
    });
}

TEST(QueryParser, kindsAndExtensions) {
    expectQueries({
        {"pdfs and images and PDF", "kinds pdf|image"},
        {"screen shots", "kinds screenshot"},
        {"screen recordings", "kinds screenRecording"},
        {"word documents", "kinds document"},
        {"word", "terms word"},
        {"plain text", "kinds text"},
        {"text", "terms text"},
        {"voice memos", "kinds audio"},
        {"zip files", "kinds archive"},
        {"zip", "ext zip"},  // a safe extension before a kind
        {"zips", "kinds archive"},
        {"gif", "kinds image"},  // an ambiguous one, so the kind wins
        {".gif", "ext gif"},
        {"md", "terms md"},
        {".md", "ext md"},
        {"*.Md .MD", "ext md"},
        {"notes.md", "terms notes.md"},
        {".tar.gz", "terms .tar.gz"},
        {"...", "terms ..."},
        {"“screen” shots", "terms screen|shots"},
        {"key.", "terms key."},
        {"source code", "kinds code"},
        {"psd psd PSD", "ext psd"},
    });
}

TEST(QueryParser, phrasesOfTheContent) {
    expectQueries({
        {"“Total Due”", "terms Total Due"},
        {"containing “Total Due”", "containing Total Due"},
        {"containing Total", "containing Total"},
        {"contracts mentioning the word Penalty", "terms contracts; containing Penalty"},
        {"containing the word “net income”", "containing net income"},
        {"containing the phrase “net income”", "containing net income"},
        {"containing word “x”", "containing x"},
        {"with text “x y”", "containing x y"},
        {"notes with text budget", "terms notes; containing budget"},
        {"files that say hello", "containing hello"},
        {"files that contain “a b” pdf", "kinds pdf; containing a b"},
        {"containing", ""},
        {"containing “a” says b", "containing a|b"},
        {"about “x”", "terms about; containing x"},
        {"“about” “x”", "terms about|x"},
        {"text in screenshots", "kinds screenshot; in images"},
        {"with text in images", "in images"},
        {"text in Photos containing cat", "containing cat; in images"},
        {"text in videos", "terms text|in; kinds video"},
    });
}

TEST(QueryParser, sourcesAndCameras) {
    expectQueries({
        {"slack", "terms slack"},
        {"from slack", "source Slack"},
        {"downloaded slack", "source Slack"},
        {"downloaded from my slack", "source Slack"},
        {"sent on slack", "source Slack"},
        {"on slack", "terms on|slack"},
        {"whatsapp", "source WhatsApp"},
        {"photos on whatsapp", "kinds photo; source WhatsApp"},
        {"via google drive", "source Google Drive"},
        {"google drive", "source Google Drive"},
        {"google", "terms google"},
        {"from Google", "source Google"},
        {"from google mail", "source Gmail"},
        {"from twitter", "source X"},
        {"x", "terms x"},
        {"from x", "source X"},
        {"from airdrop", "source AirDrop"},
        {"via air drop", "source AirDrop"},
        {"through the box", "source Box"},
        {"saved from chrome yesterday", "date Downloaded yesterday; source Chrome"},
        {"modified last week from slack", "date Last week; source Slack"},
        {"last week from slack", "date Downloaded last week; source Slack"},
        {"downloads last week from slack", "date Downloaded last week; source Slack"},
        {"from arxiv.org", "source arxiv.org"},
        {"from www.Example.com", "source example.com"},
        {"from mail.google.com", "source Gmail"},
        {"from readme.md", "terms from|readme.md"},
        {"arxiv.org", "terms arxiv.org"},
        {"canon", "kinds photo; camera Canon"},
        {"canon pdf", "kinds pdf; camera Canon"},
        {"nikon .nef", "ext nef; camera Nikon"},
        {"from my Fuji camera", "kinds photo; camera Fujifilm"},
        {"sent from my iphone", "kinds photo; camera iPhone"},
        {"shot on a go-pro", "terms shot|on; kinds photo; camera GoPro"},
        {"“from” slack", "terms from|slack"},
    });
}

TEST(QueryParser, places) {
    const auto folder = [](const URL& url) { return "place " + url.path(); };
    expectQueries({
        {"in downloads", folder(Paths::downloads())},
        {"pdfs in the documents folder", "kinds pdf; " + folder(Paths::documents())},
        {"on my desktop", folder(Paths::desktop())},
        {"from my pictures", folder(Paths::pictures())},
        {"in my videos folder", folder(Paths::movies())},
        {"in trash", folder(Paths::trash())},
        {"at home", folder(Paths::home())},
        {"in ~/Projects/Tarn", folder(Paths::home().appending("Projects/Tarn"))},
        {"in /srv/Data", "place /srv/Data"},
        {"in “/a b”", "place /a b"},
        {"documents", "kinds document"},
        {"downloaded music", "kinds audio"},
        {"sent pictures", "kinds image"},
        {"here", "place In this folder"},
        {"pdfs in this folder", "kinds pdf; place In this folder"},
        {"in here", "place In this folder"},
        {"everywhere", "place On this Mac"},
        {"on this computer", "place On this Mac"},
        {"on my computer", "place On this Mac"},
        {"on usb", "place On external drives"},
        {"on a usb stick", "terms on; place On external drives"},
        {"on the external hard drive", "place On external drives"},
        {"icloud", "place In iCloud Drive"},
        {"in icloud", "place In iCloud Drive"},
        {"from icloud", "source iCloud"},
        {"from icloud drive", "place In iCloud Drive"},
        {"in Taxes folder", "place In “Taxes”"},
        {"in the 2023 folder", "place In “2023”"},
        {"photos in march folder", "kinds photo; place In “march”"},
        {"in my Project Alpha folder", "place In “Project Alpha”"},
        {"in “Old Taxes” folder", "place In “Old Taxes”"},
        {"from slack folder", "place In “slack”"},
        {"in a folder", "terms in; kinds folder"},
        {"in every folder", "terms in; kinds folder"},
        {"in the mountains", "terms in|mountains"},
    });
}

TEST(QueryParser, dateFieldsApplyToDatesBeforeAndBehindThem) {
    const struct {
        const char* text;
        DateField field;
    } cases[] = {
        {"created last week", DateField::created},
        {"last week created", DateField::created},
        {"edited last week", DateField::modified},
        {"downloads from last week", DateField::added},
        {"received today", DateField::added},
        {"used today", DateField::opened},
        {"opened edited today", DateField::modified},  // the last word before the date
        {"created from slack today", DateField::created},
        {"from slack today", DateField::added},
        {"download from slack today", DateField::added},
        {"from slack today viewed", DateField::opened},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto date = berlin().parse(c.text).date;
        ASSERT_TRUE(date);
        EXPECT_EQ(date->field, c.field);
    }
    EXPECT_TRUE(berlin().parse("downloads").isEmpty());
}

TEST(QueryParser, numberAndFieldWords) {
    EXPECT_EQ(QueryParser::parseNumber("12"), 12);
    EXPECT_EQ(QueryParser::parseNumber("an"), 1);
    EXPECT_EQ(QueryParser::parseNumber("thirty"), 30);
    EXPECT_EQ(QueryParser::parseNumber("99999999999999999999"), INT64_MAX);
    for (const char* word : {"", "-1", "1.5", "thirteen", "1a"}) {
        EXPECT_FALSE(QueryParser::parseNumber(word)) << word;
    }
    EXPECT_EQ(QueryParser::dateFieldWord("taken"), DateField::created);
    EXPECT_FALSE(QueryParser::dateFieldWord("taker"));
}

/// Words from every corner of the vocabulary, in any order, with any bytes between them.
std::string randomText(std::mt19937& random) {
    static const char* const pieces[] = {"pdfs",   "from",     "last",   "week",
                                         "over",   "5",        "mb",     "between",
                                         "and",    "to",       "march",  "2024",
                                         "the",    "in",       "my",     "folder",
                                         "“",      "”",        "\"",     "'",
                                         "slack",  "text",     "images", "containing",
                                         "word",   "older",    "than",   "friday",
                                         "ago",    "a",        ">",      "<=",
                                         "500mb+", ".md",      "*.c",    "3/4/25",
                                         "\xff",   "\xe2\x80", "’s",     "usb",
                                         "drive",  "here",     "iphone", "big",
                                         "very",   "since",    "before", "couple",
                                         "of",     "now",      "this",   "99999999999999999999",
                                         "sent",   "via",      "icloud", "Größe",
                                         "\n",     "(",        "?!",     "-"};
    std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1);
    std::uniform_int_distribution<int> length(0, 14);
    std::string text;
    for (int i = length(random); i > 0; --i) {
        text += pieces[piece(random)];
        if (random() % 8 != 0) text += ' ';
    }
    return text;
}

TEST(QueryParser, anyTextGivesAQueryThatHoldsTogether) {
    std::mt19937 random(20260318);
    const QueryTime time = berlin();
    for (int i = 0; i < 5000; ++i) {
        const std::string text = randomText(random);
        SCOPED_TRACE(text);
        const SearchQuery query = time.parse(text);
        ASSERT_EQ(query.raw, text);
        ASSERT_EQ(time.parse(text), query);
        if (query.date && query.date->start && query.date->end) {
            ASSERT_LE(*query.date->start, *query.date->end);
        }
        if (query.size && query.size->min && query.size->max) {
            ASSERT_LE(*query.size->min, *query.size->max);
        }
        ASSERT_EQ(query.isEmpty(), query.terms.empty() && query.chips().empty());
        for (const SearchChip& chip : query.chips()) ASSERT_FALSE(chip.label.empty());
        if (!Text::isValidUTF8(text)) continue;
        ASSERT_EQ(JSON::parse(JSON(query).dump()).get<SearchQuery>(), query);
        // White space says nothing.
        if (text.find_first_of("\"'") == text.npos && text.find("“") == text.npos &&
            text.find("”") == text.npos) {
            SearchQuery wider = time.parse("\t" + Text::replacing(text, " ", " \n ") + " ");
            wider.raw = query.raw;
            ASSERT_EQ(wider, query);
        }
    }
}

TEST(QueryParser, timeGrowsWithTheLengthAndNotFaster) {
    const char* const pieces[] = {
        "between ",     "the ", "in ",      "“a",         "'",       "1",       "last ",
        "a couple of ", "to ",  "march ",   "over 5 ",    "’s",      "in the ", "sent on my ",
        "containing ",  "(",    "\xe2\x80", "monday of ", "folder ", "Ä",       "from x.com "};
    // A tenth of a second in an unoptimised build; what is quadratic takes many times the limit.
    constexpr std::size_t size = 200'000;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr double limit = 30;
#else
    constexpr double limit = 3;
#endif
    const auto seconds = [](const std::string& text) {  // of the processor: others may be busy
        const std::clock_t start = std::clock();
        const SearchQuery query = berlin().parse(text);
        EXPECT_EQ(query.raw.size(), text.size());
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    for (const char* piece : pieces) {
        SCOPED_TRACE(piece);
        std::string text;
        while (text.size() < size) text += piece;
        EXPECT_LT(seconds(text), limit);
    }
    std::string extensions;
    for (int i = 0; extensions.size() < size; ++i) extensions += " .e" + std::to_string(i);
    EXPECT_LT(seconds(extensions), limit);
}

}  // namespace
}  // namespace tarn
