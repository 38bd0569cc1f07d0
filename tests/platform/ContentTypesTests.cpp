#include <set>

#include "TarnCore/platform/UniformTypes.h"
#include "TarnCore/platform/linux/DesktopServices.h"
#include "TarnCore/platform/linux/LinuxContentTypes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// The table alone: no database, nothing remembered.
LinuxContentTypes tableOnly() {
    return LinuxContentTypes(nullptr, URL::fromPath("/nonexistent/cache"), "key", true);
}

TEST(UniformTypes, theTableIsSound) {
    std::set<std::string_view> identifiers;
    for (const auto& row : UniformTypes::declarations())
        EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier;
    for (const auto& row : UniformTypes::declarations()) {
        SCOPED_TRACE(row.identifier);
        const auto index = UniformTypes::indexOf(row.identifier);
        ASSERT_TRUE(index);
        EXPECT_TRUE(UniformTypes::lineage(*index)[*index]);
        // A parent that is misspelt would silently lose its descendants.
        std::string_view rest = row.parents;
        while (!rest.empty()) {
            const auto parent = rest.substr(0, rest.find(' '));
            EXPECT_TRUE(identifiers.contains(parent)) << parent;
            rest =
                parent.size() == rest.size() ? std::string_view() : rest.substr(parent.size() + 1);
        }
    }
}

TEST(LinuxContentTypes, knowCommonNamesWithoutTheDatabase) {
    const auto types = tableOnly();
    const struct {
        const char* name;
        std::optional<std::string> type;
    } cases[] = {
        {"report.pdf", "com.adobe.pdf"},
        {"IMG_0001.CR2", "com.canon.cr2-raw-image"},
        {"main.ts", "com.microsoft.typescript"},          // not a translator's catalogue
        {"00001.MTS", "public.mpeg-2-transport-stream"},  // a camera's film
        {"App.swift", "public.swift-source"},
        {"page.webarchive", "com.apple.webarchive"},
        {"Xcode.xip", "com.apple.xip-archive"},
        {"backup.tar.gz", "org.gnu.gnu-zip-tar-archive"},
        {"backup.TAR.XZ", "org.tukaani.tar-xz-archive"},
        {"notes.tar.old.gz", "org.gnu.gnu-zip-archive"},
        {".tar.gz", "org.gnu.gnu-zip-archive"},
        {"a.C", "public.c-plus-plus-source"},  // and "a.c" is not
        {"a.c", "public.c-source"},
        {"Makefile", "public.make-source"},
        {"README", "public.plain-text"},
        {"readme.", std::nullopt},
        {".profile", std::nullopt},
        {"", std::nullopt},
        {"broken\xff.\xfe", std::nullopt},
        {"line\nfeed.txt", "public.plain-text"},
        {"a.averyveryverylongextensionthatisnone", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(types.typeForName(c.name), c.type);
    }
}

TEST(LinuxContentTypes, conformToTheirAncestors) {
    const auto types = tableOnly();
    const struct {
        std::string_view type;
        std::string_view ancestor;
        bool conforms;
    } cases[] = {
        {"public.jpeg", ContentType::image, true},
        {"com.canon.cr2-raw-image", ContentType::image, true},
        {"com.canon.cr2-raw-image", ContentType::rawImage, true},
        {"public.zip-archive", ContentType::archive, true},
        // A container inside is no reason to be found among archives.
        {"org.openxmlformats.wordprocessingml.document", ContentType::archive, false},
        {"public.iso-image", ContentType::diskImage, true},
        {"public.python-script", ContentType::script, true},
        {"public.python-script", ContentType::sourceCode, true},
        {"public.svg-image", ContentType::image, true},
        {"com.apple.application-bundle", ContentType::application, true},
        {"com.apple.application-bundle", ContentType::package, true},
        {"org.appimage.bundle", ContentType::application, true},
        {"com.microsoft.windows-executable", ContentType::application, false},
        {"com.adobe.pdf", ContentType::text, false},
        {"com.adobe.pdf", ContentType::pdf, true},
        {ContentType::image, "public.jpeg", false},
        {"dyn.mime.image/x-unheard-of", ContentType::image, true},
        {"dyn.mime.text/x-unheardofsrc", ContentType::sourceCode, true},
        {"dyn.mime.application/x-foo-compressed-tar", ContentType::archive, true},
        {"dyn.mime.application/x-foo", ContentType::text, false},
        {"unheard.of", ContentType::data, false},
        {"unheard.of", "unheard.of", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " is a " + std::string(c.ancestor));
        EXPECT_EQ(types.conforms(c.type, c.ancestor), c.conforms);
    }
}

/// A database of two entries that counts its questions.
class FakeServices final : public DesktopServices {
public:
    mutable int questions = 0;
    std::optional<std::string> mimeTypeForName(const std::string& name) const override {
        ++questions;
        if (name.ends_with(".fb2")) return "application/x-fictionbook+xml";
        if (name.ends_with(".jpegx")) return "image/jpeg";
        return std::nullopt;
    }
    bool isA(const std::string& mimeType, const std::string& ancestor) const override {
        return mimeType == "application/x-fictionbook+xml" &&
               (ancestor == "application/xml" || ancestor == "application/zip");
    }
    std::string description(const std::string& mimeType) const override {
        ++questions;
        if (mimeType == "application/x-fictionbook+xml") return "FictionBook-Dokument";
        if (mimeType == "application/pdf") return "PDF-Dokument";
        return "";
    }
    std::string genericIcon(const std::string& mimeType) const override {
        return mimeType == "application/x-fictionbook+xml" ? "x-office-document" : "";
    }
    bool remembersRecentFiles() const override { return true; }
    static FakeServices& instance() {
        static FakeServices services;
        return services;
    }
    static const DesktopServices* load() { return &instance(); }
};

TEST(LinuxContentTypes, askTheDatabaseOnceAndRememberAcrossRuns) {
    const TestFolder folder;
    const URL cache = folder / "cache/types";
    const std::string book = "dyn.mime.application/x-fictionbook+xml";
    const auto check = [&](const LinuxContentTypes& types) {
        EXPECT_EQ(types.typeForName("Book.FB2"), book);
        EXPECT_EQ(types.typeForName("a.jpegx"), "public.jpeg");
        EXPECT_EQ(types.typeForName("a.nonsense"), std::nullopt);
        EXPECT_TRUE(types.conforms(book, ContentType::text));
        EXPECT_FALSE(types.conforms(book, ContentType::archive)) << "a container is no archive";
        EXPECT_EQ(types.description(book), "FictionBook-Dokument");
        EXPECT_EQ(types.description("com.adobe.pdf"), "PDF-Dokument");
        EXPECT_EQ(types.description("public.swift-source"), "Swift source code")
            << "in English rather than not at all";
        EXPECT_EQ(types.mimeType(book), "application/x-fictionbook+xml");
    };
    {
        const LinuxContentTypes types(FakeServices::load, cache, "de", false);
        check(types);
        const int before = FakeServices::instance().questions;
        check(types);
        EXPECT_EQ(FakeServices::instance().questions, before);
    }
    check(LinuxContentTypes(nullptr, cache, "de", false));
    // Another language or another database is another cache.
    EXPECT_EQ(LinuxContentTypes(nullptr, cache, "fr", false).typeForName("a.fb2"), std::nullopt);
}

TEST(LinuxContentTypes, readTheSharedMIMEDatabase) {
    const DesktopServices* services = loadDesktopServices();
    ASSERT_TRUE(services) << "the module is built beside the tests";
    const TestFolder folder;
    const LinuxContentTypes types(loadDesktopServices, folder / "cache", "key", true);
    const auto type = types.typeForName("book.fb2");
    EXPECT_EQ(type, "dyn.mime.application/x-fictionbook+xml");
    EXPECT_EQ(types.description(*type), "FictionBook document");
    EXPECT_TRUE(types.conforms("dyn.mime.application/x-lha", ContentType::archive));
    EXPECT_EQ(types.typeForName("x.nosuchextension"), std::nullopt);
}

TEST(ContentTypeCache, survivesItsFileAndRefusesOthers) {
    ContentTypeCache cache;
    cache.extensions = {{"foo", "dyn.mime.application/x-foo"}, {"junk", std::nullopt}};
    cache.types = {{"dyn.mime.application/x-foo", {"Foo-Dokument", {"public.data"}}},
                   {"com.adobe.pdf", {"PDF-Dokument", {}}}};
    const std::string text = cache.print("de /usr/share=1");
    EXPECT_EQ(ContentTypeCache::parse(text, "de /usr/share=1"), cache);
    EXPECT_EQ(ContentTypeCache::parse(text, "de /usr/share=2"), std::nullopt);
    // A file that was cut off is a smaller cache, or none when its first line is not whole.
    for (std::size_t length = 0; length < text.size(); ++length) {
        const auto part = ContentTypeCache::parse(text.substr(0, length), "de /usr/share=1");
        EXPECT_EQ(part.has_value(), length > text.find('\n')) << length;
    }
}

TEST(ContentTypeCacheFile, growsLineByLineAndIsReplacedWithItsKey) {
    const TestFolder folder;
    const URL file = folder / "new/folder/types";
    const auto append = [&](const char* key, const char* extension) {
        ContentTypeCacheFile cache(file, key);
        cache.load();
        cache.append(ContentTypeCache::line(extension, std::nullopt));
    };
    const auto count = [&](const char* key) {
        return ContentTypeCacheFile(file, key).load().extensions.size();
    };
    EXPECT_EQ(count("key"), 0U);
    append("key", "one");
    append("key", "two");
    EXPECT_EQ(count("key"), 2U);
    EXPECT_EQ(count("other"), 0U);
    append("other", "three");
    EXPECT_EQ(count("other"), 1U);
    EXPECT_EQ(count("key"), 0U);
    // Nowhere to write is no reason to fail.
    ContentTypeCacheFile nowhere(URL::fromPath("/proc/none/types"), "key");
    nowhere.append("E\tx\t\n");
}

}  // namespace
}  // namespace tarn
