#include <map>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/index/TextLookup.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryMediaMetadata.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "TarnCore/search/QueryMatcher.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

SearchQuery withTerms(std::vector<std::string> terms) {
    SearchQuery query;
    query.terms = std::move(terms);
    return query;
}

SearchQuery withKind(SearchKind kind) {
    SearchQuery query;
    query.kinds = {kind};
    return query;
}

Date day(const char* text) { return *Date::fromISO8601(std::string(text) + "T00:00:00Z"); }

/// What a listing would make of a name, without the disk.
FileItem itemAt(const std::string& path, FileType type = FileType::file) {
    const URL url = URL::fromPath(path);
    FileAttributes attributes;
    attributes.type = type;
    const ResourceReader reader(URL::fromPath("/nonexistent"));
    return FileItem::make(url, reader.values(url, url.name(), attributes, std::nullopt, {}));
}

bool matches(const SearchQuery& query, const FileItem& item) {
    return QueryMatcher(query).matchesFilters(item, true);
}

TEST(QueryMatcher, findsTermsInNames) {
    const struct {
        std::vector<std::string> terms;
        const char* name;
        bool matches;
    } cases[] = {
        {{}, "anything", true},
        {{"Photos"}, "photo.jpg", true},
        {{"Photos"}, "PHOTOS 2024", true},
        {{"glass"}, "glas.txt", false},
        {{"bus"}, "bu.txt", false},
        {{"Café"}, "cafe menu.pdf", true},
        {{"cafe"}, "CAFE\xCC\x81 menu.pdf", true},  // an accent of its own
        {{"stories"}, "story.txt", true},
        {{"boxes"}, "box 3", true},
        {{"churches"}, "church.jpg", true},
        {{"ties"}, "tie.jpg", true},  // too short to lose three
        {{"gas"}, "ga.txt", false},   // would leave two characters
        {{"gas"}, "GAS bill", true},
        {{"new years"}, "new year", false},  // a phrase is kept as it is
        {{"new years"}, "New Years Eve", true},
        {{"tax", "2023"}, "2023 TAX return.pdf", true},
        {{"tax", "2023"}, "tax 2022.pdf", false},
        {{"straße"}, "STRASSE.txt", true},
        {{"отчёт"}, "ОТЧЕТ.doc", true},
        {{"отчёт"}, "report.doc", false},
        {{"[a-z]*"}, "abc", false},
        {{"Z"}, "[", false},  // next to the letters in ASCII
        {{"@"}, "`", false},
        {{"[x"}, "{x", false},
        {{"ok"}, "broken \xff OK", true},
        {{"end"}, "name\nEND", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " for " + testing::PrintToString(c.terms));
        EXPECT_EQ(QueryMatcher(withTerms(c.terms)).nameMatches(c.name), c.matches);
    }
    // Longer than any name of the disk, and as long as the longest.
    for (const std::size_t length : {248, 250, 254, 255, 256, 300, 5000}) {
        SCOPED_TRACE(length);
        const std::string name = std::string(length - 3, 'A') + "END";
        EXPECT_TRUE(QueryMatcher(withTerms({"aend"})).nameMatches(name));
        EXPECT_FALSE(QueryMatcher(withTerms({"ende"})).nameMatches(name));
    }
}

TEST(QueryMatcher, tellsWhichTermsANameLacks) {
    const QueryMatcher matcher(withTerms({"Tax", "2023", "returns"}));
    EXPECT_THAT(matcher.termsMissingFromName("tax return 2022.pdf"), Optional(ElementsAre("2023")));
    EXPECT_THAT(matcher.termsMissingFromName("2023"), Optional(ElementsAre("Tax", "returns")));
    EXPECT_THAT(matcher.termsMissingFromName("RETURN tax 2023"), Optional(IsEmpty()));
    EXPECT_EQ(matcher.termsMissingFromName("holiday.jpg"), std::nullopt);
    EXPECT_THAT(QueryMatcher(SearchQuery()).termsMissingFromName("x"), Optional(IsEmpty()));
}

TEST(QueryMatcher, knowsWhatKindsMean) {
    const struct {
        SearchKind kind;
        std::vector<const char*> yes;
        std::vector<const char*> no;
    } cases[] = {
        {SearchKind::pdf, {"a.PDF"}, {"a.txt", "pdf"}},
        {SearchKind::image, {"a.png", "a.CR2", "a.svg"}, {"a.pdf", "a.mov"}},
        {SearchKind::photo,
         {"a.jpg", "a.HEIC", "a.dng"},
         {"a.png", "Screenshot 1.jpg", "screen shot.jpeg", "a.pdf"}},
        {SearchKind::screenshot,
         {"Screenshot from 2024.png", "SCREENSHOT_1.jpg", "Screen Shot 2024.png"},
         {"my screenshot.png", "Screenshot tool.zip"}},
        {SearchKind::screenRecording,
         {"Screen Recording 1.mov", "screen recording.webm"},
         {"a screen recording.mov"}},
        {SearchKind::video, {"a.mp4", "a.mkv", "a.mov"}, {"a.mp3"}},
        {SearchKind::audio, {"a.mp3", "a.flac"}, {"a.mp4"}},
        {SearchKind::document,
         {"a.docx", "a.odt", "a.txt", "a.xlsx", "a.key", "a.pdf", "a.csv", "a.epub"},
         {"a.png", "a.json", "a.zip"}},
        {SearchKind::spreadsheet, {"a.xlsx", "a.ods", "a.csv"}, {"a.docx", "a.txt"}},
        {SearchKind::presentation, {"a.pptx", "a.odp"}, {"a.xlsx"}},
        {SearchKind::archive, {"a.zip", "a.tar.gz", "a.7z", "a.dmg"}, {"a.docx", "a.txt"}},
        {SearchKind::installer,
         {"a.dmg", "a.PKG", "a.iso", "a.deb", "a.rpm", "a.AppImage"},
         {"a.zip"}},
        {SearchKind::raw, {"a.cr2", "a.NEF"}, {"a.jpg"}},
        {SearchKind::code, {"a.cpp", "a.py", "a.json", "Makefile.mk"}, {"a.txt"}},
        {SearchKind::text, {"a.txt", "a.md", "a.py"}, {"a.rtf", "a.pdf"}},
        {SearchKind::font, {"a.ttf", "a.otf"}, {"a.txt"}},
        {SearchKind::ebook, {"a.epub"}, {"a.pdf"}},
        {SearchKind::app, {"a.app", "a.AppImage"}, {"a.txt"}},
    };
    for (const auto& c : cases) {
        for (const char* name : c.yes) {
            SCOPED_TRACE(std::string(SearchKinds::rawValue(c.kind)) + " " + name);
            EXPECT_TRUE(matches(withKind(c.kind), itemAt(std::string("/f/") + name)));
        }
        for (const char* name : c.no) {
            SCOPED_TRACE(std::string("no ") + std::string(SearchKinds::rawValue(c.kind)) + name);
            EXPECT_FALSE(matches(withKind(c.kind), itemAt(std::string("/f/") + name)));
        }
    }
}

TEST(QueryMatcher, keepsFoldersApartFromFiles) {
    const FileItem folder = itemAt("/f/Screenshots.zip", FileType::directory);
    const FileItem package = itemAt("/f/Thing.app", FileType::directory);
    EXPECT_TRUE(matches(withKind(SearchKind::folder), folder));
    EXPECT_FALSE(matches(withKind(SearchKind::archive), folder));
    EXPECT_FALSE(matches(withKind(SearchKind::screenshot), folder));
    EXPECT_FALSE(matches(withKind(SearchKind::folder), package));
    EXPECT_TRUE(matches(withKind(SearchKind::app), package));
    SearchQuery files;
    files.filesOnly = true;
    EXPECT_FALSE(matches(files, folder));
    EXPECT_TRUE(matches(files, package));
}

TEST(QueryMatcher, letsAnExtensionStandForAKind) {
    SearchQuery query = withKind(SearchKind::audio);
    query.extensions = {"psd", "tar.gz"};
    for (const char* name : {"a.PSD", "b.mp3", "c.TAR.gz"})
        EXPECT_TRUE(matches(query, itemAt(std::string("/f/") + name))) << name;
    for (const char* name : {"psd", ".psd", "a.psd.txt", "a.gz", "tar.gz"})
        EXPECT_FALSE(matches(query, itemAt(std::string("/f/") + name))) << name;
}

TEST(QueryMatcher, asksPicturesWhetherTheyArePhotos) {
    const MemoryPlatform machine;
    Platform platform = Platform::current();
    platform.metadata = machine.metadata;
    const ScopedPlatform scope(platform);
    ItemMetadata camera;
    camera.cameraMake = "Canon";
    for (const char* path : {"/f/scan.png", "/f/Screenshot.png", "/f/note.txt"})
        machine.metadata->set(URL::fromPath(path), camera);
    const SearchQuery photos = withKind(SearchKind::photo);
    EXPECT_TRUE(matches(photos, itemAt("/f/scan.png")));
    EXPECT_TRUE(matches(photos, itemAt("/card/DCIM/100/x.png")));
    EXPECT_FALSE(matches(photos, itemAt("/card/dcim.png")));
    EXPECT_FALSE(matches(photos, itemAt("/f/Screenshot.png")));
    EXPECT_FALSE(matches(photos, itemAt("/f/note.txt")));
    // What the name settles is not read.
    const auto asked = machine.metadata->asked().size();
    EXPECT_TRUE(matches(photos, itemAt("/f/a.jpg")));
    EXPECT_EQ(machine.metadata->asked().size(), asked);
}

TEST(QueryMatcher, looksForCamerasUnderTheNamesTheyWrite) {
    const MemoryPlatform machine;
    Platform platform = Platform::current();
    platform.metadata = machine.metadata;
    const ScopedPlatform scope(platform);
    const struct {
        const char* camera;
        const char* make;
        const char* model;
        bool matches;
    } cases[] = {
        {"Canon", "CANON Inc.", "EOS R5", true},
        {"iPhone", "Apple", "iPhone 15 Pro", true},
        {"Fujifilm", "FUJI PHOTO FILM", "FinePix", true},
        {"Fujifilm", "FUJIFILM", "X-T5", true},
        {"Pixel", "Google", "Pixel 8", true},
        {"Pixel", "Pixelworks", "P1", false},
        {"Nikon", "Canon", "EOS", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.camera) + " in " + c.make + " " + c.model);
        ItemMetadata metadata;
        metadata.cameraMake = c.make;
        metadata.cameraModel = c.model;
        for (const char* path : {"/f/a.jpg", "/f/a.txt"})
            machine.metadata->set(URL::fromPath(path), metadata);
        SearchQuery query;
        query.camera = c.camera;
        EXPECT_EQ(matches(query, itemAt("/f/a.jpg")), c.matches);
        EXPECT_FALSE(matches(query, itemAt("/f/a.txt")));
    }
}

TEST(QueryMatcher, knowsPlaces) {
    const MemoryPlatform machine;
    Mount stick;
    stick.mountPoint = URL::fromPath("/data/stick");
    stick.isRemovable = true;
    machine.volumes->setMounts({stick});
    Platform platform = Platform::current();
    platform.volumes = machine.volumes;
    const ScopedPlatform scope(platform);
    const struct {
        PlaceFilter place;
        const char* path;
        bool matches;
    } cases[] = {
        {PlaceFilter::folder("/a/b"), "/a/b/c", true},
        {PlaceFilter::folder("/a/b/"), "/a/b/c/d", true},
        {PlaceFilter::folder("/a/b"), "/a/b", false},
        {PlaceFilter::folder("/a/b"), "/a/bc", false},
        {PlaceFilter::named("taxes"), "/a/My Taxes 2023/x/y.pdf", true},
        {PlaceFilter::named("TÄXES"), "/a/taxes/y.pdf", true},
        {PlaceFilter::named("taxes"), "/a/taxes", false},
        {PlaceFilter::iCloud(), "/h/Library/Mobile Documents/x", true},
        {PlaceFilter::iCloud(), "/h/Library/Mobile Documents", false},
        {PlaceFilter::externalDrives(), "/Volumes/USB/x", true},
        {PlaceFilter::externalDrives(), "/media/me/USB/x", true},
        {PlaceFilter::externalDrives(), "/data/stick/x", true},
        {PlaceFilter::externalDrives(), "/data/sticky/x", false},
        {PlaceFilter::thisMac(), "/data/x", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        SearchQuery query;
        query.place = c.place;
        EXPECT_EQ(matches(query, itemAt(c.path)), c.matches);
    }
}

TEST(QueryMatcher, matchesSources) {
    const MemoryPlatform machine;
    Platform platform = Platform::current();
    const auto attributes = std::make_shared<MemoryExtendedAttributes>();
    platform.attributes = attributes;
    const ScopedPlatform scope(platform);
    const FileItem item = itemAt("/f/a.pdf");
    const struct {
        const char* wanted;
        std::vector<std::string> whereFroms;
        const char* agent;
        bool matches;
    } cases[] = {
        {"Slack", {"https://files.slack.com/x"}, nullptr, true},
        {"slac", {"https://files.slack.com/x"}, nullptr, true},
        {"Gmail", {"https://mail-attachment.googleusercontent.com/x"}, nullptr, true},
        {"Google", {"https://drive.google.com/x"}, nullptr, true},
        {"example", {"https://cdn.example.org/x"}, nullptr, true},
        {"invoices", {"https://cdn.example.org/Invoices/x"}, nullptr, true},
        {"Firefox", {"https://example.org/x"}, "org.mozilla.firefox", true},
        {"AirDrop", {"Phone"}, "sharingd", true},
        // Short names stand for themselves only.
        {"X", {"https://www.dropbox.com/x"}, "firefox", false},
        {"X", {"https://pbs.twimg.com/x"}, nullptr, true},
        {"Box", {"https://www.dropbox.com/box"}, nullptr, false},
        {"Box", {"https://app.box.com/x"}, nullptr, true},
        {"Slack", {}, nullptr, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.wanted) + " in " + testing::PrintToString(c.whereFroms));
        attributes->set(item.url, "com.apple.metadata:kMDItemWhereFroms",
                        PropertyList::encode(c.whereFroms));
        attributes->remove(item.url, "com.apple.quarantine");
        if (c.agent)
            attributes->set(item.url, "com.apple.quarantine",
                            std::string("0081;0;") + c.agent + ";");
        SearchQuery query;
        query.source = c.wanted;
        EXPECT_EQ(matches(query, item), c.matches);
    }
}

TEST(QueryMatcher, comparesTheDateThatIsAskedFor) {
    const MemoryPlatform machine;
    Platform platform = Platform::current();
    platform.metadata = machine.metadata;
    const ScopedPlatform scope(platform);
    FileItem item = itemAt("/f/a.txt");
    item.modified = day("2024-01-01");
    item.created = day("2024-02-01");
    item.added = day("2024-03-01");
    ItemMetadata opened;
    opened.lastOpened = day("2024-04-01");
    machine.metadata->set(item.url, opened);
    int month = 1;
    for (const DateField field :
         {DateField::modified, DateField::created, DateField::added, DateField::opened}) {
        const Date own = day(("2024-0" + std::to_string(month++) + "-01").c_str());
        SearchQuery query;
        query.date = DateFilter{own, own + 1, field, {}};
        EXPECT_TRUE(matches(query, item)) << DateFields::rawValue(field);
        query.date = DateFilter{own + 1, std::nullopt, field, {}};
        EXPECT_FALSE(matches(query, item)) << DateFields::rawValue(field);
        EXPECT_EQ(matches(query, itemAt("/f/b.txt")), false);
    }
}

TEST(QueryMatcher, readsPlainTextForPhrases) {
    const TestFolder folder;
    SearchQuery query;
    query.containing = {"Größe of things", "second"};
    const struct {
        const char* name;
        std::string content;
        bool matches;
    } cases[] = {
        {"a.txt", "x GRÖSSE... größe OF THINGS\nsecond", true},
        {"b.txt", "größe of things", false},
        {"c.cpp", "// second größe of things", true},
        {"LICENSE", "größe of things second", true},
        {"data", "größe of things second" + std::string(20, '\0'), false},
        {"d.png", "größe of things second", false},
        {"e.txt", "", false},
        {"f.txt", std::string(100'000, 'x') + "SECOND größe of things", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(matches(query, *FileItem::load(folder.file(c.name, c.content))), c.matches);
    }
    EXPECT_FALSE(matches(query, *FileItem::load(folder.folder("größe of things second"))));
}

class FixedTexts final : public TextLookup {
public:
    std::map<URL, std::string> texts;
    bool filesContaining(const Request&, const OnHits&, const CancelToken&) const override {
        return true;
    }
    std::unordered_map<std::string, TextIndex::Known> known(
        const std::vector<URL>&) const override {
        return {};
    }
    std::optional<std::string> text(const URL& url) const override {
        const auto found = texts.find(url);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
};

TEST(QueryMatcher, takesTextFromTheIndex) {
    const auto index = std::make_shared<FixedTexts>();
    const FileItem item = itemAt("/f/tax.png");
    index->texts[item.url] = "Return of MÄRZ 2023";
    SearchQuery query;
    query.containing = {"märz 2023"};
    EXPECT_TRUE(QueryMatcher(query, index).matchesFilters(item, true));
    EXPECT_FALSE(QueryMatcher(query).matchesFilters(item, true));

    SearchQuery inImages;
    inImages.textInImages = true;
    EXPECT_TRUE(QueryMatcher(inImages, index).matchesFilters(item, true));
    EXPECT_FALSE(QueryMatcher(inImages, index).matchesFilters(itemAt("/f/b.png"), true));

    // Some terms in the name, the rest in the text; but not all in the text.
    EXPECT_TRUE(QueryMatcher(withTerms({"tax", "marz"}), index).termsMatch(item));
    EXPECT_FALSE(QueryMatcher(withTerms({"tax", "april"}), index).termsMatch(item));
    EXPECT_FALSE(QueryMatcher(withTerms({"return", "marz"}), index).termsMatch(item));
}

TEST(QueryMatcher, putsQueriesToTheMetadataIndex) {
    SearchQuery all = withTerms({R"(a"b\c)"});
    all.containing = {"p q"};
    all.textInImages = true;
    all.kinds = {SearchKind::screenshot, SearchKind::pdf};
    all.extensions = {"psd"};
    all.date = DateFilter{day("2024-03-01"), day("2024-04-01"), DateField::opened, {}};
    all.size = SizeFilter{10, 20, {}};
    all.source = "Slack";
    all.camera = "Fujifilm";
    all.place = PlaceFilter::folder("/x");
    EXPECT_EQ(
        QueryMatcher(all).spotlightQuery(),
        R"((kMDItemFSName == "*a\"b\\c*"cd || kMDItemTextContent == "a\"b\\c*"cdw))"
        R"( && kMDItemTextContent == "p q*"cdw)"
        R"( && (kMDItemContentTypeTree == "public.image" && kMDItemTextContent == "*"))"
        R"( && (kMDItemIsScreenCapture == 1 || kMDItemFSName == "Screenshot*"c)"
        R"( || kMDItemFSName == "Screen Shot*"c || kMDItemContentTypeTree == "com.adobe.pdf")"
        R"( || kMDItemFSName == "*.psd"c))"
        R"( && kMDItemLastUsedDate >= $time.iso(2024-03-01T00:00:00Z))"
        R"( && kMDItemLastUsedDate < $time.iso(2024-04-01T00:00:00Z))"
        R"( && kMDItemFSSize >= 10 && kMDItemFSSize <= 20)"
        R"( && kMDItemWhereFroms == "*Slack*"cd)"
        R"( && (kMDItemAcquisitionMake == "*fuji*"cd || kMDItemAcquisitionModel == "*fuji*"cd))");
    EXPECT_EQ(QueryMatcher(withKind(SearchKind::pdf)).spotlightQuery(),
              R"(kMDItemContentTypeTree == "com.adobe.pdf")");

    SearchQuery place;
    place.place = PlaceFilter::iCloud();
    place.filesOnly = true;
    EXPECT_EQ(QueryMatcher(place).spotlightQuery(), std::nullopt);
}

/// Whatever passes the whole test must have passed the cheap ones, or a walk would lose it.
TEST(QueryMatcher, cheapTestsNeverRejectWhatMatches) {
    std::mt19937 random(7);
    const auto pick = [&](const auto& list) { return list[random() % std::size(list)]; };
    const TestFolder folder;
    const char* const stems[] = {"tax",   "Photo 1", "Screenshot 2", "screen recording",
                                 "Größe", "\xff",    ".dot",         "x"};
    const char* const endings[] = {"",     ".pdf", ".JPG", ".png", ".app", ".tar.gz", ".xlsx",
                                   ".cpp", ".mov", ".deb", ".cr2", ".key", ".rtfd",   ".zip"};
    std::vector<std::pair<FileItem, FileAttributes>> items;
    for (int i = 0; i < 250; ++i) {
        const std::string name =
            std::string(pick(stems)) + (i % 3 ? std::to_string(i) : "") + pick(endings);
        if (folder.exists(name)) continue;
        URL url;
        if (i % 5 == 0)
            url = folder.folder(name);
        else if (i % 7 == 0)
            url = folder.link(name, i % 2 ? "." : "missing");
        else
            url = folder.file(name, std::string(random() % 3, 'x'), day("2024-01-01") + i);
        items.emplace_back(*FileItem::load(url),
                           *Platform::current().files->attributes(url, Links::keep));
    }
    const char* const terms[] = {"tax", "photos", "1", "grosse", "screen", "."};
    const char* const extensions[] = {"pdf", "jpg", "gz", "tar.gz", "app"};
    std::size_t matched = 0;
    for (int i = 0; i < 2000; ++i) {
        SearchQuery query;
        if (random() % 3 == 0) query.terms.emplace_back(pick(terms));
        for (auto count = random() % 3; count > 0; --count)
            query.kinds.push_back(allSearchKinds[random() % allSearchKinds.size()]);
        if (random() % 4 == 0) query.extensions.emplace_back(pick(extensions));
        if (random() % 4 == 0) query.size = SizeFilter{random() % 2, 1 + random() % 2, {}};
        if (random() % 4 == 0) {
            const Date start = day("2024-01-01") + static_cast<double>(random() % 250);
            const DateField fields[] = {DateField::modified, DateField::created, DateField::added};
            query.date = DateFilter{start, std::nullopt, pick(fields), {}};
        }
        query.filesOnly = random() % 4 == 0;
        if (random() % 8 == 0) query.containing = {"x"};
        const QueryMatcher matcher(query);
        for (const auto& [item, attributes] : items) {
            if (!matcher.matchesFilters(item, true)) continue;
            ++matched;
            EXPECT_TRUE(matcher.mayMatch(item.name, attributes.type, true) &&
                        matcher.mayMatch(item.name, FileType::unknown, true) &&
                        matcher.mayMatch(attributes))
                << item.name << " for " << testing::PrintToString(query.terms) << " "
                << testing::PrintToString(query.extensions);
        }
    }
    EXPECT_GT(matched, 10'000U);  // Else the queries above say nothing.
}

}  // namespace
}  // namespace tarn
